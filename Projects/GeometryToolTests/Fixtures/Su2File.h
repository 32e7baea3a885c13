#pragma once

#include "Vector.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QTextStream>

#include <vector>

/// \brief What stands in an SU2 file of tetrahedra.
struct Su2File
{
    explicit Su2File(const QByteArray& text)
    {
        QTextStream stream(text);
        std::vector<std::vector<int>> tetrahedra;
        std::vector<Ovra::Geo::Vector> points;
        QString key;
        while (!(stream >> key).atEnd()) {
            if (key == "NELEM=") {
                stream >> elements;
                for (int i = 0; i < elements; ++i) {
                    tetrahedra.push_back(numbers(stream, 6));
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
        for (const std::vector<int>& t : tetrahedra) {
            const auto at = [&](std::size_t i) { return points[static_cast<std::size_t>(t[i])]; };
            volume += ((at(2) - at(1)) ^ (at(3) - at(1))) * (at(4) - at(1)) / 6.0;
        }
    }

    int elements = 0;
    double volume = 0;
    QMap<QString, int> markers; ///< their numbers of elements

private:
    static std::vector<int> numbers(QTextStream& stream, std::size_t count)
    {
        std::vector<int> list(count);
        for (int& number : list) {
            stream >> number;
        }
        return list;
    }
};
