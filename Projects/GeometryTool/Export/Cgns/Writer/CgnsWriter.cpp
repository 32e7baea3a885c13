#include "CgnsWriter.h"

#include "AttributeValue.h"
#include "CaseView.h"
#include "ElementTopology.h"
#include "EntityNames.h"
#include "InParallel.h"
#include "IntAttribute.h"
#include "MeshEntity.h"
#include "ModelEntity.h"
#include "PeriodicAngles.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <numeric>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

// Their nodes are listed in less than a millisecond.
constexpr std::size_t fewElements = 65536;

/// \brief The kind of an element; its nodes stand in the order of ours.
CGNS_ENUMT(ElementType_t) typeOf(const ZoneSection& section)
{
    switch (10 * section.dimension + section.vertexCount) {
    case 12:
        return CGNS_ENUMV(BAR_2);
    case 23:
        return CGNS_ENUMV(TRI_3);
    case 24:
        return CGNS_ENUMV(QUAD_4);
    case 34:
        return CGNS_ENUMV(TETRA_4);
    case 35:
        return CGNS_ENUMV(PYRA_5);
    case 36:
        return CGNS_ENUMV(PENTA_6);
    default:
        return CGNS_ENUMV(HEXA_8);
    }
}

/// \brief The name of a model entity, or its kind and id.
QString calledOf(const ModelEntity& entity)
{
    return entity.name().isEmpty()
               ? QStringLiteral("%1_%2").arg(kindName(entity.dimension())).arg(entity.id())
               : entity.name();
}

QString calledOf(const ZonePatch& patch)
{
    return patch.face ? calledOf(*patch.face) : QStringLiteral("between parts");
}

/// What else stands beside the sections of a zone.
const QStringList zoneNodes{QStringLiteral("ZoneType"),
                            QStringLiteral("GridCoordinates"),
                            QStringLiteral("ZoneBC"),
                            QStringLiteral("FullName"),
                            QStringLiteral("ZoneGridConnectivity"),
                            QStringLiteral("Attributes"),
                            QStringLiteral("Elements"),
                            QStringLiteral("Vertices")};

/// Most elements have no attributes, and to ask for one takes its time.
bool isInBoundaryLayer(MeshEntity& element)
{
    const AttributeMap& attributes = element.attributes();
    return !attributes.isEmpty() && attributes.value(AttributeType::InBL, false).toBool();
}

QString textOf(const AttributeType& type, const QVariant& value)
{
    const QJsonValue json = AttributeValue::json(value, AttributeValue::kindOf(type));
    if (json.isString()) {
        return json.toString();
    }
    const QByteArray list = QJsonDocument(QJsonArray{json}).toJson(QJsonDocument::Compact);
    return json.isUndefined() ? QString::fromLatin1(value.typeName())
                              : QString::fromUtf8(list.mid(1, list.size() - 2));
}

} // namespace

CgnsWriter::CgnsWriter(const CaseView& view, const ZoneLayout& layout, const ZoneLinks& links,
                       CgnsFile& file)
    : view_(view)
    , layout_(layout)
    , links_(links)
    , file_(file)
    , nodeOf_(view.meshEntities(0).size(), 0)
{
}

void CgnsWriter::write()
{
    file_.go({});
    file_.check(cg_dataclass_write(CGNS_ENUMV(NormalizedByUnknownDimensional)));
    nameZones();
    numberPatches();
    writeFamilies();
    for (std::size_t zone = 0; zone < layout_.zones().size(); ++zone) {
        writeZone(zone);
    }
}

void CgnsWriter::nameZones()
{
    for (const Zone& zone : layout_.zones()) {
        zoneNames_.push_back(names_.add(nameOf(zone)));
    }
}

QString CgnsWriter::nameOf(const Zone& zone) const
{
    if (!layout_.parts().empty()) {
        return QStringLiteral("part_%1").arg(layout_.parts()[zoneNames_.size()]);
    }
    if (zone.region) {
        return calledOf(*zone.region);
    }
    const bool isStray = !zone.sections.front().owner && layout_.zones().size() > 1;
    return isStray ? QStringLiteral("without_region") : QStringLiteral("Mesh");
}

