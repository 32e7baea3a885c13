#include "WedgeDecomposition.h"

#include "Counted.h"
#include "ElementTopology.h"
#include "EntityNames.h"
#include "IdOrder.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Preparation.h"
#include "Solver.h"
#include "WedgeAttributes.h"

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

constexpr int tetrahedronSize = 4;
constexpr int wedgeSize = 6;
constexpr int pyramidSize = 5;
constexpr int hexahedronSize = 8;
constexpr int quadrilateralSize = 4;

bool isWedge(const MeshEntity* element)
{
    return element->adjacencyCount(0) == wedgeSize;
}

QList<QList<MeshEntity*>> quadrilateralSides(const MeshEntity& element)
{
    QList<QList<MeshEntity*>> result;
    for (const ElementTopology::Side& side :
         ElementTopology::find(3, element.adjacencyCount(0))->sides) {
        if (side.size() != quadrilateralSize) {
            continue;
        }
        QList<MeshEntity*> vertices;
        for (const int position : side) {
            vertices.append(element.adjacencyAt(0, position));
        }
        result.append(vertices);
    }
    return result;
}

/// The library's tetrahedra have the opposite sense of their wedge: among elements that the mesher
/// made they would count as inverted.
void turnInsideOut(MeshEntity* tetrahedron)
{
    MeshEntity* const third = tetrahedron->adjacencyAt(0, 2);
    tetrahedron->removeAdjacency(third);
    tetrahedron->addAdjacency(third);
}

QString otherOperations()
{
    QStringList names = Preparation::operationNames();
    names.removeAll(QStringLiteral("decompose-wedges"));
    return QStringLiteral("--") + names.join(QStringLiteral(" --"));
}

bool isDoubled(const ModelEntity& face)
{
    const auto links = {AttributeType::SolidFace, AttributeType::FluidFace,
                        AttributeType::StatorFace, AttributeType::RotorFace};
    return std::any_of(links.begin(), links.end(), [&face](const AttributeType& type) {
        return face.attributes().contains(type);
    });
}

bool isOrHasReplica(const ModelEntity& region)
{
    return region.attributes().contains(AttributeType::NewMotionRegion) ||
           region.attributes().contains(AttributeType::OriginalMotionRegion);
}

} // namespace

void WedgeDecomposition::requireAtStart() const
{
    const QList<MeshEntity*> wedges = elementsWith(wedgeSize);
    if (wedges.isEmpty()) {
        return;
    }
    for (const int size : {pyramidSize, hexahedronSize}) {
        for (const MeshEntity* element : elementsWith(size)) {
            requireConformity(*element);
        }
    }
    for (const MeshEntity* wedge : wedges) {
        requireUndoubled(*wedge);
    }
    for (const MeshEntity* meshFace : quadrilateralsAtWedges()) {
        if (isDoubled(*meshFace->parent())) {
            refuse(QStringLiteral("wedges lie beside %1, which has been doubled already: its two "
                                  "sides might be cut along different diagonals; decompose wedges "
                                  "first")
                       .arg(nameOf(*meshFace->parent())));
        }
    }
}

void WedgeDecomposition::requireConformity(const MeshEntity& element) const
{
    for (const QList<MeshEntity*>& side : quadrilateralSides(element)) {
        const QSet<MeshEntity*> sharers = MeshEntity::getUpwardAdjacencies(side, 3);
        const auto wedge = std::find_if(sharers.begin(), sharers.end(), isWedge);
        if (wedge != sharers.end()) {
            refuse(
                QStringLiteral(
                    "%1, a wedge, shares a quadrilateral with %2, a %3, which is "
                    "not cut; the mesh would no longer conform. To keep the wedges, name "
                    "the operations instead of --all or --decompose-wedges: %4")
                    .arg(nameOf(**wedge), nameOf(element),
                         QLatin1String(ElementTopology::find(3, element.adjacencyCount(0))->name),
                         otherOperations()));
        }
    }
}

