#include "ShellLinks.h"

#include "AttributeType.h"
#include "Counted.h"
#include "IdOrder.h"
#include "IntAttribute.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "NearTree.h"
#include "Utility.h"
#include "Vector.h"

#include <QSet>

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Geo;

namespace
{

QList<MeshEntity*> sorted(const QSet<MeshEntity*>& vertices)
{
    QList<MeshEntity*> list = vertices.values();
    std::sort(list.begin(), list.end(), MeshEntity::lessThan);
    return list;
}

Vector meanOf(const QList<MeshEntity*>& vertices)
{
    Vector sum;
    for (const MeshEntity* vertex : vertices) {
        sum += vertex->centroid();
    }
    return vertices.isEmpty() ? sum : sum / static_cast<double>(vertices.size());
}

/// \brief A tree of the vertices whose ids are positions in the list, from 1.
void plant(NearTree& tree, const QList<MeshEntity*>& vertices)
{
    for (int i = 0; i < vertices.size(); ++i) {
        NearTree* node = i == 0 ? &tree : new NearTree;
        node->set(i + 1, vertices.at(i)->centroid(), 0.0);
        if (i > 0) {
            tree.insert(node);
        }
    }
}

bool isShell(const ModelEntity& region)
{
    return region.attributes().value(AttributeType::IsShell, {}).toBool();
}

bool hasMeshBeyondShell(const ModelEntity& face)
{
    for (auto regions = face.adjacencyIterator(face.dimension() + 1); regions.hasNext();) {
        const ModelEntity* const region = regions.next();
        if (!isShell(*region) && region->childCount() > 0) {
            return true;
        }
    }
    return false;
}

bool hasLinkedVertex(const ModelEntity& face)
{
    const QSet<MeshEntity*> vertices = Utility::getMeshVerticesOnModelEntity(&face);
    return std::any_of(vertices.begin(), vertices.end(), [](MeshEntity* vertex) {
        return vertex->attributes().contains(AttributeType::ShellVertex);
    });
}

/// The faces of sheets with something to see on the other side.
QSet<const ModelEntity*> facesWithView(const Model& model)
{
    QSet<const ModelEntity*> faces;
    for (const ModelEntity* face : inIdOrder(model.iterator(model.faceDimension()))) {
        const int twinId = intOf(face->attributes(), AttributeType::NewShellFace);
        const ModelEntity* const twin = model.entity(face->dimension(), twinId);
        if (twin && hasMeshBeyondShell(*face) && hasMeshBeyondShell(*twin)) {
            faces << face << twin;
        }
    }
    return faces;
}

} // namespace

ShellLinks::ShellLinks(ModelEntity* region, ModelEntity* originalFace, ModelEntity* newFace)
    : region_(region)
    , originalFace_(originalFace)
    , newFace_(newFace)
{
}

bool ShellLinks::pair()
{
    const QSet<MeshEntity*> original = Utility::getMeshVerticesOnModelEntity(originalFace_);
    const QSet<MeshEntity*> twin = Utility::getMeshVerticesOnModelEntity(newFace_);
    if (original.isEmpty() || original.size() != twin.size()) {
        mismatch_ = QStringLiteral("the mesh of face %1 has %2, that of face %3 has %4; "
                                   "one must be a copy of the other")
                        .arg(originalFace_->id())
                        .arg(counted(original.size(), QStringLiteral("vertex")))
                        .arg(newFace_->id())
                        .arg(twin.size());
        return false;
    }
    return pairNearest(sorted(QSet<MeshEntity*>(original).subtract(twin)),
                       sorted(QSet<MeshEntity*>(twin).subtract(original)));
}

bool ShellLinks::pairNearest(const Vertices& originals, const Vertices& twins)
{
    NearTree tree;
    plant(tree, twins);
    const Vector shift = meanOf(twins) - meanOf(originals);
    QList<bool> taken(twins.size(), false);
    NearTree query;
    for (MeshEntity* vertex : originals) {
        query.set(0, vertex->centroid() + shift, 0.0);
        const int position = tree.nearest(&query) - 1;
        if (taken.at(position)) {
            mismatch_ = QStringLiteral("vertex %1 of face %2 has no vertex of its own on face %3; "
                                       "one mesh must be a copy of the other")
                            .arg(vertex->id())
                            .arg(originalFace_->id())
                            .arg(newFace_->id());
            return false;
        }
        taken[position] = true;
        pairs_.append(std::make_pair(vertex, twins.at(position)));
    }
    return true;
}

void ShellLinks::apply() const
{
    region_->attributes().insert(AttributeType::IsShell, true);
    region_->attributes().insert(AttributeType::OriginalShellFace, originalFace_->id());
    originalFace_->attributes().insert(AttributeType::NewShellFace, newFace_->id());
    for (const auto& [vertex, twin] : pairs_) {
        vertex->attributes().insert(AttributeType::ShellVertex, twin->id());
        twin->attributes().insert(AttributeType::ShellVertex, vertex->id());
    }
}

void ShellLinks::closeOtherFaces(const Model& model)
{
    const QSet<const ModelEntity*> open = facesWithView(model);
    for (ModelEntity* face : inIdOrder(model.iterator(model.faceDimension()))) {
        if (!open.contains(face) && hasLinkedVertex(*face)) {
            face->attributes().insert(AttributeType::IsShell, true);
        }
    }
}

} // namespace Ovra::GeoTool