/// Behind the elements of their zone, in the order in which their sections are written.
void CgnsWriter::numberPatches()
{
    for (const Zone& zone : layout_.zones()) {
        ranges_.emplace_back();
        auto next = static_cast<cgsize_t>(zone.elementCount()) + 1;
        for (const ZonePatch& patch : zone.patches) {
            const cgsize_t first = next;
            for (const ZoneSection& section : patch.sections) {
                next += static_cast<cgsize_t>(section.entities.size());
            }
            ranges_.back().push_back({first, next - 1});
        }
    }
}

/// A family for each name of faces, on which a solver puts its conditions.
void CgnsWriter::writeFamilies()
{
    for (const ModelEntity* face : view_.modelEntities(view_.faceDimension())) {
        const QString full = calledOf(*face);
        if (face->childCount() == 0 || families_.count(full) > 0) {
            continue;
        }
        const QByteArray name = names_.add(full);
        families_.emplace(full, name);
        int family = 0;
        int condition = 0;
        file_.check(cg_family_write(file_.number(), file_.base(), name.constData(), &family));
        file_.check(cg_fambc_write(file_.number(), file_.base(), family, "FamBC",
                                   CGNS_ENUMV(BCTypeUserDefined), &condition));
        file_.go({{"Family_t", family}});
        file_.describe("FullName", full);
    }
}

void CgnsWriter::writeZone(std::size_t position)
{
    const Zone& zone = layout_.zones()[position];
    const std::array<cgsize_t, 3> size = {static_cast<cgsize_t>(zone.vertices.size()),
                                          static_cast<cgsize_t>(zone.elementCount()), 0};
    file_.check(cg_zone_write(file_.number(), file_.base(), zoneNames_[position].constData(),
                              size.data(), CGNS_ENUMV(Unstructured), &zone_));
    if (zone.region && layout_.parts().empty()) {
        file_.go({{"Zone_t", zone_}});
        file_.describe("FullName", calledOf(*zone.region));
        writeAttributes(*zone.region);
    }
    nextElement_ = 1;
    for (std::size_t i = 0; i < zone.vertices.size(); ++i) {
        nodeOf_[static_cast<std::size_t>(zone.vertices[i])] = static_cast<cgsize_t>(i) + 1;
    }
    CgnsNames names(zoneNodes);
    writeCoordinates(zone);
    writeSections(zone, names);
    writeElementFields(zone);
    writeVertexFields(zone);
    writeConditions(position);
    writeLinks(position);
}

void CgnsWriter::writeCoordinates(const Zone& zone)
{
    static constexpr const char* names[] = {"CoordinateX", "CoordinateY", "CoordinateZ"};
    std::vector<double> values(zone.vertices.size());
    for (int axis = 0; axis < file_.physicalDimension(); ++axis) {
        std::transform(zone.vertices.begin(), zone.vertices.end(), values.begin(),
                       [this, axis](int vertex) {
                           const Vector& p = view_.points()[static_cast<std::size_t>(vertex)];
                           return axis == 0 ? p.x() : axis == 1 ? p.y() : p.z();
                       });
        int coordinate = 0;
        file_.check(cg_coord_write(file_.number(), file_.base(), zone_, CGNS_ENUMV(RealDouble),
                                   names[axis], values.data(), &coordinate));
    }
}

/// The elements first, so that their numbers are those of the cells.
void CgnsWriter::writeSections(const Zone& zone, CgnsNames& names)
{
    for (const ZoneSection& section : zone.sections) {
        writeSection(section, names.add(nameOf(section)));
    }
    for (const ZonePatch& patch : zone.patches) {
        for (const ZoneSection& section : patch.sections) {
            writeSection(section, names.add(calledOf(*patch.face)));
        }
    }
}

QString CgnsWriter::nameOf(const ZoneSection& section) const
{
    const QString kind =
        QLatin1String(ElementTopology::find(section.dimension, section.vertexCount)->plural);
    return section.owner ? calledOf(*section.owner) + QLatin1Char(' ') + kind : kind;
}

std::vector<cgsize_t> CgnsWriter::connectivity(const ZoneSection& section) const
{
    const VertexLists& lists = view_.vertexLists(section.dimension);
    const auto corners = static_cast<std::size_t>(section.vertexCount);
    std::vector<cgsize_t> nodes(section.entities.size() * corners);
    inParallel(section.entities.size(), fewElements, [&](std::size_t begin, std::size_t end) {
        cgsize_t* place = nodes.data() + corners * begin;
        for (std::size_t i = begin; i < end; ++i) {
            for (const int vertex : lists.of(static_cast<std::size_t>(section.entities[i]))) {
                *place++ = nodeOf_[static_cast<std::size_t>(vertex)];
            }
        }
    });
    return nodes;
}

