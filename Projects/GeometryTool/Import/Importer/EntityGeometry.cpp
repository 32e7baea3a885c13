#include "EntityGeometry.h"

#include "ElementShape.h"
#include "Flatness.h"
#include "ShapeGrid.h"

#include <algorithm>
#include <cmath>
#include <gmsh.h>

namespace Ovra::GeoTool
{

using Geo::Vector;

namespace
{

struct Piece
{
    double measure = 0;
    Vector centroid;
    Vector normal; ///< of length measure
};

Piece linePiece(const ImportedMesh& mesh, const ImportedElement& line)
{
    const Vector a = mesh.point(line, 0);
    const Vector b = mesh.point(line, 1);
    const Vector along = b - a;
    return {along.length(), 0.5 * (a + b), Vector(along.y(), -along.x(), 0)};
}

Piece facePiece(const ImportedMesh& mesh, const ImportedElement& face)
{
    Piece piece;
    const Vector origin = mesh.point(face, 0);
    for (int i = 1; i + 1 < face.nodeCount; ++i) {
        const Vector a = mesh.point(face, i);
        const Vector b = mesh.point(face, i + 1);
        const Vector normal = 0.5 * ((a - origin) ^ (b - origin));
        const double area = normal.length();
        piece.measure += area;
        piece.centroid += (area / 3.0) * (origin + a + b);
        piece.normal += normal;
    }
    if (piece.measure > 0) {
        piece.centroid /= piece.measure;
    }
    return piece;
}

Piece regionPiece(const ImportedMesh& mesh, const ImportedElement& region)
{
    Piece piece;
    const Vector origin = mesh.point(region, 0);
    for (const auto& local : ElementShape::faces(region.nodeCount)) {
        Vector middle;
        for (const int corner : local) {
            middle += mesh.point(region, corner);
        }
        middle /= static_cast<double>(local.size());
        for (std::size_t i = 0; i < local.size(); ++i) {
            const Vector a = mesh.point(region, local[i]);
            const Vector b = mesh.point(region, local[(i + 1) % local.size()]);
            const double volume = (((a - origin) ^ (b - origin)) * (middle - origin)) / 6.0;
            piece.measure += volume;
            piece.centroid += (0.25 * volume) * (origin + a + b + middle);
        }
    }
    if (piece.measure != 0) {
        piece.centroid /= piece.measure;
    }
    return piece;
}

/// \brief What the OpenCASCADE kernel knows; nothing for entities that it has not made.
void askOpenCascade(int dimension, int tag, ImportedGeometry& geometry)
{
    try {
        double mass = 0;
        double c[3] = {0, 0, 0};
        double low[3] = {0, 0, 0};
        double high[3] = {0, 0, 0};
        gmsh::model::occ::getMass(dimension, tag, mass);
        gmsh::model::occ::getCenterOfMass(dimension, tag, c[0], c[1], c[2]);
        gmsh::model::occ::getBoundingBox(dimension, tag, low[0], low[1], low[2], high[0], high[1],
                                         high[2]);
        if (std::isfinite(mass) && mass > 0) { // a solid inside out has a negative volume
            geometry.measure = mass;
            geometry.centroid = Vector(c[0], c[1], c[2]);
        }
        geometry.box += Geo::Box(Vector(low[0], low[1], low[2]), Vector(high[0], high[1], high[2]));
    } catch (...) {
        return; // another kernel's entity: what the mesh says stays
    }
}

/// \brief The place of a vertex that may have no mesh.
void askPoint(int tag, ImportedGeometry& geometry)
{
    try {
        std::vector<double> c;
        gmsh::model::getValue(0, tag, {}, c);
        geometry.centroid = Vector(c.at(0), c.at(1), c.at(2));
        geometry.box += geometry.centroid;
    } catch (...) {
        return; // the place of its mesh, if any, stays
    }
}

bool knownFlat(int dimension, int tag)
{
    std::string type;
    gmsh::model::getType(dimension, tag, type);
    return dimension == 1 ? type == "Line" : type == "Plane" || type == "Plane surface";
}

} // namespace

EntityGeometry::EntityGeometry(ImportedMesh& mesh)
    : mesh_(mesh)
{
}

void EntityGeometry::compute()
{
    for (int d = 0; d <= 3; ++d) {
        measureMesh(d);
        askKernel(d);
        if (d == 1 || d == 2) {
            decidePlanarity(d);
        }
    }
    boundByFaces();
}

/// \brief What is kept without a mesh has at least the box of its boundary.
void EntityGeometry::boundByFaces()
{
    for (int d = 1; d <= 3; ++d) {
        for (ImportedEntity& entity : mesh_.entitiesOf(d)) {
            if (!entity.kept || !(entity.geometry.box == Geo::Box())) {
                continue;
            }
            for (const int position : entity.adjacent[static_cast<std::size_t>(d - 1)]) {
                entity.geometry.box += mesh_.entity(d - 1, position).geometry.box;
            }
            entity.geometry.centroid = entity.geometry.box.center();
        }
    }
}

void EntityGeometry::measureMesh(int dimension)
{
    points_.assign(mesh_.entitiesOf(dimension).size(), {});
    boxedIn_.assign(mesh_.nodes.size(), -1);
    for (const ImportedElement& element : mesh_.elementsOf(dimension)) {
        addPiece(dimension, element);
    }
    for (ImportedEntity& entity : mesh_.entitiesOf(dimension)) {
        ImportedGeometry& geometry = entity.geometry;
        if (geometry.measure != 0) {
            geometry.centroid /= geometry.measure;
        }
        const double rounding = 1e-10 * geometry.measure;
        if (geometry.normal.length() <= rounding) {
            geometry.normal.reset();
        }
        geometry.normal.normalize();
    }
}

void EntityGeometry::growBox(ImportedGeometry& geometry, const ImportedElement& element)
{
    for (int n = 0; n < element.nodeCount; ++n) {
        int& boxedIn =
            boxedIn_[static_cast<std::size_t>(element.nodes[static_cast<std::size_t>(n)])];
        if (boxedIn != element.entity) { // a node comes again with each of its elements
            boxedIn = element.entity;
            geometry.box += mesh_.point(element, n);
        }
    }
}

void EntityGeometry::addPiece(int dimension, const ImportedElement& element)
{
    ImportedGeometry& geometry = mesh_.entity(dimension, element.entity).geometry;
    growBox(geometry, element);
    auto& points = points_[static_cast<std::size_t>(element.entity)];
    for (int n = 0; n < element.nodeCount && (dimension == 1 || dimension == 2); ++n) {
        points.push_back(mesh_.point(element, n));
    }
    if (dimension == 0) {
        geometry.centroid = mesh_.point(element, 0);
        return;
    }
    const Piece piece = dimension == 1   ? linePiece(mesh_, element)
                        : dimension == 2 ? facePiece(mesh_, element)
                                         : regionPiece(mesh_, element);
    geometry.measure += piece.measure;
    geometry.centroid += piece.measure * piece.centroid;
    geometry.normal += piece.normal;
}

void EntityGeometry::askKernel(int dimension)
{
    for (ImportedEntity& entity : mesh_.entitiesOf(dimension)) {
        if (entity.fromCad && dimension == 0) {
            askPoint(entity.gmshTag, entity.geometry);
        } else if (entity.fromCad) {
            askOpenCascade(dimension, entity.gmshTag, entity.geometry);
        }
    }
}

void EntityGeometry::decidePlanarity(int dimension)
{
    auto& entities = mesh_.entitiesOf(dimension);
    for (std::size_t i = 0; i < entities.size(); ++i) {
        ImportedEntity& entity = entities[i];
        std::vector<Vector> points = points_[i];
        if (entity.fromCad && !knownFlat(dimension, entity.gmshTag)) {
            const std::vector<Vector> shape = shapeGrid(dimension, entity.gmshTag);
            points.insert(points.end(), shape.begin(), shape.end());
        }
        entity.geometry.planar = entity.fromCad && knownFlat(dimension, entity.gmshTag);
        if (!entity.geometry.planar) {
            entity.geometry.planar =
                dimension == 1 ? Flatness::isStraight(points) : Flatness::isFlat(points);
        }
    }
}

} // namespace Ovra::GeoTool
