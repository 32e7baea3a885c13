#include "RefinementRegion.h"

#include "BoundedList.h"
#include "MetaTypeAlias.h"

#include <QTextStream>

namespace Ovra::Geo
{

namespace
{

// The 1-based rule of both triples: 2 and 3 select, everything else is the first.
int slot(int index)
{
    return index == 2 || index == 3 ? index - 1 : 0;
}

template <typename Item>
void writeLines(QTextStream& stream, const QList<Item>& items)
{
    stream << items.size() << "\n";
    for (const Item& item : items) {
        stream << item << "\n";
    }
}

template <typename Item>
QDataStream& writeTriple(QDataStream& stream, const Item (&triple)[3])
{
    return stream << triple[0] << triple[1] << triple[2];
}

template <typename Item>
QDataStream& readTriple(QDataStream& stream, Item (&triple)[3])
{
    return stream >> triple[0] >> triple[1] >> triple[2];
}

template <typename Item>
QTextStream& writeTriple(QTextStream& stream, const Item (&triple)[3])
{
    return stream << triple[0] << " " << triple[1] << " " << triple[2];
}

} // namespace

void RefinementRegion::getBackgroundGridDimensions(int& first, int& second, int& third) const
{
    first = backgroundGrid_[0];
    second = backgroundGrid_[1];
    third = backgroundGrid_[2];
}

void RefinementRegion::setBackgroundGridDimensions(int first, int second, int third)
{
    backgroundGrid_[0] = first;
    backgroundGrid_[1] = second;
    backgroundGrid_[2] = third;
}

Vector& RefinementRegion::genericVector(int index)
{
    return vectors_[slot(index)];
}

const Vector& RefinementRegion::genericVector(int index) const
{
    return vectors_[slot(index)];
}

Vector& RefinementRegion::transVector(int index)
{
    return transMat_[slot(index)];
}

const Vector& RefinementRegion::transVector(int index) const
{
    return transMat_[slot(index)];
}

bool RefinementRegion::init()
{
    return registerMetaTypeAlias<RefinementRegion>("geo::RefinementRegion");
}

QDataStream& operator<<(QDataStream& stream, const RefinementRegion& region)
{
    stream << region.type_ << region.filled_;
    stream << region.length_ << region.radius_ << region.lambda_ << region.centroid_;
    writeTriple(stream, region.vectors_) << region.points_;
    writeTriple(stream, region.backgroundGrid_) << region.uniform_ << region.lambdas_;
    stream << region.extent_ << region.minimum_ << region.maximum_;
    return writeTriple(stream, region.transMat_);
}

QDataStream& operator>>(QDataStream& stream, RefinementRegion& region)
{
    stream >> region.type_ >> region.filled_;
    stream >> region.length_ >> region.radius_ >> region.lambda_ >> region.centroid_;
    readTriple(stream, region.vectors_);
    readBoundedList(stream, region.points_);
    readTriple(stream, region.backgroundGrid_) >> region.uniform_;
    readBoundedList(stream, region.lambdas_);
    stream >> region.extent_ >> region.minimum_ >> region.maximum_;
    return readTriple(stream, region.transMat_);
}

QTextStream& operator<<(QTextStream& stream, const RefinementRegion& region)
{
    stream << region.type_ << " " << int(region.filled_) << "\n";
    stream << region.length_ << " " << region.radius_ << " " << region.lambda_ << "\n";
    stream << region.centroid_ << " ";
    writeTriple(stream, region.vectors_) << "\n";
    writeLines(stream, region.points_);
    writeTriple(stream, region.backgroundGrid_) << "\n";
    stream << int(region.uniform_) << "\n";
    writeLines(stream, region.lambdas_);
    stream << region.extent_ << " " << region.minimum_ << " " << region.maximum_ << " ";
    return writeTriple(stream, region.transMat_) << "\n";
}

} // namespace Ovra::Geo

OVRA_GEO_DEFINE_SHARED_METATYPE(Ovra::Geo::RefinementRegion)
