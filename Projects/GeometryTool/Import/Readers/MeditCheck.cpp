#include "MeditCheck.h"

#include "InputDamage.h"

#include <QByteArray>
#include <QFile>
#include <QHash>

namespace Ovra::GeoTool
{

namespace
{

/// \brief How many numbers Gmsh takes from a line under a keyword of a Medit file; 0 if it does not
/// matter.
qsizetype numbersUnder(const QByteArray& keyword)
{
    static const QHash<QByteArray, qsizetype> numbers{{"Edges", 3},          {"Triangles", 4},
                                                      {"Quadrilaterals", 5}, {"Tetrahedra", 5},
                                                      {"Prisms", 7},         {"Hexahedra", 9}};
    return numbers.value(keyword, 0);
}

} // namespace

void MeditCheck::check(QFile& file)
{
    QByteArray keyword;
    bool ended = false;
    for (qint64 number = 1; !file.atEnd(); ++number) {
        const QByteArray line = file.readLine().simplified();
        const bool isKeyword = !line.isEmpty() && line.at(0) >= 'A' && line.at(0) <= 'Z';
        if (isKeyword) {
            keyword = line.split(' ').first();
        }
        ended = ended || keyword == "End";
        const bool tooLong =
            !isKeyword && numbersUnder(keyword) > 0 && line.count(' ') >= numbersUnder(keyword);
        const bool higherOrder = isKeyword && (keyword.endsWith("P2") || keyword.endsWith("Q2"));
        if (tooLong || higherOrder) {
            InputDamage::damaged(
                file.fileName(),
                QStringLiteral("line %1: elements of second order, which Gmsh misreads in Medit "
                               "files; save the mesh in first order or as .msh")
                    .arg(number));
        }
    }
    if (!ended) {
        InputDamage::cutOff(file, QStringLiteral("there is no End"));
    }
}

} // namespace Ovra::GeoTool
