#pragma once

#include "Vector.h"

namespace Ovra::Geo
{

/// \brief A 3 by 3 matrix of doubles in row-major order, the zero matrix by default.
///
/// A plain value without heap or virtual operations. Rows and columns are numbered 0 to 2 and are
/// not checked. Division by zero follows IEEE arithmetic.
///
/// Known to Qt's meta types as "Ovra::Geo::Matrix" and, for values stored long ago, "geo::Matrix".
class OVRA_GEO_EXPORT Matrix
{
public:
    /// \brief The zero matrix.
    Matrix() = default;

    /// \brief The element at \p row and \p column, both 0 to 2.
    double& operator()(int row, int column) { return elements_[row * 3 + column]; }

    /// \copydoc operator()(int, int)
    double operator()(int row, int column) const { return elements_[row * 3 + column]; }

    /// \brief Sets 1.0 on the diagonal and 0.0 elsewhere.
    void setIdentity();

    /// \brief Copies x, y and z of \p values into columns 0, 1 and 2 of \p row.
    void setRow(int row, const Vector& values);

    /// \brief Copies x, y and z of \p values into rows 0, 1 and 2 of \p column.
    void setColumn(int column, const Vector& values);

    /// \brief Swaps rows and columns in place.
    void transpose();

    /// \brief The text "( {a, b, c} {d, e, f} {g, h, i} )", row after row, each number with up to
    ///        six significant digits, in any locale.
    QString toString() const;

    /// \brief A variant that holds this matrix under its meta type.
    operator QVariant() const;

    /// \brief Multiplies each element by \p factor.
    Matrix& operator*=(double factor);

    /// \brief Divides each element by \p divisor.
    Matrix& operator/=(double divisor);

    /// \brief Adds element by element.
    Matrix& operator+=(const Matrix& other);

    /// \brief Subtracts element by element.
    Matrix& operator-=(const Matrix& other);

private:
    static bool init();

    // Inline: the older name stands before the static objects of any file that includes this.
    inline static const bool init_ = init();

    double elements_[9] = {};
};

/// \brief The matrix product.
OVRA_GEO_EXPORT Matrix operator*(const Matrix& a, const Matrix& b);

/// \brief Each element times \p factor.
OVRA_GEO_EXPORT Matrix operator*(const Matrix& matrix, double factor);

/// \brief Each element times \p factor.
OVRA_GEO_EXPORT Matrix operator*(double factor, const Matrix& matrix);

/// \brief The product with a column vector.
OVRA_GEO_EXPORT Vector operator*(const Matrix& matrix, const Vector& vector);

/// \brief The sum, element by element.
OVRA_GEO_EXPORT Matrix operator+(const Matrix& a, const Matrix& b);

/// \brief The difference, element by element.
OVRA_GEO_EXPORT Matrix operator-(const Matrix& a, const Matrix& b);

/// \brief Each element divided by \p divisor.
OVRA_GEO_EXPORT Matrix operator/(const Matrix& matrix, double divisor);

/// \brief The same as \p matrix / \p divisor, and not \p divisor over each element.
OVRA_GEO_EXPORT Matrix operator/(double divisor, const Matrix& matrix);

/// \brief Writes the nine elements as doubles, row after row.
OVRA_GEO_EXPORT QDataStream& operator<<(QDataStream& stream, const Matrix& matrix);

/// \brief Reads the nine elements as doubles, row after row.
OVRA_GEO_EXPORT QDataStream& operator>>(QDataStream& stream, Matrix& matrix);

/// \brief Writes the pattern of Matrix::toString(), but the numbers by the stream's own settings.
OVRA_GEO_EXPORT QTextStream& operator<<(QTextStream& stream, const Matrix& matrix);

} // namespace Ovra::Geo

OVRA_GEO_DECLARE_SHARED_METATYPE(Ovra::Geo::Matrix)