void CgnsWriter::writeSection(const ZoneSection& section, const QByteArray& name)
{
    const std::vector<cgsize_t> nodes = connectivity(section);
    const cgsize_t last = nextElement_ + static_cast<cgsize_t>(section.entities.size()) - 1;
    int number = 0;
    file_.check(cg_section_write(file_.number(), file_.base(), zone_, name.constData(),
                                 typeOf(section), nextElement_, last, 0, nodes.data(), &number));
    nextElement_ = last + 1;
    if (section.owner) {
        file_.go({{"Zone_t", zone_}, {"Elements_t", number}});
        file_.describe("FullName", calledOf(*section.owner));
        writeAttributes(*section.owner);
    }
}

/// Descriptors by tag, in the form of the attributes file.
void CgnsWriter::writeAttributes(const ModelEntity& entity)
{
    file_.check(cg_user_data_write("Attributes"));
    file_.check(cg_gorel(file_.number(), "Attributes", 0, "end"));
    file_.describe("id", QString::number(entity.id()));
    const AttributeMap& attributes = entity.attributes();
    for (const AttributeType& type : attributes.types()) {
        if (type.isValid()) {
            const QString text = textOf(type, attributes.value(type, {}));
            file_.describe(type.toString().toLatin1().constData(), text);
        }
    }
}

void CgnsWriter::writeConditions(std::size_t position)
{
    const Zone& zone = layout_.zones()[position];
    CgnsNames names;
    int count = 0;
    for (std::size_t i = 0; i < zone.patches.size(); ++i) {
        const ZonePatch& patch = zone.patches[i];
        if (patch.other != ZoneLayout::Outside || links_.isLinked(patch)) {
            continue;
        }
        const QString full = calledOf(*patch.face);
        const std::array<cgsize_t, 2> range = {ranges_[position][i].first,
                                               ranges_[position][i].last};
        int condition = 0;
        file_.check(cg_boco_write(file_.number(), file_.base(), zone_, names.add(full).constData(),
                                  CGNS_ENUMV(FamilySpecified), CGNS_ENUMV(PointRange), 2,
                                  range.data(), &condition));
        file_.check(cg_boco_gridlocation_write(file_.number(), file_.base(), zone_, condition,
                                               sideLocation()));
        file_.go({{"Zone_t", zone_}, {"ZoneBC_t", 1}, {"BC_t", ++count}});
        file_.check(cg_famname_write(families_.at(full).constData()));
        file_.describe("FullName", full);
    }
}

CGNS_ENUMT(GridLocation_t) CgnsWriter::sideLocation() const
{
    return view_.faceDimension() == 2 ? CGNS_ENUMV(FaceCenter) : CGNS_ENUMV(EdgeCenter);
}

void CgnsWriter::writeLinks(std::size_t zone)
{
    CgnsNames names;
    for (const ZoneLink& link : links_.all()) {
        if (link.zone == static_cast<int>(zone)) {
            writeLink(link, names.add(calledOf(*link.patch)));
        }
    }
}

void CgnsWriter::writeLink(const ZoneLink& link, const QByteArray& name)
{
    const Zone& zone = layout_.zones()[static_cast<std::size_t>(link.zone)];
    const Zone& donorZone = layout_.zones()[static_cast<std::size_t>(link.donorZone)];
    const char* const donorName = zoneNames_[static_cast<std::size_t>(link.donorZone)].constData();
    int connection = 0;
    if (link.points.empty()) {
        connection = writeFaces(link, name, donorName);
    } else {
        const std::vector<cgsize_t> points = numbersOf(zone, link.points);
        const std::vector<cgsize_t> donors = numbersOf(donorZone, link.donors);
        const auto count = static_cast<cgsize_t>(points.size());
        file_.check(cg_conn_write(file_.number(), file_.base(), zone_, name.constData(),
                                  CGNS_ENUMV(Vertex), CGNS_ENUMV(Abutting1to1),
                                  CGNS_ENUMV(PointList), count, points.data(), donorName,
                                  CGNS_ENUMV(Unstructured), CGNS_ENUMV(PointListDonor),
                                  CGNS_ENUMV(DataTypeNull), count, donors.data(), &connection));
    }
    file_.go(
        {{"Zone_t", zone_}, {"ZoneGridConnectivity_t", 1}, {"GridConnectivity_t", connection}});
    file_.describe("Relation", link.relation);
    file_.describe("FullName", calledOf(*link.patch));
    file_.describe("DonorFace", calledOf(*link.donor));
    if (link.transform) {
        writePeriodic(link, connection);
    }
}

