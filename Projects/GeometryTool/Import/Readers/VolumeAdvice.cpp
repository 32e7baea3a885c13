#include "VolumeAdvice.h"

#include "Box.h"
#include "CadModel.h"
#include "Counted.h"
#include "InputFileCheck.h"
#include "SurfaceFilling.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <gmsh.h>
#include <map>

namespace Ovra::GeoTool
{

namespace
{

using Geo::Vector;

Vector extentOf(int dimension, int tag)
{
    std::array<double, 6> box{};
    gmsh::model::getBoundingBox(dimension, tag, box[0], box[1], box[2], box[3], box[4], box[5]);
    return {box[3] - box[0], box[4] - box[1], box[5] - box[2]};
}

std::vector<int> boundaryOf(int dimension, int tag)
{
    constexpr bool combined = false;
    constexpr bool oriented = false;
    gmsh::vectorpair boundary;
    gmsh::model::getBoundary({{dimension, tag}}, boundary, combined, oriented);
    std::vector<int> tags;
    for (const auto& entity : boundary) {
        tags.push_back(entity.second);
    }
    return tags;
}

/// \brief Edges with one face of a volume; those that have shrunk to a point are none.
qint64 freeEdgeCount(int volume)
{
    constexpr double point = 1e-6; // boxes of the kernel are wider than what they hold
    const double limit = point * extentOf(3, volume).length();
    std::map<int, int> uses;
    for (const int face : boundaryOf(3, volume)) {
        for (const int edge : boundaryOf(2, face)) {
            ++uses[edge];
        }
    }
    return std::count_if(uses.begin(), uses.end(), [limit](const auto& each) {
        return each.second == 1 && extentOf(1, each.first).length() > limit;
    });
}

QString onMesh()
{
    constexpr bool namesBodies = false;
    SurfaceFilling filling(namesBodies);
    filling.collect();
    return filling.obstacle().isEmpty()
               ? QStringLiteral("--dimension 3 fills the volume that they enclose")
               : filling.obstacle();
}

} // namespace

QString VolumeAdvice::onSurfaces(const QString& input)
{
    if (!CadModel::hasShapes()) {
        return onMesh();
    }
    return InputFileCheck::isScript(input)
               ? QStringLiteral("where they enclose one, let the script make it by Coherence, "
                                "Surface Loop and Volume, see Import.md")
               : QStringLiteral("where they enclose one, let the program that the file comes from "
                                "make a solid of them");
}

QString VolumeAdvice::onFailure(const QString& failure)
{
    static const QRegularExpression empty(QStringLiteral("No elements in volume (\\d+)"));
    const QRegularExpressionMatch match = empty.match(failure);
    if (!match.hasMatch()) {
        return QString();
    }
    const int volume = match.captured(1).toInt();
    if (const qint64 count = freeEdgeCount(volume); count > 0) {
        return QStringLiteral("; its faces do not close: ") +
               counted(count, QStringLiteral("edge belongs to one of them only"),
                       QStringLiteral("edges belong to one of them only"));
    }
    const Vector extent = extentOf(3, volume);
    const double thinnest = std::min({extent.x(), extent.y(), extent.z()});
    return QStringLiteral("; it is at most %1 thick, try --mesh-size %2 or smaller")
        .arg(thinnest, 0, 'g', 3)
        .arg(thinnest / 2, 0, 'g', 2);
}

} // namespace Ovra::GeoTool
