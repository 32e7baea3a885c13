#include "Twins.h"

#include "AttributeType.h"
#include "IdOrder.h"
#include "IntAttribute.h"
#include "Model.h"
#include "ModelEntity.h"

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// \param link attribute of the originals that names the copy
/// \param back attribute of the copies that names the original
void addLinked(std::vector<Twin>& twins, const Model& model, int dimension,
               const AttributeType& link, const AttributeType& back, const QString& relation)
{
    for (const ModelEntity* original : inIdOrder(model.iterator(dimension))) {
        const ModelEntity* const copy =
            model.entity(dimension, intOf(original->attributes(), link));
        if (copy && intOf(copy->attributes(), back) == original->id()) {
            twins.push_back({relation, original, copy});
        }
    }
}

void addFacesOf(std::vector<Twin>& twins, const Twin& region)
{
    const int dimension = region.original->dimension() - 1;
    const int count = std::min(region.original->adjacencyCount(dimension),
                               region.copy->adjacencyCount(dimension));
    for (int i = 0; i < count; ++i) {
        twins.push_back({region.relation, region.original->adjacencyAt(dimension, i),
                         region.copy->adjacencyAt(dimension, i)});
    }
}

/// The second face of a shell does not name the first.
void addShellTwins(std::vector<Twin>& twins, const Model& model)
{
    const int dimension = model.faceDimension();
    for (const ModelEntity* face : inIdOrder(model.iterator(dimension))) {
        const ModelEntity* const twin =
            model.entity(dimension, intOf(face->attributes(), AttributeType::NewShellFace));
        if (twin) {
            twins.push_back({QStringLiteral("shell twin"), face, twin});
        }
    }
}

} // namespace

std::vector<Twin> twinsOf(const Model& model)
{
    const int faces = model.faceDimension();
    std::vector<Twin> twins;
    addLinked(twins, model, faces, AttributeType::SolidFace, AttributeType::FluidFace,
              QStringLiteral("solid side"));
    addLinked(twins, model, faces, AttributeType::StatorFace, AttributeType::RotorFace,
              QStringLiteral("stator side"));
    std::vector<Twin> replicas;
    addLinked(replicas, model, faces + 1, AttributeType::NewMotionRegion,
              AttributeType::OriginalMotionRegion, QStringLiteral("replica"));
    for (const Twin& replica : replicas) {
        twins.push_back(replica);
        addFacesOf(twins, replica);
    }
    addShellTwins(twins, model);
    return twins;
}

} // namespace Ovra::GeoTool
