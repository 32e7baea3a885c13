#pragma once

#include "AttributeType.h"
#include "GeometryDatabaseTests/GridMesh.h"
#include "GeometryDatabaseTests/MeshChecks.h"
#include "Preparation.h"
#include "Progress.h"
#include "SavedCase.h"
#include "ToolError.h"

#include <QDataStream>
#include <QFile>
#include <QMap>
#include <QStringList>

/// \brief Runs Preparation on a case in memory and looks at what came of it.
namespace PreparationCase
{

using Ovra::Geo::Database;
using Ovra::Geo::MeshEntity;
using Ovra::Geo::ModelEntity;
using Ovra::Geo::Vector;
using SavedCase::save;

/// What a preparation answered: its report, or the text of its refusal.
struct Outcome
{
    QStringList report;
    QString refusal;
};

inline Outcome prepare(Database& database, const QStringList& operations)
{
    Ovra::GeoTool::Progress progress;
    progress.setQuiet(true);
    Outcome outcome;
    try {
        outcome.report = Ovra::GeoTool::Preparation(database, progress).run(operations);
    } catch (const Ovra::GeoTool::ToolError& error) {
        outcome.refusal = error.exitCode() == Ovra::GeoTool::ExitCode::Unsuitable
                              ? error.text()
                              : QStringLiteral("wrong exit code for: ") + error.text();
    }
    return outcome;
}

inline Outcome prepareAll(Database& database)
{
    return prepare(database, Ovra::GeoTool::Preparation::operationNames());
}

/// \brief The volumes of the model's regions, by id.
inline QMap<int, double> measures(Database& database)
{
    QMap<int, double> result;
    auto regions = database.model()->orderedIterator(database.model()->faceDimension() + 1);
    while (regions.hasNext()) {
        const ModelEntity* const region = regions.next();
        result.insert(region->id(), MeshChecks::meshMeasure(region));
    }
    return result;
}

/// \brief Whether the volumes are alike, region by region.
inline bool areAlike(const QMap<int, double>& some, const QMap<int, double>& others)
{
    return some.keys() == others.keys() &&
           std::equal(some.begin(), some.end(), others.begin(),
                      [](double a, double b) { return std::abs(a - b) < 1e-9; });
}

/// \brief Looks for a mesh face that has not exactly as many elements as its model face has meshed
///        regions, and for one that does not share its vertices with them.
inline QString findPartedFace(Database& database)
{
    const int dimension = database.model()->faceDimension();
    for (MeshEntity* meshFace : MeshChecks::sorted(database.mesh()->iterator(dimension))) {
        int meshed = 0;
        auto regions = meshFace->parent()->adjacencyIterator(dimension + 1);
        while (regions.hasNext()) {
            meshed += regions.next()->childCount() > 0 ? 1 : 0;
        }
        const QList<MeshEntity*> elements = MeshChecks::neighbours(meshFace, dimension + 1);
        if (elements.size() != meshed) {
            return QStringLiteral("%1 has %2 elements, not %3")
                .arg(MeshChecks::text(meshFace))
                .arg(elements.size())
                .arg(meshed);
        }
        for (const MeshEntity* element : elements) {
            for (MeshEntity* vertex : MeshChecks::neighbours(meshFace, 0)) {
                if (!MeshChecks::neighbours(element, 0).contains(vertex)) {
                    return MeshChecks::text(meshFace) + QStringLiteral(" has a foreign vertex");
                }
            }
        }
    }
    return QString();
}

/// \brief Everything that must hold of any mesh; empty if it does.
inline QString findFault(Database& database)
{
    const QString dead = MeshChecks::findDeadPointer(&database);
    if (!dead.isEmpty()) {
        return dead;
    }
    const QString parted = findPartedFace(database);
    return parted.isEmpty() ? MeshChecks::findStaleUpwardList(&database) : parted;
}

/// \brief Looks for a vertex that elements of both sets of regions use.
inline QString findSharedVertex(Database& database, const QSet<int>& some, const QSet<int>& others)
{
    const int dimension = database.model()->faceDimension() + 1;
    for (MeshEntity* vertex : MeshChecks::sorted(database.mesh()->iterator(0))) {
        bool inSome = false;
        bool inOthers = false;
        for (const MeshEntity* element : MeshChecks::neighbours(vertex, dimension)) {
            inSome = inSome || some.contains(element->parent()->id());
            inOthers = inOthers || others.contains(element->parent()->id());
        }
        if (inSome && inOthers) {
            return MeshChecks::text(vertex) + QStringLiteral(" is shared");
        }
    }
    return QString();
}

/// \brief The mesh faces on a model face by the places of their vertices, so that two sides can be
///        compared.
inline QStringList shapes(const ModelEntity* face)
{
    QStringList result;
    for (const MeshEntity* meshFace : MeshChecks::sorted(face->childIterator())) {
        QStringList places;
        for (const MeshEntity* vertex : MeshChecks::neighbours(meshFace, 0)) {
            places.append(vertex->centroid().toString());
        }
        places.sort();
        result.append(places.join(QLatin1Char(';')));
    }
    result.sort();
    return result;
}

/// \brief A grid one cell deep whose regions are given as rows of digits, the first row at y = 0; a
///        blank leaves a cell out.
inline GridSpec plan(const QStringList& rows, const QMap<int, QString>& materials,
                     GridSpec::Shape shape = GridSpec::Shape::Block)
{
    GridSpec spec;
    spec.cells = {static_cast<int>(rows.first().size()), static_cast<int>(rows.size()), 1};
    spec.shape = shape;
    spec.regionOf = [rows](int x, int y, int) { return qMax(0, rows[y][x].digitValue()); };
    spec.materials = materials;
    return spec;
}

inline void setAttribute(ModelEntity* entity, const Ovra::Geo::AttributeType& type,
                         const QVariant& value)
{
    entity->attributes().insert(type, value);
}

} // namespace PreparationCase
