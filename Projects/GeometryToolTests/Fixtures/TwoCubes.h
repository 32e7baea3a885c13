#pragma once

#include <QByteArray>

#include <array>

/// \brief Two unit cubes side by side; their twelve corners are numbered from 1 along x, then y,
/// then z.
namespace TwoCubes
{

/// The corners of each, in the order in which most formats have those of a hexahedron.
inline constexpr std::array<std::array<int, 8>, 2> corners{
    {{1, 2, 5, 4, 7, 8, 11, 10}, {2, 3, 6, 5, 8, 9, 12, 11}}};

/// \brief What \p format makes of each corner, by number and place.
template <typename Format>
QByteArray eachCorner(const Format& format)
{
    QByteArray text;
    for (int i = 0; i < 12; ++i) {
        text += format(i + 1, i % 3, i / 3 % 2, i / 6);
    }
    return text;
}

/// \brief The corners of a cube, each behind a separator.
inline QByteArray cornersOf(std::size_t cube, char separator = ' ')
{
    QByteArray text;
    for (const int corner : corners[cube]) {
        text += separator + QByteArray::number(corner);
    }
    return text;
}

inline QByteArray meditHead()
{
    return "MeshVersionFormatted 2\nDimension\n3\n";
}

inline QByteArray meditVertices()
{
    return "Vertices\n12\n" + eachCorner([](int, int x, int y, int z) {
               return QByteArray::number(x) + ' ' + QByteArray::number(y) + ' ' +
                      QByteArray::number(z) + " 0\n";
           });
}

/// \param left, right references
inline QByteArray meditHexahedra(int left, int right)
{
    return "Hexahedra\n2\n" + cornersOf(0).trimmed() + ' ' + QByteArray::number(left) + '\n' +
           cornersOf(1).trimmed() + ' ' + QByteArray::number(right) + '\n';
}

} // namespace TwoCubes
