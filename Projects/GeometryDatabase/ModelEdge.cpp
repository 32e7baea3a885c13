#include "ModelEdge.h"

#include "MeshDataCache.h"
#include "MeshEntity.h"

namespace Ovra::Geo
{

ModelEdge::~ModelEdge() = default;

int ModelEdge::dimension() const
{
    return 1;
}

Box ModelEdge::boundingBox() const
{
    return boundingBox_;
}

Vector ModelEdge::centroid() const
{
    return centroid_;
}

Vector ModelEdge::normal() const
{
    return normal_;
}

bool ModelEdge::isPlanar() const
{
    return planar_;
}

Vector ModelEdge::meshCentroid() const
{
    updateMeshData();
    return meshCentroid_;
}

Vector ModelEdge::meshNormal() const
{
    updateMeshData();
    return meshNormal_;
}

void ModelEdge::updateMeshData() const
{
    computeMeshDataOnce(*this, meshDataValid_, [this] { computeMeshCentroidAndNormal(); });
}

void ModelEdge::computeMeshCentroidAndNormal() const
{
    meshCentroid_ = childMean(&MeshEntity::centroid);
    meshNormal_ = childMean(&MeshEntity::normal);
}

} // namespace Ovra::Geo
