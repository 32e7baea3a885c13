#pragma once

#include "Vector.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QTextStream>

#include <array>
#include <vector>

/// \brief What stands in an SU2 file of tetrahedra and wedges.
struct Su2File
{
    explicit Su2File(const QByteArray& text)
    {
        QTextStream stream(text);
        std::vector<std::vector<int>> solids;
        std::vector<Ovra::Geo::Vector> points;
        QString key;
        while (!(stream >> key).atEnd()) {
            if (key == "NELEM=") {
                stream >> elements;
                for (int i = 0; i < elements; ++i) {
                    solids.push_back(solid(stream));
                }
            } else if (key == "NPOIN=") {
                int count = 0;
                stream >> count;
                for (int i = 0; i < count; ++i) {
                    double x = 0;
                    double y = 0;
                    double z = 0;
                    int number = 0;
                    stream >> x >> y >> z >> number;
                    points.emplace_back(x, y, z);
                }
            } else if (key == "MARKER_TAG=") {
                QString name;
                int count = 0;
                stream >> name >> key >> count;
                markers.insert(name, count);
                stream.readLine();
                for (int i = 0; i < count; ++i) {
                    stream.readLine();
                }
            }
        }
        for (const std::vector<int>& nodes : solids) {
            for (const auto& corners : tetrahedraOf(nodes.size())) {
                const auto at = [&](std::size_t i) {
                    return points[static_cast<std::size_t>(nodes[corners[i]])];
                };
                volume += ((at(1) - at(0)) ^ (at(2) - at(0))) * (at(3) - at(0)) / 6.0;
            }
        }
    }

    int elements = 0;
    double volume = 0;
    QMap<QString, int> markers; ///< their numbers of elements

private:
    /// The nodes, behind the kind as VTK numbers it, and ahead of the element's own number.
    static std::vector<int> solid(QTextStream& stream)
    {
        int kind = 0;
        stream >> kind;
        std::vector<int> nodes(kind == 10 ? 4 : 6);
        for (int& node : nodes) {
            stream >> node;
        }
        stream >> kind;
        return nodes;
    }

    /// A wedge begins with the triangle whose normal points out of it.
    static std::vector<std::array<std::size_t, 4>> tetrahedraOf(std::size_t corners)
    {
        using Tetrahedra = std::vector<std::array<std::size_t, 4>>;
        return corners == 4 ? Tetrahedra{{0, 1, 2, 3}}
                            : Tetrahedra{{0, 2, 1, 3}, {2, 4, 1, 3}, {2, 5, 4, 3}};
    }
};
