#pragma once

#include "Vector.h"

#include <QFile>
#include <QMap>
#include <QString>
#include <QStringList>

#include <array>
#include <cgnslib.h>
#include <map>
#include <vector>

/// \brief What the CGNS library reads in a file, and the tables of the standard for it.
class CgnsContent
{
public:
    using Vector = Ovra::Geo::Vector;

    struct Section
    {
        QString name;
        CGNS_ENUMT(ElementType_t) type = CGNS_ENUMV(ElementTypeNull);
        int first = 0;
        int last = 0;
        std::vector<cgsize_t> nodes;
        QMap<QString, QString> texts;      ///< descriptors
        QMap<QString, QString> attributes; ///< those of "Attributes"
    };

    struct Condition
    {
        QString name;
        QString family;
        int first = 0;
        int last = 0;
        QMap<QString, QString> texts;
    };

    struct Link
    {
        QString name;
        CGNS_ENUMT(GridConnectivityType_t) type = CGNS_ENUMV(GridConnectivityTypeNull);
        QString donor;
        std::vector<cgsize_t> points;
        std::vector<cgsize_t> donors;
        bool isPeriodic = false;
        std::array<float, 3> center = {};
        std::array<float, 3> angle = {};
        std::array<float, 3> translation = {};
        QMap<QString, QString> texts;
    };

    struct Zone
    {
        QString name;
        int vertexCount = 0;
        int cellCount = 0;
        std::vector<Vector> points;
        std::vector<Section> sections;
        std::vector<Condition> conditions;
        std::vector<Link> links;
        std::map<QString, std::vector<int>> fields; ///< "Elements/mesh_id" for instance
        QMap<QString, QString> attributes;

        const Link* linkTo(const QString& zone, const QString& relation) const
        {
            for (const Link& link : links) {
                if (link.donor == zone && link.texts.value("Relation") == relation) {
                    return &link;
                }
            }
            return nullptr;
        }
    };

    explicit CgnsContent(const QString& path)
    {
        isOpen = cg_open(QFile::encodeName(path).constData(), CG_MODE_READ, &file_) == CG_OK;
        if (isOpen) {
            readBase();
            cg_close(file_);
        }
    }

    const Zone& zone(const QString& name) const
    {
        static const Zone none;
        for (const Zone& each : zones) {
            if (each.name == name) {
                return each;
            }
        }
        return none;
    }

    /// \brief By the faces that the standard gives each kind, from its own corners outwards.
    static double volumeOf(const Zone& zone)
    {
        double sum = 0;
        for (const Section& section : zone.sections) {
            const auto found = outwardFaces().find(section.type);
            if (found == outwardFaces().end()) {
                continue;
            }
            const auto count = static_cast<std::size_t>(section.last - section.first + 1);
            const std::size_t size = section.nodes.size() / count;
            for (std::size_t e = 0; e < count; ++e) {
                sum += volumeOf(zone, section, e * size, found->second);
            }
        }
        return sum;
    }

    bool isOpen = false;
    int cellDimension = 0;
    int physicalDimension = 0;
    std::vector<Zone> zones;
    QMap<QString, QString> families; ///< full names

private:
    using Faces = std::vector<std::vector<std::size_t>>;

    static const std::map<CGNS_ENUMT(ElementType_t), Faces>& outwardFaces()
    {
        static const std::map<CGNS_ENUMT(ElementType_t), Faces> faces = {
            {CGNS_ENUMV(TETRA_4), {{1, 3, 2}, {1, 2, 4}, {2, 3, 4}, {3, 1, 4}}},
            {CGNS_ENUMV(PYRA_5), {{1, 4, 3, 2}, {1, 2, 5}, {2, 3, 5}, {3, 4, 5}, {4, 1, 5}}},
            {CGNS_ENUMV(PENTA_6), {{1, 2, 5, 4}, {2, 3, 6, 5}, {3, 1, 4, 6}, {1, 3, 2}, {4, 5, 6}}},
            {CGNS_ENUMV(HEXA_8),
             {{1, 4, 3, 2}, {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 4, 8, 7}, {1, 5, 8, 4}, {5, 6, 7, 8}}}};
        return faces;
    }

