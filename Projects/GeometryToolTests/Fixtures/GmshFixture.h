#pragma once

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QString>

#include <array>
#include <cmath>
#include <gmsh.h>
#include <string>
#include <vector>

/// \brief What Gmsh and its kernel leave behind is not for these tests to find.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libgmsh\nleak:libTK\n";
}

/// \brief Gmsh as the tests use it: to make inputs and to tell facts that do not come from the
/// tool.
class GmshFixture
{
public:
    GmshFixture()
    {
        gmsh::initialize(0, nullptr, false);
        gmsh::option::setNumber("General.Terminal", 0);
    }
    ~GmshFixture() { gmsh::finalize(); }
    GmshFixture(const GmshFixture&) = delete;
    GmshFixture& operator=(const GmshFixture&) = delete;

    /// \brief Two unit boxes side by side that share a face; groups "left" and "right".
    static void makeTwoBoxes(double size)
    {
        gmsh::clear();
        gmsh::model::occ::addBox(0, 0, 0, 1, 1, 1, 1);
        gmsh::model::occ::addBox(1, 0, 0, 1, 1, 1, 2);
        gmsh::vectorpair result;
        std::vector<gmsh::vectorpair> map;
        gmsh::model::occ::fragment({{3, 1}}, {{3, 2}}, result, map);
        gmsh::model::occ::synchronize();
        gmsh::model::addPhysicalGroup(3, {1}, 1);
        gmsh::model::setPhysicalName(3, 1, "left");
        gmsh::model::addPhysicalGroup(3, {2}, 2);
        gmsh::model::setPhysicalName(3, 2, "right");
        gmsh::option::setNumber("Mesh.MeshSizeMax", size);
    }

    static void write(const QString& path, bool saveAll = true, double mshVersion = 4.1,
                      bool binary = false)
    {
        gmsh::option::setNumber("Mesh.SaveAll", saveAll ? 1 : 0);
        gmsh::option::setNumber("Mesh.MshFileVersion", mshVersion);
        gmsh::option::setNumber("Mesh.Binary", binary ? 1 : 0);
        gmsh::write(path.toStdString());
    }

    /// \brief Writes the current model as a STEP assembly whose parts have names, as CAD programs
    /// do and Gmsh does not.
    static void writeStep(const QString& path, const QByteArray& assembly,
                          const QList<QByteArray>& parts)
    {
        write(path);
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            return;
        }
        QByteArray text = file.readAll();
        file.close();
        const QByteArray prefix = "'Open CASCADE STEP translator ";
        const qsizetype begin = text.indexOf("PRODUCT(" + prefix) + 8;
        const QByteArray given = text.mid(begin, text.indexOf('\'', begin + 1) - begin);
        for (qsizetype i = 0; i < parts.size(); ++i) {
            const QByteArray number = '.' + QByteArray::number(static_cast<int>(i) + 1) + '\'';
            text.replace(given + number, '\'' + parts[i] + '\'');
        }
        text.replace(given + '\'', '\'' + assembly + '\'');
        if (file.open(QIODevice::WriteOnly)) {
            file.write(text);
        }
    }

    /// \brief Number of mesh elements of a dimension in Gmsh's current model.
    static int elementCount(int dimension, int tag = -1)
    {
        std::vector<int> types;
        std::vector<std::vector<std::size_t>> elements;
        std::vector<std::vector<std::size_t>> nodes;
        gmsh::model::mesh::getElements(types, elements, nodes, dimension, tag);
        int count = 0;
        for (const auto& list : elements) {
            count += static_cast<int>(list.size());
        }
        return count;
    }

    static int entityCount(int dimension)
    {
        gmsh::vectorpair entities;
        gmsh::model::getEntities(entities, dimension);
        return static_cast<int>(entities.size());
    }

    static int nodeCount()
    {
        std::vector<std::size_t> tags;
        std::vector<double> coordinates;
        std::vector<double> parameters;
        gmsh::model::mesh::getNodes(tags, coordinates, parameters);
        return static_cast<int>(tags.size());
    }

    /// \brief Opens and meshes as a user of Gmsh would.
    static void openAndMesh(const QString& path, double size, int dimension = 3)
    {
        gmsh::clear();
        gmsh::open(path.toStdString());
        gmsh::option::setNumber("Mesh.MeshSizeMax", size);
        gmsh::option::setNumber("Mesh.MeshSizeMin", 0);
        gmsh::model::mesh::generate(dimension);
    }
};

