#include "ModelRegion.h"

namespace Ovra::Geo
{

ModelRegion::~ModelRegion() = default;

int ModelRegion::dimension() const
{
    return 3;
}

Box ModelRegion::boundingBox() const
{
    return boundingBox_;
}

Vector ModelRegion::centroid() const
{
    return centroid_;
}

Vector ModelRegion::normal() const
{
    return Vector();
}

bool ModelRegion::isPlanar() const
{
    return false;
}

Vector ModelRegion::meshCentroid() const
{
    if (!meshDataValid_ && childCount() != 0) {
        meshCentroid_ = meshVertexMean();
        meshDataValid_ = true;
    }
    return meshCentroid_;
}

Vector ModelRegion::meshNormal() const
{
    return Vector();
}

} // namespace Ovra::Geo