    static double volumeOf(const Zone& zone, const Section& section, std::size_t start,
                           const Faces& faces)
    {
        const auto at = [&](std::size_t corner) {
            return zone.points[static_cast<std::size_t>(section.nodes[start + corner - 1]) - 1];
        };
        double sum = 0;
        for (const std::vector<std::size_t>& face : faces) {
            for (std::size_t i = 1; i + 1 < face.size(); ++i) {
                sum += ((at(face[0]) ^ at(face[i])) * at(face[i + 1])) / 6.0;
            }
        }
        return sum;
    }

    void readBase()
    {
        std::array<char, 33> name = {};
        cg_base_read(file_, 1, name.data(), &cellDimension, &physicalDimension);
        int count = 0;
        cg_nzones(file_, 1, &count);
        for (int z = 1; z <= count; ++z) {
            readZone(z);
        }
        cg_nfamilies(file_, 1, &count);
        for (int f = 1; f <= count; ++f) {
            int boundaries = 0;
            int geometries = 0;
            cg_family_read(file_, 1, f, name.data(), &boundaries, &geometries);
            cg_goto(file_, 1, "Family_t", f, "end");
            families.insert(name.data(), texts().value("FullName"));
        }
    }

    static QMap<QString, QString> texts()
    {
        QMap<QString, QString> found;
        int count = 0;
        cg_ndescriptors(&count);
        for (int d = 1; d <= count; ++d) {
            std::array<char, 33> name = {};
            char* text = nullptr;
            cg_descriptor_read(d, name.data(), &text);
            found.insert(name.data(), QString::fromUtf8(text));
            cg_free(text);
        }
        return found;
    }

    QMap<QString, QString> attributes() const
    {
        return cg_gorel(file_, "Attributes", 0, "end") == CG_OK ? texts()
                                                                : QMap<QString, QString>();
    }

    void readZone(int z)
    {
        Zone zone;
        std::array<char, 33> name = {};
        std::array<cgsize_t, 9> size = {};
        cg_zone_read(file_, 1, z, name.data(), size.data());
        zone.name = name.data();
        zone.vertexCount = static_cast<int>(size[0]);
        zone.cellCount = static_cast<int>(size[1]);
        cg_goto(file_, 1, "Zone_t", z, "end");
        zone.attributes = attributes();
        readPoints(z, zone);
        readSections(z, zone);
        readConditions(z, zone);
        readLinks(z, zone);
        readFields(z, zone);
        zones.push_back(zone);
    }

