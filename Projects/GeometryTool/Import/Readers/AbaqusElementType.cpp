#include "AbaqusElementType.h"

#include <QHash>

#include <algorithm>
#include <utility>

namespace Ovra::GeoTool
{

namespace
{

struct Family
{
    const char* prefix;
    int dimension;
};

// Longer prefixes stand first where one begins with another.
const Family Families[] = {
    // solids, of stress, heat, sound, flow, and continuum shells
    {"DCC3D", 3},
    {"DC3D", 3},
    {"AC3D", 3},
    {"EC3D", 3},
    {"EMC3D", 3},
    {"FC3D", 3},
    {"F3D", 3},
    {"Q3D", 3},
    {"C3D", 3},
    {"CSS", 3},
    {"SC", 3},
    // planes, solids of revolution, shells, membranes, surfaces
    {"DCC2D", 2},
    {"DC2D", 2},
    {"AC2D", 2},
    {"EMC2D", 2},
    {"FC2D", 2},
    {"DCCAX", 2},
    {"DCAX", 2},
    {"ACAX", 2},
    {"CGAX", 2},
    {"CAX", 2},
    {"CPEG", 2},
    {"CPE", 2},
    {"CPS", 2},
    {"SFM3D", 2},
    {"STRI", 2},
    {"M3D", 2},
    {"R3D", 2},
    {"DS", 2},
    {"S", 2},
    // lines
    {"PIPE2", 1},
    {"PIPE3", 1},
    {"RB2D", 1},
    {"RB3D", 1},
    {"R2D", 1},
    {"T2D", 1},
    {"T3D", 1},
    {"DC1D", 1},
    {"B2", 1},
    {"B3", 1}};

int gmshTypeOf(int dimension, int nodeCount)
{
    static const QHash<std::pair<int, int>, int> types{
        {{1, 2}, 1},   {{1, 3}, 8},   {{2, 3}, 2},   {{2, 4}, 3},   {{2, 6}, 9},  {{2, 8}, 16},
        {{2, 9}, 10},  {{3, 4}, 4},   {{3, 5}, 7},   {{3, 6}, 6},   {{3, 8}, 5},  {{3, 10}, 11},
        {{3, 13}, 19}, {{3, 15}, 18}, {{3, 18}, 13}, {{3, 20}, 17}, {{3, 27}, 12}};
    return types.value({dimension, nodeCount}, 0);
}

QByteArray leadingDigits(const QByteArray& text)
{
    const auto end =
        std::find_if(text.begin(), text.end(), [](char c) { return c < '0' || c > '9'; });
    return text.left(end - text.begin());
}

/// \brief The number of nodes, from what stands behind the prefix.
int nodeCountOf(const QByteArray& prefix, const QByteArray& rest)
{
    const QByteArray digits = leadingDigits(rest);
    const int number = digits.toInt();
    if (prefix == "B2" || prefix == "B3" || prefix == "PIPE2" || prefix == "PIPE3") {
        return number == 3 ? 2 : number + 1; // the order of the beam; the cubic one has its ends
    }
    if (prefix == "STRI" && number == 65) {
        return 6;
    }
    const bool hasFaceNodes = number == 15 && rest.mid(digits.size()).startsWith('V');
    return hasFaceNodes ? 18 : number;
}

} // namespace

AbaqusElementType AbaqusElementType::named(const QByteArray& name)
{
    for (const Family& family : Families) {
        const QByteArray prefix(family.prefix);
        if (!name.startsWith(prefix)) {
            continue;
        }
        const int count = nodeCountOf(prefix, name.mid(prefix.size()));
        if (const int type = gmshTypeOf(family.dimension, count); type != 0) {
            return {family.dimension, count, type};
        }
    }
    return {};
}

} // namespace Ovra::GeoTool
