#include "ModelFace.h"

#include "MeshDataCache.h"
#include "MeshEntity.h"

namespace Ovra::Geo
{

ModelFace::~ModelFace() = default;

int ModelFace::dimension() const
{
    return 2;
}

Box ModelFace::boundingBox() const
{
    return boundingBox_;
}

Vector ModelFace::centroid() const
{
    return centroid_;
}

Vector ModelFace::normal() const
{
    return normal_;
}

bool ModelFace::isPlanar() const
{
    return planar_;
}

Vector ModelFace::meshCentroid() const
{
    updateMeshData();
    return meshCentroid_;
}

Vector ModelFace::meshNormal() const
{
    updateMeshData();
    return meshNormal_;
}

void ModelFace::updateMeshData() const
{
    computeMeshDataOnce(*this, meshDataValid_, [this] { computeMeshCentroidAndNormal(); });
}

void ModelFace::computeMeshCentroidAndNormal() const
{
    meshCentroid_ = meshVertexMean();
    meshNormal_ = childMean(&MeshEntity::normal);
}

} // namespace Ovra::Geo