    void readPoints(int z, Zone& zone) const
    {
        const cgsize_t first = 1;
        const cgsize_t last = zone.vertexCount;
        std::array<std::vector<double>, 3> axes;
        const std::array<const char*, 3> names = {"CoordinateX", "CoordinateY", "CoordinateZ"};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            axes.at(axis).assign(static_cast<std::size_t>(zone.vertexCount), 0.0);
            cg_coord_read(file_, 1, z, names.at(axis), CGNS_ENUMV(RealDouble), &first, &last,
                          axes.at(axis).data());
        }
        for (std::size_t i = 0; i < axes[0].size(); ++i) {
            zone.points.emplace_back(axes[0][i], axes[1][i], axes[2][i]);
        }
    }

    void readSections(int z, Zone& zone) const
    {
        int count = 0;
        cg_nsections(file_, 1, z, &count);
        for (int s = 1; s <= count; ++s) {
            Section section;
            std::array<char, 33> name = {};
            cgsize_t first = 0;
            cgsize_t last = 0;
            cgsize_t size = 0;
            int boundary = 0;
            int parents = 0;
            cg_section_read(file_, 1, z, s, name.data(), &section.type, &first, &last, &boundary,
                            &parents);
            cg_ElementDataSize(file_, 1, z, s, &size);
            section.name = name.data();
            section.first = static_cast<int>(first);
            section.last = static_cast<int>(last);
            section.nodes.resize(static_cast<std::size_t>(size));
            cg_elements_read(file_, 1, z, s, section.nodes.data(), nullptr);
            cg_goto(file_, 1, "Zone_t", z, "Elements_t", s, "end");
            section.texts = texts();
            section.attributes = attributes();
            zone.sections.push_back(section);
        }
    }

    void readConditions(int z, Zone& zone) const
    {
        int count = 0;
        cg_nbocos(file_, 1, z, &count);
        for (int b = 1; b <= count; ++b) {
            Condition condition;
            std::array<char, 33> name = {};
            CGNS_ENUMT(BCType_t) type = CGNS_ENUMV(BCTypeNull);
            CGNS_ENUMT(PointSetType_t) set = CGNS_ENUMV(PointSetTypeNull);
            CGNS_ENUMT(DataType_t) data = CGNS_ENUMV(DataTypeNull);
            cgsize_t points = 0;
            cgsize_t normals = 0;
            int index = 0;
            int sets = 0;
            cg_boco_info(file_, 1, z, b, name.data(), &type, &set, &points, &index, &normals, &data,
                         &sets);
            std::array<cgsize_t, 2> range = {};
            if (set == CGNS_ENUMV(PointRange)) {
                cg_boco_read(file_, 1, z, b, range.data(), nullptr);
            }
            condition.name = name.data();
            condition.first = static_cast<int>(range[0]);
            condition.last = static_cast<int>(range[1]);
            cg_goto(file_, 1, "Zone_t", z, "ZoneBC_t", 1, "BC_t", b, "end");
            condition.texts = texts();
            if (cg_famname_read(name.data()) == CG_OK) {
                condition.family = name.data();
            }
            zone.conditions.push_back(condition);
        }
    }

    void readLinks(int z, Zone& zone) const
    {
        int count = 0;
        cg_nconns(file_, 1, z, &count);
        for (int c = 1; c <= count; ++c) {
            Link link;
            std::array<char, 33> name = {};
            std::array<char, 33> donor = {};
            CGNS_ENUMT(GridLocation_t) location = CGNS_ENUMV(GridLocationNull);
            CGNS_ENUMT(PointSetType_t) set = CGNS_ENUMV(PointSetTypeNull);
            CGNS_ENUMT(PointSetType_t) donorSet = CGNS_ENUMV(PointSetTypeNull);
            CGNS_ENUMT(ZoneType_t) donorZone = CGNS_ENUMV(ZoneTypeNull);
            CGNS_ENUMT(DataType_t) data = CGNS_ENUMV(DataTypeNull);
            cgsize_t points = 0;
            cgsize_t donors = 0;
            cg_conn_info(file_, 1, z, c, name.data(), &location, &link.type, &set, &points,
                         donor.data(), &donorZone, &donorSet, &data, &donors);
            link.name = name.data();
            link.donor = donor.data();
            link.points.resize(static_cast<std::size_t>(points));
            link.donors.resize(static_cast<std::size_t>(donors));
            if (link.donors.empty()) {
                cg_conn_read_short(file_, 1, z, c, link.points.data());
            } else {
                cg_conn_read(file_, 1, z, c, link.points.data(), CGNS_ENUMV(DataTypeNull),
                             link.donors.data());
            }
            link.isPeriodic =
                cg_conn_periodic_read(file_, 1, z, c, link.center.data(), link.angle.data(),
                                      link.translation.data()) == CG_OK;
            cg_goto(file_, 1, "Zone_t", z, "ZoneGridConnectivity_t", 1, "GridConnectivity_t", c,
                    "end");
            link.texts = texts();
            zone.links.push_back(link);
        }
    }

    void readFields(int z, Zone& zone) const
    {
        int count = 0;
        cg_nsols(file_, 1, z, &count);
        for (int s = 1; s <= count; ++s) {
            std::array<char, 33> solution = {};
            CGNS_ENUMT(GridLocation_t) location = CGNS_ENUMV(GridLocationNull);
            cg_sol_info(file_, 1, z, s, solution.data(), &location);
            int fields = 0;
            cg_nfields(file_, 1, z, s, &fields);
            for (int f = 1; f <= fields; ++f) {
                std::array<char, 33> name = {};
                CGNS_ENUMT(DataType_t) type = CGNS_ENUMV(DataTypeNull);
                cg_field_info(file_, 1, z, s, f, &type, name.data());
                const cgsize_t first = 1;
                const cgsize_t last =
                    location == CGNS_ENUMV(Vertex) ? zone.vertexCount : zone.cellCount;
                std::vector<int> values(static_cast<std::size_t>(last));
                cg_field_read(file_, 1, z, s, name.data(), CGNS_ENUMV(Integer), &first, &last,
                              values.data());
                zone.fields.emplace(QString(solution.data()) + '/' + name.data(), values);
            }
        }
    }

    int file_ = 0;
};
