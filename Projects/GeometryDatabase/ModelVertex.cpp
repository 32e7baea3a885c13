#include "ModelVertex.h"

namespace Ovra::Geo
{

ModelVertex::~ModelVertex() = default;

int ModelVertex::dimension() const
{
    return 0;
}

Box ModelVertex::boundingBox() const
{
    return Box(point_, point_);
}

Vector ModelVertex::centroid() const
{
    return point_;
}

Vector ModelVertex::normal() const
{
    return Vector();
}

bool ModelVertex::isPlanar() const
{
    return false;
}

Vector ModelVertex::meshCentroid() const
{
    return childCount() != 0 ? point_ : Vector();
}

Vector ModelVertex::meshNormal() const
{
    return Vector();
}

} // namespace Ovra::Geo