/// \brief Connects the mesh faces of a patch with those of its donor, which do not match them.
int CgnsWriter::writeFaces(const ZoneLink& link, const QByteArray& name, const char* donorName)
{
    const Range& range = rangeOf(link.zone, link.patch);
    const Range& donorRange = rangeOf(link.donorZone, link.donor);
    const std::array<cgsize_t, 2> points = {range.first, range.last};
    std::vector<cgsize_t> donors(static_cast<std::size_t>(donorRange.last - donorRange.first + 1));
    std::iota(donors.begin(), donors.end(), donorRange.first);
    int connection = 0;
    file_.check(cg_conn_write(file_.number(), file_.base(), zone_, name.constData(), sideLocation(),
                              CGNS_ENUMV(Abutting), CGNS_ENUMV(PointRange), 2, points.data(),
                              donorName, CGNS_ENUMV(Unstructured), CGNS_ENUMV(PointListDonor),
                              CGNS_ENUMV(DataTypeNull), static_cast<cgsize_t>(donors.size()),
                              donors.data(), &connection));
    return connection;
}

const CgnsWriter::Range& CgnsWriter::rangeOf(int zone, const ZonePatch* patch) const
{
    const auto position = static_cast<std::size_t>(zone);
    return ranges_[position]
                  [static_cast<std::size_t>(patch - layout_.zones()[position].patches.data())];
}

std::vector<cgsize_t> CgnsWriter::numbersOf(const Zone& zone, const std::vector<int>& vertices)
{
    std::vector<cgsize_t> numbers;
    numbers.reserve(vertices.size());
    for (const int vertex : vertices) {
        numbers.push_back(zone.localOf(vertex) + 1);
    }
    return numbers;
}

void CgnsWriter::writePeriodic(const ZoneLink& link, int connection)
{
    const PeriodicAngles angles(*link.transform);
    file_.check(cg_conn_periodic_write(file_.number(), file_.base(), zone_, connection,
                                       angles.center.data(), angles.angle.data(),
                                       angles.translation.data()));
}

/// \brief Numbers by which cells can be found in the case again, and what their region gives them.
void CgnsWriter::writeElementFields(const Zone& zone)
{
    std::vector<int> ids;
    std::vector<int> regions;
    std::vector<int> materials;
    std::vector<int> layers;
    for (const ZoneSection& section : zone.sections) {
        for (const int position : section.entities) {
            const auto place = static_cast<std::size_t>(position);
            MeshEntity& element = *view_.meshEntities(section.dimension)[place];
            ids.push_back(view_.ids(section.dimension)[place]);
            layers.push_back(isInBoundaryLayer(element) ? 1 : 0);
        }
        const ModelEntity* const region = section.owner;
        regions.resize(ids.size(), region ? region->id() : 0);
        materials.resize(ids.size(),
                         region ? intOf(region->attributes(), AttributeType::MaterialId) : 0);
    }
    const int solution = addSolution("Elements", CGNS_ENUMV(CellCenter));
    writeField(solution, "mesh_id", ids);
    writeField(solution, "model_id", regions);
    writeField(solution, "material_id", materials);
    if (std::find(layers.begin(), layers.end(), 1) != layers.end()) {
        writeField(solution, "in_bl", layers);
    }
}

void CgnsWriter::writeVertexFields(const Zone& zone)
{
    std::vector<int> ids;
    ids.reserve(zone.vertices.size());
    for (const int vertex : zone.vertices) {
        ids.push_back(view_.ids(0)[static_cast<std::size_t>(vertex)]);
    }
    writeField(addSolution("Vertices", CGNS_ENUMV(Vertex)), "mesh_id", ids);
}

int CgnsWriter::addSolution(const char* name, CGNS_ENUMT(GridLocation_t) location)
{
    int solution = 0;
    file_.check(cg_sol_write(file_.number(), file_.base(), zone_, name, location, &solution));
    return solution;
}

void CgnsWriter::writeField(int solution, const char* name, const std::vector<int>& values)
{
    int field = 0;
    file_.check(cg_field_write(file_.number(), file_.base(), zone_, solution, CGNS_ENUMV(Integer),
                               name, values.data(), &field));
}

} // namespace Ovra::GeoTool
