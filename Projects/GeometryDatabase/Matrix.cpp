#include "Matrix.h"

#include "MetaTypeAlias.h"

#include <QTextStream>

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace Ovra::Geo
{

void Matrix::setIdentity()
{
    *this = Matrix();
    for (int i = 0; i < 3; ++i) {
        (*this)(i, i) = 1.0;
    }
}

void Matrix::setRow(int row, const Vector& values)
{
    for (int column = 0; column < 3; ++column) {
        (*this)(row, column) = values[column];
    }
}

void Matrix::setColumn(int column, const Vector& values)
{
    for (int row = 0; row < 3; ++row) {
        (*this)(row, column) = values[row];
    }
}

void Matrix::transpose()
{
    std::swap((*this)(0, 1), (*this)(1, 0));
    std::swap((*this)(0, 2), (*this)(2, 0));
    std::swap((*this)(1, 2), (*this)(2, 1));
}

QString Matrix::toString() const
{
    QString text("( {%1, %2, %3} {%4, %5, %6} {%7, %8, %9} )");
    for (const double element : elements_) {
        text = text.arg(element, 0, 'g', -1, ' ');
    }
    return text;
}

Matrix::operator QVariant() const
{
    return QVariant::fromValue(*this);
}

Matrix& Matrix::operator*=(double factor)
{
    for (double& element : elements_) {
        element *= factor;
    }
    return *this;
}

Matrix& Matrix::operator/=(double divisor)
{
    for (double& element : elements_) {
        element /= divisor;
    }
    return *this;
}

Matrix& Matrix::operator+=(const Matrix& other)
{
    std::transform(std::begin(elements_), std::end(elements_), std::begin(other.elements_),
                   std::begin(elements_), std::plus<>());
    return *this;
}

Matrix& Matrix::operator-=(const Matrix& other)
{
    std::transform(std::begin(elements_), std::end(elements_), std::begin(other.elements_),
                   std::begin(elements_), std::minus<>());
    return *this;
}

bool Matrix::init()
{
    return registerMetaTypeAlias<Matrix>("geo::Matrix");
}

namespace
{

Vector row(const Matrix& matrix, int index)
{
    return Vector(matrix(index, 0), matrix(index, 1), matrix(index, 2));
}

Vector column(const Matrix& matrix, int index)
{
    return Vector(matrix(0, index), matrix(1, index), matrix(2, index));
}

} // namespace

Matrix operator*(const Matrix& a, const Matrix& b)
{
    Matrix product;
    for (int i = 0; i < 3; ++i) {
        product.setColumn(i, a * column(b, i));
    }
    return product;
}

Matrix operator*(const Matrix& matrix, double factor)
{
    return Matrix(matrix) *= factor;
}

Matrix operator*(double factor, const Matrix& matrix)
{
    return matrix * factor;
}

Vector operator*(const Matrix& matrix, const Vector& vector)
{
    return Vector(row(matrix, 0) * vector, row(matrix, 1) * vector, row(matrix, 2) * vector);
}

Matrix operator+(const Matrix& a, const Matrix& b)
{
    return Matrix(a) += b;
}

Matrix operator-(const Matrix& a, const Matrix& b)
{
    return Matrix(a) -= b;
}

Matrix operator/(const Matrix& matrix, double divisor)
{
    return Matrix(matrix) /= divisor;
}

Matrix operator/(double divisor, const Matrix& matrix)
{
    return matrix / divisor;
}

QDataStream& operator<<(QDataStream& stream, const Matrix& matrix)
{
    for (int i = 0; i < 3; ++i) {
        stream << row(matrix, i);
    }
    return stream;
}

QDataStream& operator>>(QDataStream& stream, Matrix& matrix)
{
    for (int i = 0; i < 3; ++i) {
        Vector values;
        stream >> values;
        matrix.setRow(i, values);
    }
    return stream;
}

QTextStream& operator<<(QTextStream& stream, const Matrix& matrix)
{
    stream << "( ";
    for (int i = 0; i < 3; ++i) {
        stream << "{" << matrix(i, 0) << ", " << matrix(i, 1) << ", " << matrix(i, 2) << "} ";
    }
    return stream << ")";
}

} // namespace Ovra::Geo

OVRA_GEO_DEFINE_SHARED_METATYPE(Ovra::Geo::Matrix)
