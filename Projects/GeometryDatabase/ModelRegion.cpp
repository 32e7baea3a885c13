#include "ModelRegion.h"

#include "MeshDataCache.h"

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
    computeMeshDataOnce(*this, meshDataValid_, [this] { meshCentroid_ = meshVertexMean(); });
    return meshCentroid_;
}

Vector ModelRegion::meshNormal() const
{
    return Vector();
}

} // namespace Ovra::Geo
