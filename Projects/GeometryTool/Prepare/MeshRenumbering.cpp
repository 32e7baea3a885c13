#include "MeshRenumbering.h"

#include "Counted.h"
#include "IdOrder.h"
#include "Mesh.h"
#include "MeshEntity.h"

#include <QStringList>

#include <array>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// Number of entities that are not numbered as a mesh without gaps would have them.
qint64 displacedCount(const Mesh& mesh, int dimension)
{
    qint64 displaced = 0;
    int expected = 0;
    for (const MeshEntity* entity : inIdOrder(mesh.iterator(dimension))) {
        if (entity->id() != ++expected) {
            ++displaced;
        }
    }
    return displaced;
}

} // namespace

QString MeshRenumbering::run(Solver&)
{
    QStringList parts;
    for (int dimension = 0; dimension < 4; ++dimension) {
        const QString part = renumber(dimension);
        if (!part.isEmpty()) {
            parts += part;
        }
    }
    return parts.join(QStringLiteral(", "));
}

QString MeshRenumbering::renumber(int dimension)
{
    static const std::array<const char*, 4> nouns = {"vertex", "edge", "face", "region"};
    const qint64 displaced = displacedCount(mesh(), dimension);
    mesh().renumber(dimension);
    if (displaced == 0) {
        return QString();
    }
    const QString noun = QLatin1String(nouns[static_cast<std::size_t>(dimension)]);
    return QStringLiteral("%1 given new ids").arg(counted(displaced, noun));
}

} // namespace Ovra::GeoTool
