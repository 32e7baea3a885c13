#include "Box.h"

#include "MetaTypeAlias.h"

#include <QTextStream>

#include <algorithm>

namespace Ovra::Geo
{

namespace
{

bool exceedsOnAnyAxis(const Vector& a, const Vector& b)
{
    return a.x() > b.x() || a.y() > b.y() || a.z() > b.z();
}

} // namespace

bool Box::contains(const Box& other) const
{
    return !exceedsOnAnyAxis(minimum_, other.minimum_) &&
           !exceedsOnAnyAxis(other.maximum_, maximum_);
}

bool Box::intersects(const Box& other) const
{
    return !exceedsOnAnyAxis(other.minimum_, maximum_) &&
           !exceedsOnAnyAxis(minimum_, other.maximum_);
}

bool Box::isValid() const
{
    return exceedsOnAnyAxis(minimum_, maximum_);
}

bool Box::matches(const Box& other, double tolerance) const
{
    const double limit = tolerance * std::max(other.extent().length(), extent().length());
    return minimum_.isAlmostEqualTo(other.minimum_, 0.0, limit) &&
           maximum_.isAlmostEqualTo(other.maximum_, 0.0, limit);
}

void Box::setToZero()
{
    *this = Box(Vector(), Vector());
}

Box& Box::operator+=(const Box& other)
{
    expandLo(other.minimum_);
    expandHi(other.maximum_);
    return *this;
}

Box& Box::operator+=(const Vector& point)
{
    expandLo(point);
    expandHi(point);
    return *this;
}

QString Box::toString() const
{
    return QString("[%1, %2]").arg(minimum_.toString(), maximum_.toString());
}

Box::operator QVariant() const
{
    return QVariant::fromValue(*this);
}

void Box::expandLo(const Vector& point)
{
    minimum_ = Vector(std::min(minimum_.x(), point.x()), std::min(minimum_.y(), point.y()),
                      std::min(minimum_.z(), point.z()));
}

void Box::expandHi(const Vector& point)
{
    maximum_ = Vector(std::max(maximum_.x(), point.x()), std::max(maximum_.y(), point.y()),
                      std::max(maximum_.z(), point.z()));
}

bool Box::init()
{
    return registerMetaTypeAlias<Box>("geo::Box");
}

Box operator+(const Box& a, const Box& b)
{
    return Box(a) += b;
}

QDataStream& operator<<(QDataStream& stream, const Box& box)
{
    return stream << box.minimum() << box.maximum();
}

QDataStream& operator>>(QDataStream& stream, Box& box)
{
    Vector minimum;
    Vector maximum;
    stream >> minimum >> maximum;
    box = Box(minimum, maximum);
    return stream;
}

QTextStream& operator<<(QTextStream& stream, const Box& box)
{
    return stream << box.toString();
}

} // namespace Ovra::Geo

OVRA_GEO_DEFINE_SHARED_METATYPE(Ovra::Geo::Box)