/// \brief Writes flat four-sided patches as an IGES file of B-spline surfaces (entity type 128).
class IgesFile
{
public:
    using Point = std::array<double, 3>;

    /// \brief A patch by its corners at (u, v) = (0, 0), (1, 0), (0, 1), (1, 1).
    void addPatch(const Point& p00, const Point& p10, const Point& p01, const Point& p11)
    {
        QByteArray text = "128,1,1,1,1,0,0,1,0,0,0.,0.,1.,1.,0.,0.,1.,1.,1.,1.,1.,1.,";
        for (const Point& point : {p00, p10, p01, p11}) {
            for (const double coordinate : point) {
                text += QByteArray::number(coordinate, 'f', 6) + ',';
            }
        }
        patches_.append(text + "0.,1.,0.,1.;");
    }

    /// \brief The six sides of a box.
    void addBox(double x0, double y0, double z0, double x1, double y1, double z1)
    {
        addPatch({x0, y0, z0}, {x1, y0, z0}, {x0, y1, z0}, {x1, y1, z0});
        addPatch({x0, y0, z1}, {x1, y0, z1}, {x0, y1, z1}, {x1, y1, z1});
        addPatch({x0, y0, z0}, {x1, y0, z0}, {x0, y0, z1}, {x1, y0, z1});
        addPatch({x0, y1, z0}, {x1, y1, z0}, {x0, y1, z1}, {x1, y1, z1});
        addPatch({x0, y0, z0}, {x0, y1, z0}, {x0, y0, z1}, {x0, y1, z1});
        addPatch({x1, y0, z0}, {x1, y1, z0}, {x1, y0, z1}, {x1, y1, z1});
    }

    QByteArray content() const
    {
        QByteArray directory;
        QByteArray parameters;
        int entries = 0;
        int lines = 0;
        for (const QByteArray& patch : patches_) {
            const int first = lines + 1;
            const int entry = entries + 1;
            for (qsizetype i = 0; i < patch.size(); i += 64) {
                parameters +=
                    patch.mid(i, 64).leftJustified(64) + number(entry) + sequence('P', ++lines);
            }
            directory += number(128) + number(first) + number(0) + number(0) + number(0) +
                         number(0) + number(0) + number(0) + "00000000" + sequence('D', ++entries);
            directory += number(128) + number(0) + number(0) + number(lines - first + 1) +
                         number(0) + QByteArray(16, ' ') + number(0) + number(0) +
                         sequence('D', ++entries);
        }
        const QByteArray global = global_();
        QByteArray globalLines;
        int globals = 0;
        for (qsizetype i = 0; i < global.size(); i += 72) {
            globalLines += global.mid(i, 72).leftJustified(72) + sequence('G', ++globals);
        }
        const QByteArray terminate =
            "S" + count(1) + "G" + count(globals) + "D" + count(entries) + "P" + count(lines);
        return QByteArray("patches").leftJustified(72) + sequence('S', 1) + globalLines +
               directory + parameters + terminate.leftJustified(72) + sequence('T', 1);
    }

private:
    static QByteArray count(int value) { return QByteArray::number(value).rightJustified(7); }
    static QByteArray number(int value) { return QByteArray::number(value).rightJustified(8); }
    static QByteArray sequence(char section, int value)
    {
        return QByteArray(1, section) + count(value) + '\n';
    }
    static QByteArray global_()
    {
        return "1H,,1H;,7Hpatches,11Hpatches.igs,4Htest,4Htest,32,38,6,308,15,7Hpatches,1.,2,2HMM,"
               "1,"
               "0.001,15H20200101.000000,1.E-6,10.,4Htest,4Htest,11,0,15H20200101.000000;";
    }

    QList<QByteArray> patches_;
};
