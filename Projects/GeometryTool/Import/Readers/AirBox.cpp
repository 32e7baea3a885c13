#include "AirBox.h"

#include "CadModel.h"

#include <cmath>
#include <gmsh.h>

namespace Ovra::GeoTool
{

using Geo::Box;
using Geo::Vector;

namespace
{

void nameEntity(int dimension, int tag, const QString& name)
{
    gmsh::model::setEntityName(dimension, tag, name.toStdString());
    const int group = gmsh::model::addPhysicalGroup(dimension, {tag});
    gmsh::model::setPhysicalName(dimension, group, name.toStdString());
}

/// \brief Which side of a box a face of it is: 0 at the lowest x, 1 at the highest, and so on.
int sideOf(const Box& box, int face)
{
    double c[3] = {0, 0, 0};
    gmsh::model::occ::getCenterOfMass(2, face, c[0], c[1], c[2]);
    int side = 0;
    double farthest = 0;
    for (int axis = 0; axis < 3; ++axis) {
        const double offset = (c[axis] - box.center()[axis]) / box.extent()[axis];
        if (std::abs(offset) > farthest) {
            farthest = std::abs(offset);
            side = 2 * axis + (offset > 0 ? 1 : 0);
        }
    }
    return side;
}

} // namespace

AirBox::AirBox(const AirExtent& extent)
    : extent_(extent)
{
}

QString AirBox::name()
{
    return QStringLiteral("air");
}

QStringList AirBox::sideNames()
{
    QStringList names;
    for (const char* side : {"xmin", "xmax", "ymin", "ymax", "zmin", "zmax"}) {
        names.append(name() + QLatin1Char('-') + QLatin1String(side));
    }
    return names;
}

QString AirBox::nameInUse()
{
    const QStringList names = QStringList{name()} + sideNames();
    for (int d = 0; d <= 3; ++d) {
        for (const int tag : CadModel::entities(d)) {
            for (const QString& used : CadModel::namesOf(d, tag)) {
                if (names.contains(used)) {
                    return used;
                }
            }
        }
    }
    return {};
}

Box AirBox::corners() const
{
    if (extent_.factor <= 0) {
        return extent_.box;
    }
    const Box parts = CadModel::box();
    const Vector half = 0.5 * extent_.factor * parts.extent();
    return {parts.center() - half, parts.center() + half};
}

int AirBox::add() const
{
    const Box box = corners();
    const Vector low = box.minimum();
    const Vector size = box.extent();
    const int air =
        gmsh::model::occ::addBox(low.x(), low.y(), low.z(), size.x(), size.y(), size.z());
    gmsh::model::occ::synchronize();
    nameEntity(3, air, name());
    gmsh::vectorpair sides;
    gmsh::model::getBoundary({{3, air}}, sides, false, false);
    for (const auto& [d, tag] : sides) {
        nameEntity(d, tag, sideNames().at(sideOf(box, tag)));
    }
    return air;
}

} // namespace Ovra::GeoTool