void WedgeDecomposition::requireUndoubled(const MeshEntity& wedge) const
{
    if (isOrHasReplica(*wedge.parent())) {
        refuse(QStringLiteral("%1 has wedges and has been replicated already: the replica might "
                              "be cut along other diagonals; decompose wedges first")
                   .arg(nameOf(*wedge.parent())));
    }
}

QList<MeshEntity*> WedgeDecomposition::elementsWith(int vertexCount) const
{
    QList<MeshEntity*> elements;
    for (auto walk = mesh().iterator(3); walk.hasNext();) {
        MeshEntity* const element = walk.next().value();
        if (element->adjacencyCount(0) == vertexCount) {
            elements.append(element);
        }
    }
    return elements;
}

QList<MeshEntity*> WedgeDecomposition::quadrilateralsAtWedges() const
{
    QList<MeshEntity*> meshFaces = inIdOrder(mesh().iterator(2));
    meshFaces.removeIf([this](const MeshEntity* meshFace) {
        if (meshFace->adjacencyCount(0) != quadrilateralSize) {
            return true;
        }
        const QList<MeshEntity*> elements = elementsAt(*meshFace);
        return std::none_of(elements.begin(), elements.end(), isWedge);
    });
    return meshFaces;
}

/// New ones are those that their vertices do not list.
QList<MeshEntity*> WedgeDecomposition::unlistedTetrahedra() const
{
    QList<MeshEntity*> tetrahedra = elementsWith(tetrahedronSize);
    tetrahedra.removeIf(
        [](MeshEntity* element) { return element->adjacencyAt(0, 0)->isAdjacentTo(element); });
    return tetrahedra;
}

QString WedgeDecomposition::run(Solver& solver)
{
    if (!model().is3d()) {
        return QString();
    }
    const QList<MeshEntity*> wedges = elementsWith(wedgeSize);
    const qsizetype wedgeCount = wedges.size();
    if (wedgeCount == 0) {
        return QString();
    }
    requireAtStart();
    const QList<MeshEntity*> quadrilaterals = quadrilateralsAtWedges();
    WedgeAttributes attributes(wedges);
    solver.decomposeWedgesToTets();
    const QList<MeshEntity*> tetrahedra = unlistedTetrahedra();
    attributes.handOver(tetrahedra);
    for (MeshEntity* tetrahedron : tetrahedra) {
        turnInsideOut(tetrahedron);
    }
    for (MeshEntity* quadrilateral : quadrilaterals) {
        cut(quadrilateral);
    }
    refreshUpwardLists();
    return QStringLiteral("%1 cut into %2, %3 into %4")
        .arg(counted(wedgeCount, QStringLiteral("wedge")),
             counted(3 * wedgeCount, QStringLiteral("tetrahedron"), QStringLiteral("tetrahedra")),
             counted(quadrilaterals.size(), QStringLiteral("quadrilateral mesh face")),
             counted(2 * quadrilaterals.size(), QStringLiteral("triangle")));
}

void WedgeDecomposition::cut(MeshEntity* quadrilateral) const
{
    int first = 0;
    for (int i = 1; i < quadrilateralSize; ++i) {
        if (quadrilateral->adjacencyAt(0, i)->id() < quadrilateral->adjacencyAt(0, first)->id()) {
            first = i;
        }
    }
    addTriangle(quadrilateral, first, first + 1, first + 2);
    addTriangle(quadrilateral, first, first + 2, first + 3);
    mesh().remove(quadrilateral);
}

void WedgeDecomposition::addTriangle(MeshEntity* quadrilateral, int first, int second,
                                     int third) const
{
    MeshEntity* const triangle = MeshEntity::create(2);
    for (const int position : {first, second, third}) {
        triangle->addAdjacency(quadrilateral->adjacencyAt(0, position % quadrilateralSize));
    }
    triangle->attributes() = quadrilateral->attributes();
    mesh().add(triangle);
    quadrilateral->parent()->addChild(triangle);
}

} // namespace Ovra::GeoTool
