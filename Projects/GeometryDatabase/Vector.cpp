#include "Vector.h"

#include "MetaTypeAlias.h"

#include <QHash>
#include <QTextStream>

namespace Ovra::Geo
{

bool Vector::isAlmostEqualTo(const Vector& other, double relativeTolerance,
                             double absoluteTolerance) const
{
    const double distance = (*this - other).length();
    const Vector mean = 0.5 * (*this + other);
    return relativeTolerance * mean.length() + absoluteTolerance >= distance;
}

void Vector::normalize()
{
    const double size = length();
    if (size != 0.0) {
        *this /= size;
    }
}

double Vector::maxComponent(int* index) const
{
    const Vector squares(x_ * x_, y_ * y_, z_ * z_);
    int position = squares.y() > squares.x() ? 1 : 0;
    if (squares.z() > squares[position]) {
        position = 2;
    }
    if (index != nullptr) {
        *index = position;
    }
    return std::sqrt(squares[position]);
}

void Vector::orthonormalize(Vector& a, Vector& b, Vector& c)
{
    a -= (c * a) * c;
    a.normalize();
    const double alongC = b * c;
    const double alongA = b * a;
    b -= alongA * a + alongC * c;
    b.normalize();
}

QString Vector::toString() const
{
    return QString("(%1, %2, %3)")
        .arg(x_, 0, 'g', -1, ' ')
        .arg(y_, 0, 'g', -1, ' ')
        .arg(z_, 0, 'g', -1, ' ');
}

Vector::operator QVariant() const
{
    return QVariant::fromValue(*this);
}

bool Vector::init()
{
    return registerMetaTypeAlias<Vector>("geo::Vector");
}

size_t qHash(const Vector& vector)
{
    return qHash(vector.toString(), 0);
}

QDataStream& operator<<(QDataStream& stream, const Vector& vector)
{
    return stream << vector.x() << vector.y() << vector.z();
}

QDataStream& operator>>(QDataStream& stream, Vector& vector)
{
    return stream >> vector[0] >> vector[1] >> vector[2];
}

QTextStream& operator<<(QTextStream& stream, const Vector& vector)
{
    return stream << vector.toString();
}

} // namespace Ovra::Geo

OVRA_GEO_DEFINE_SHARED_METATYPE(Ovra::Geo::Vector)
