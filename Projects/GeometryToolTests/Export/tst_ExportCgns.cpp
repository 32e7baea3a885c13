#include "AttributeType.h"
#include "CgnsChecker.h"
#include "CgnsContent.h"
#include "CgnsNames.h"
#include "ImportChecks.h"
#include "PeriodicAngles.h"
#include "Programs.h"
#include "TinyCase.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <sys/resource.h>
#include <utility>
#include <vector>

using Ovra::Geo::AttributeType;
using Ovra::Geo::Vector;
using Ovra::GeoTool::CgnsNames;

/// CGNS files, read back by the library of the format.
class ExportCgnsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(directory_.isValid());
        makeParts();
        for (const char* name : {"sector", "fan", "channel"}) {
            prepare(name, QStringLiteral("%1/%2/%2").arg(Places::cases(), name),
                    {"--mesh-size", "0.01"});
        }
        makeMatchingSides();
        makePlane();
        QVERIFY(writeContent(path("kinds.msh"), kinds()));
        QCOMPARE(runTool({"import", path("kinds.msh"), "-o", path("kinds")}).exitCode, 0);
    }

    void isSoundForTheChecker_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("options");
        for (const char* name : {"parts", "parts-prepared", "sector-prepared", "matching-prepared",
                                 "plane", "kinds"}) {
            QTest::newRow(name) << name << QStringList();
        }
        for (const char* name : {"parts", "parts-prepared", "sector-prepared", "fan-prepared",
                                 "channel-prepared", "plane", "kinds"}) {
            QTest::addRow("%s in one zone", name) << name << QStringList("--one-zone");
            if (QByteArray(name) != "kinds") {
                QTest::addRow("%s in parts", name) << name << QStringList{"--parts", "3"};
            }
        }
    }

    void isSoundForTheChecker()
    {
        if (Programs::isMissing("cgnscheck")) {
            QSKIP("there is no cgnscheck here (Debian's package cgns-convert)");
        }
        QFETCH(QString, name);
        QFETCH(QStringList, options);
        write(name, options);
        const QByteArray faults = CgnsChecker::faultsOf(path("out.cgns"));
        QVERIFY2(faults.isEmpty(), faults.constData());
    }

    void keepsTheVolumeOfEveryKind_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QList<double>>("volumes");
        QTest::newRow("by region") << QStringList() << QList<double>{4.0 / 3, 2.0 / 3};
        QTest::newRow("one zone") << QStringList("--one-zone") << QList<double>{2.0};
    }

    /// A hexahedron and a pyramid in one region, a wedge and a tetrahedron in another.
    void keepsTheVolumeOfEveryKind()
    {
        QFETCH(QStringList, options);
        QFETCH(QList<double>, volumes);
        const CgnsContent content = written("kinds", options);
        QCOMPARE(content.zones.size(), static_cast<std::size_t>(volumes.size()));
        for (int i = 0; i < volumes.size(); ++i) {
            const double volume = CgnsContent::volumeOf(content.zones[static_cast<std::size_t>(i)]);
            QVERIFY2(qAbs(volume - volumes.at(i)) < 1e-12, qPrintable(QString::number(volume)));
        }
    }

    void makesAZoneOfEachRegion()
    {
        const CgnsContent content = written("parts");
        ImportedCase original(path("parts"));
        QCOMPARE(content.cellDimension, 3);
        QCOMPARE(content.physicalDimension, 3);
        QCOMPARE(content.zones.size(), 2u);
        for (const char* name : {"air", "block"}) {
            const CgnsContent::Zone& zone = content.zone(name);
            Ovra::Geo::ModelEntity* region = regionOf(original, name);
            const auto elements = idsOf(region);
            QCOMPARE(zone.cellCount, static_cast<int>(elements.size()));
            QCOMPARE(sorted(zone.fields.at("Elements/mesh_id")), elements);
            QVERIFY(qAbs(CgnsContent::volumeOf(zone) - 1.0) < 1e-9);
            QCOMPARE(zone.attributes.value("id"), QString::number(region->id()));
        }
        QCOMPARE(content.zone("block").attributes.value("material_type"), QString("solid"));
        QCOMPARE(content.zone("block").attributes.value("material_id"), QString("2"));
        QCOMPARE(content.zone("block").attributes.value("mesh_size"), QString("0.25"));
        QCOMPARE(sorted(content.zone("block").fields.at("Elements/material_id")).front(), 2);
    }

    void putsVerticesAtTheirPlaces()
    {
        const CgnsContent content = written("parts");
        ImportedCase original(path("parts"));
        for (const CgnsContent::Zone& zone : content.zones) {
            const std::vector<int>& ids = zone.fields.at("Vertices/mesh_id");
            QCOMPARE(ids.size(), zone.points.size());
            for (std::size_t i = 0; i < ids.size(); ++i) {
                QVERIFY(original.mesh()->entity(0, ids[i])->centroid() == zone.points[i]);
            }
        }
    }

    /// Names that are shared, too long, or none.
    void namesBoundaryConditions()
    {
        const CgnsContent content = written("parts");
        const QString full = "a rather long name of a face that is an inlet";
        QCOMPARE(content.families.value(full.left(32)), full);
        QCOMPARE(content.families.value("cote _ ouest"), QString::fromUtf8("côté / ouest"));
        ImportedCase original(path("parts"));
        int conditions = 0;
        for (const CgnsContent::Zone& zone : content.zones) {
            for (const CgnsContent::Condition& condition : zone.conditions) {
                ++conditions;
                const QString name = condition.texts.value("FullName");
                QCOMPARE(content.families.value(condition.family), name);
                int faces = 0;
                for (const CgnsContent::Section& section : zone.sections) {
                    const bool isOfIt =
                        section.first >= condition.first && section.last <= condition.last;
                    faces += isOfIt ? section.last - section.first + 1 : 0;
                    QVERIFY(!isOfIt || section.texts.value("FullName") == name);
                }
                QCOMPARE(faces, condition.last - condition.first + 1);
            }
        }
        QCOMPARE(conditions, 10); // of five faces of each box
    }

    void connectsZonesThatShareAFace()
    {
        const CgnsContent content = written("parts");
        checkLink(content, "air", "block", "shared", 1);
        checkLink(content, "block", "air", "shared", 1);
    }

    void hasSectionsByRegionInOneZone()
    {
        const CgnsContent content = written("parts", {"--one-zone"});
        QCOMPARE(content.zones.size(), 1u);
        const CgnsContent::Zone& zone = content.zones.front();
        ImportedCase original(path("parts"));
        QCOMPARE(zone.cellCount, original.mesh()->count(3));
        QCOMPARE(zone.vertexCount, original.mesh()->count(0));
        QCOMPARE(zone.sections[0].name, QString("air tetrahedra"));
        QCOMPARE(zone.sections[1].name, QString("block tetrahedra"));
        QCOMPARE(zone.sections[1].attributes.value("material_id"), QString("2"));
        QVERIFY(zone.links.empty());
        QVERIFY(qAbs(CgnsContent::volumeOf(zone) - 2.0) < 1e-9);
    }

    /// The fluid's side of the face and the solid's.
    void connectsWhatIsDoubled_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::newRow("by region") << QStringList();
        QTest::newRow("one zone") << QStringList("--one-zone");
    }

    void connectsWhatIsDoubled()
    {
        QFETCH(QStringList, options);
        const CgnsContent content = written("parts-prepared", options);
        const bool isOne = !options.isEmpty();
        checkLink(content, isOne ? "Mesh" : "air", isOne ? "Mesh" : "block", "solid side", 1);
    }

    void connectsPeriodicPairs()
    {
        const CgnsContent content = written("sector-prepared");
        int links = 0;
        for (const CgnsContent::Zone& zone : content.zones) {
            for (const CgnsContent::Link& link : zone.links) {
                if (link.texts.value("Relation") == "periodic") {
                    ++links;
                    checkPeriodic(content, zone, link);
                }
            }
        }
        QCOMPARE(links, 4); // two pairs, both ways
    }

    /// Vertex by vertex, where the transform takes each to that to which it is connected.
    void connectsPeriodicPairsThatMatch()
    {
        const CgnsContent content = written("matching-prepared");
        const CgnsContent::Zone& zone = content.zone("box");
        QCOMPARE(zone.links.size(), std::size_t(2));
        for (const CgnsContent::Link& link : zone.links) {
            QCOMPARE(link.texts.value("Relation"), QString("periodic"));
            QCOMPARE(link.type, CGNS_ENUMV(Abutting1to1));
            QCOMPARE(distinct(link.points), nodesOn(zone, link.texts.value("FullName")));
            QCOMPARE(distinct(link.donors), nodesOn(zone, link.texts.value("DonorFace")));
            for (std::size_t i = 0; i < link.points.size(); ++i) {
                const Vector moved = turned(pointOf(zone, link.points[i]), link.center, link.angle,
                                            link.translation);
                QVERIFY((moved - pointOf(zone, link.donors[i])).length() < 1e-6);
            }
        }
    }

    void connectsWhatIsDoubledAsAWhole_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("relation");
        QTest::newRow("fluid and solid") << "fan-prepared"
                                         << "solid side";
        QTest::newRow("rotor and stator") << "fan-prepared"
                                          << "stator side";
    }

    /// All vertices of a face with those of its double, in the same places, from either side.
    void connectsWhatIsDoubledAsAWhole()
    {
        QFETCH(QString, name);
        QFETCH(QString, relation);
        const CgnsContent content = written(name);
        QStringList connected;
        for (const auto& [zone, link] : linksOf(content, relation)) {
            const CgnsContent::Zone& other = content.zone(link->donor);
            QCOMPARE(link->type, CGNS_ENUMV(Abutting1to1));
            QCOMPARE(distinct(link->points), nodesOn(*zone, link->texts.value("FullName")));
            QCOMPARE(distinct(link->donors), nodesOn(other, link->texts.value("DonorFace")));
            for (std::size_t i = 0; i < link->points.size(); ++i) {
                QVERIFY(pointOf(*zone, link->points[i]) == pointOf(other, link->donors[i]));
            }
            connected += pairOf(*link);
        }
        ImportedCase original(path(name));
        QCOMPARE(connectedIn(original, relation == "solid side" ? AttributeType::SolidFace
                                                                : AttributeType::StatorFace),
                 sorted(connected));
    }

    /// The mesh faces of either side, which do not match.
    void connectsExtrudedFaces()
    {
        const CgnsContent content = written("channel-prepared");
        QStringList connected;
        for (const auto& [zone, link] : linksOf(content, "extruded")) {
            QCOMPARE(link->type, CGNS_ENUMV(Abutting));
            const std::vector<cgsize_t> faces = elementsOn(*zone, link->texts.value("FullName"));
            QCOMPARE(link->points, (std::vector<cgsize_t>{faces.front(), faces.back()}));
            QCOMPARE(link->donors,
                     elementsOn(content.zone(link->donor), link->texts.value("DonorFace")));
            connected += pairOf(*link);
        }
        ImportedCase original(path("channel-prepared"));
        QCOMPARE(connectedIn(original, AttributeType::ExtrudedFace), sorted(connected));
    }

    /// Every vertex of several parts is connected, and with these alone.
    void connectsParts()
    {
        const ToolRun run =
            runTool({"export", path("parts"), "-o", path("out.cgns"), "--parts", "3"});
        QCOMPARE(run.errors, QByteArray());
        QVERIFY2(run.output.startsWith(path("out.cgns").toUtf8() + ": 3 parts of "),
                 run.output.constData());
        const CgnsContent content(path("out.cgns"));
        QCOMPARE(content.zones.size(), 3u);
        double volume = 0;
        std::map<int, std::set<QString>> zonesOf;
        for (const CgnsContent::Zone& zone : content.zones) {
            volume += CgnsContent::volumeOf(zone);
            for (const int id : zone.fields.at("Vertices/mesh_id")) {
                zonesOf[id].insert(zone.name);
            }
        }
        QVERIFY(qAbs(volume - 2.0) < 1e-9);
        std::map<int, std::set<QString>> linked;
        for (const CgnsContent::Zone& zone : content.zones) {
            const std::vector<int>& ids = zone.fields.at("Vertices/mesh_id");
            for (const CgnsContent::Link& link : zone.links) {
                const std::vector<int>& others =
                    content.zone(link.donor).fields.at("Vertices/mesh_id");
                QCOMPARE(link.type, CGNS_ENUMV(Abutting1to1));
                for (std::size_t i = 0; i < link.points.size(); ++i) {
                    const int id = ids[static_cast<std::size_t>(link.points[i]) - 1];
                    QCOMPARE(others[static_cast<std::size_t>(link.donors[i]) - 1], id);
                    linked[id].insert({zone.name, link.donor});
                }
            }
        }
        for (const auto& [id, zones] : zonesOf) {
            const std::set<QString>& found = linked[id];
            QVERIFY(zones.size() == 1 || !found.empty());
            QVERIFY(std::includes(zones.begin(), zones.end(), found.begin(), found.end()));
        }
    }

    /// Four elements in four parts: not every cut leaves one for each.
    void makesNoZoneOfAnEmptyPart()
    {
        const ToolRun run =
            runTool({"export", path("kinds"), "-o", path("out.cgns"), "--parts", "4"});
        QCOMPARE(run.exitCode, 0);
        const CgnsContent content(path("out.cgns"));
        const auto empty = 4 - static_cast<int>(content.zones.size());
        QCOMPARE(run.errors.contains(" without elements ha"), empty > 0);
        double volume = 0;
        for (const CgnsContent::Zone& zone : content.zones) {
            volume += CgnsContent::volumeOf(zone);
        }
        QVERIFY(qAbs(volume - 2.0) < 1e-12);
    }

    void tellsOfPairsWithoutATransform()
    {
        const ToolRun run = runTool({"export", path("sector"), "-o", path("out.cgns")});
        const QByteArray begin =
            "ovrageo: warning: " + path("out.cgns").toUtf8() + ": periodic pair ";
        const QByteArray end =
            " is no connection: the case is not prepared, which gives it a transform\n";
        QCOMPARE(run.errors, begin + '1' + end + begin + '2' + end);
        QCOMPARE(run.exitCode, 0);
    }

    void writesPlanarCasesInThePlane()
    {
        const CgnsContent content = written("plane");
        QCOMPARE(content.cellDimension, 2);
        QCOMPARE(content.physicalDimension, 2);
        QCOMPARE(content.zones.size(), 2u);
        checkLink(content, "left", "face_2", "shared", 1);
    }

    /// Of its face 3 one mesh face lies outside, one within the region, one at two regions and one
    /// nowhere; an element that lists a vertex twice is one element.
    void findsTheElementsAtEachFace()
    {
        TinyCase tiny;
        auto* const other = new Ovra::Geo::ModelRegion;
        tiny.model()->add(other);
        tiny.addVertex(Vector(1, 1, 1));
        tiny.addVertex(Vector(-1, 0, 0));
        tiny.addVertex(Vector(5, 5, 5));
        tiny.addElement(3, {2, 3, 4, 5}, tiny.region);
        tiny.addElement(3, {1, 4, 3, 6}, other);
        tiny.addElement(3, {6, 6, 3, 4}, other);
        tiny.addElement(2, {2, 3, 4}, tiny.face);
        tiny.addElement(2, {1, 3, 4}, tiny.face);
        tiny.addElement(2, {1, 3, 6}, tiny.face);
        tiny.addElement(2, {1, 2, 7}, tiny.face);
        QVERIFY(tiny.save(path("faces")));
        const ToolRun run = runTool({"export", path("faces"), "-o", path("out.cgns")});
        QCOMPARE(run.errors, "ovrageo: warning: " + path("out.cgns").toUtf8() +
                                 ": 1 mesh face without an element is left out\n");
        const CgnsContent content(path("out.cgns"));
        QCOMPARE(facesIn(content.zone("box")), (QStringList{"inlet 1", "inlet_2 1", "inlet_3 1"}));
        QCOMPARE(facesIn(content.zones.back()), (QStringList{"inlet 1", "inlet_2 1"}));
        QCOMPARE(content.zone("box").conditions.size(), 1u);
        QCOMPARE(content.zones.back().conditions.size(), 1u);
        QVERIFY(content.zone("box").linkTo(content.zones.back().name, "shared"));
    }

    void leavesRegionsWithoutElementsOut()
    {
        TinyCase tiny;
        auto* empty = new Ovra::Geo::ModelRegion;
        tiny.model()->add(empty);
        tiny.addElement(2, {1, 2, 4}, tiny.face);
        tiny.mesh()->entity(2, 2)->clearUpwardAdjacencies();
        tiny.addElement(3, {1, 2, 3, 4}, nullptr);
        QVERIFY(tiny.save(path("tiny")));
        const ToolRun run = runTool({"export", path("tiny"), "-o", path("out.cgns")});
        QCOMPARE(run.errors, "ovrageo: warning: " + path("out.cgns").toUtf8() +
                                 ": 1 region without elements is left out\n");
        const CgnsContent content(path("out.cgns"));
        QCOMPARE(content.zones.size(), 2u);
        QCOMPARE(content.zone("box").cellCount, 1);
        QCOMPARE(content.zone("without_region").cellCount, 1);
    }

    void refusesCasesWithoutElements()
    {
        TinyCase tiny;
        tiny.mesh()->remove(tiny.tetrahedron);
        QVERIFY(tiny.save(path("bare")));
        const ToolRun run = runTool({"export", path("bare"), "-o", path("bare.cgns")});
        QCOMPARE(run.errors, QByteArray("ovrageo: error: the case has no elements, of which a zone "
                                        "could be made\n"));
        QCOMPARE(run.exitCode, 6);
        QVERIFY(!QFile::exists(path("bare.cgns")));
    }

    /// All but the times that HDF5 puts into the file.
    void writesTheSameEveryTime()
    {
        if (Programs::isMissing("cgnsdiff")) {
            QSKIP("there is no cgnsdiff here (Debian's package cgns-convert)");
        }
        for (const char* file : {"first.cgns", "again.cgns", "other.cgns"}) {
            const QString name = path(file[0] == 'o' ? "plane" : "parts");
            QCOMPARE(
                runTool({"export", name, "-o", path(file)}, QString(file[0] == 'f' ? '1' : '2'))
                    .exitCode,
                0);
        }
        QCOMPARE(CgnsChecker::differences(path("first.cgns"), path("again.cgns")), QByteArray());
        QVERIFY(!CgnsChecker::differences(path("first.cgns"), path("other.cgns")).isEmpty());
    }

    void leavesNothingWhereTheDiskIsFull_data()
    {
        QTest::addColumn<rlim_t>("size");
        for (const rlim_t size : {rlim_t(0), rlim_t(100), rlim_t(4096), rlim_t(20000)}) {
            QTest::addRow("at %d bytes", static_cast<int>(size)) << size;
        }
    }

    void leavesNothingWhereTheDiskIsFull()
    {
        QFETCH(rlim_t, size);
        QVERIFY(QDir(directory_.path()).mkpath("full"));
        const ToolRun run =
            runTool({"export", path("parts"), "-o", path("full/out.cgns")}, QString(), [size] {
                const rlimit limit = {size, size};
                setrlimit(RLIMIT_FSIZE, &limit);
            });
        QCOMPARE(run.exitCode, 5);
        QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
        QCOMPARE(filesIn(path("full")), QStringList());
    }

    void makesNamesThatAreUnique()
    {
        CgnsNames names({"ZoneBC"});
        const QString longName(40, 'x');
        QCOMPARE(names.add("inlet"), QByteArray("inlet"));
        QCOMPARE(names.add("inlet"), QByteArray("inlet_2"));
        QCOMPARE(names.add("ZoneBC"), QByteArray("ZoneBC_2"));
        QCOMPARE(names.add(longName), QByteArray(32, 'x'));
        QCOMPARE(names.add(longName + 'y'), QByteArray(30, 'x') + "_2");
        QCOMPARE(names.add("a/b"), QByteArray("a_b"));
        QCOMPARE(names.add(QString::fromUtf8("Größe")), QByteArray("Gro_e"));
        QCOMPARE(names.add(" . "), QByteArray("_"));
        QCOMPARE(names.add(""), QByteArray("__2"));
    }

    void tellsRotationsByAngles_data()
    {
        QTest::addColumn<Vector>("axis");
        QTest::addColumn<double>("angle");
        QTest::newRow("x") << Vector(1, 0, 0) << 0.7;
        QTest::newRow("y") << Vector(0, 1, 0) << -0.3;
        QTest::newRow("y, more than a quarter") << Vector(0, 1, 0) << 2.0;
        QTest::newRow("y, a quarter") << Vector(0, 1, 0) << M_PI / 2;
        QTest::newRow("z") << Vector(0, 0, 1) << 2 * M_PI / 9;
        QTest::newRow("aslant") << Vector(1, 2, -2) / 3.0 << 1.1;
    }

    void tellsRotationsByAngles()
    {
        QFETCH(Vector, axis);
        QFETCH(double, angle);
        const Ovra::Geo::PeriodicTransform transform = rotation(axis, angle, Vector(1, 2, 3));
        const Ovra::GeoTool::PeriodicAngles angles(transform);
        for (const Vector& point : {Vector(0, 0, 0), Vector(1, 0, 0), Vector(3, -1, 2)}) {
            const Vector moved = turned(point, angles.center, angles.angle, angles.translation);
            QVERIFY((moved - transform.map(point)).length() < 1e-5);
        }
    }

private:
    QString path(const QString& name) const { return directory_.filePath(name); }

    void makeParts() const
    {
        QVERIFY(writeContent(
            path("parts.geo"),
            "SetFactory(\"OpenCASCADE\"); Mesh.MeshSizeMax = 0.6;\n"
            "Box(1) = {0, 0, 0, 1, 1, 1}; Box(2) = {1, 0, 0, 1, 1, 1}; Coherence;\n"
            "Physical Volume(\"air\", 7) = {1}; Physical Volume(\"block\", 8) = {2};\n"
            "Physical Surface(\"a rather long name of a face that is an inlet\", 1) = "
            "Surface In BoundingBox{-1, -1, -1, 0.1, 2, 1.1};\n"
            "Physical Surface(\"side\", 2) = Surface In BoundingBox{-1, -1, -1, 3, 0.1, 1.1};\n"
            "Physical Surface(\"c\xc3\xb4t\xc3\xa9 / ouest\", 3) = "
            "Surface In BoundingBox{1.9, -1, -1, 3, 2, 1.1};\n"));
        QVERIFY(writeContent(path("parts.json"), R"({"groups": {
            "air": {"material_type": "fluid", "material_id": 1},
            "block": {"material_type": "solid", "material_id": 2, "mesh_size": 0.25}}})"));
        prepare("parts", path("parts"));
    }

    /// Imports source.geo with source.json as \p name, and prepares that.
    void prepare(const QString& name, const QString& source, const QStringList& options = {}) const
    {
        const ToolRun run = runTool(QStringList{"import", source + ".geo", "-o", path(name),
                                                "--attributes", source + ".json"} +
                                    options);
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        QCOMPARE(runTool({"prepare", path(name), "-o", path(name + "-prepared"), "--all"}).exitCode,
                 0);
    }

    /// A box whose periodic sides have the same mesh, 2 apart.
    void makeMatchingSides() const
    {
        QVERIFY(writeContent(
            path("matching.geo"),
            "SetFactory(\"OpenCASCADE\"); Mesh.MeshSizeMax = 0.6; Box(1) = {0, 0, 0, 2, 1, 1};\n"
            "Transfinite Surface \"*\"; Transfinite Volume \"*\";\n"
            "Physical Volume(\"box\") = {1};\n"
            "Physical Surface(\"low\") = Surface In BoundingBox{-1, -1, -1, 0.1, 2, 2};\n"
            "Physical Surface(\"high\") = Surface In BoundingBox{1.9, -1, -1, 3, 2, 2};\n"));
        QVERIFY(writeContent(path("matching.json"), R"({"groups": {
            "box": {"material_type": "fluid", "material_id": 1},
            "low": {"periodic_pair_id": 1, "periodic_side_id": 1},
            "high": {"periodic_pair_id": 1, "periodic_side_id": 2}}})"));
        prepare("matching", path("matching"));
    }

    void makePlane() const
    {
        QVERIFY(
            writeContent(path("plane.geo"),
                         "SetFactory(\"OpenCASCADE\"); Rectangle(1) = {0, 0, 0, 1, 1};\n"
                         "Rectangle(2) = {1, 0, 0, 1, 1}; Coherence; Mesh.MeshSizeMax = 0.5;\n"
                         "Physical Surface(\"left\") = {1}; Physical Curve(\"wall\") = {4};\n"));
        QCOMPARE(runTool({"import", path("plane.geo"), "-o", path("plane")}).exitCode, 0);
    }

    static QByteArray kinds()
    {
        return "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n12\n"
               "1 0 0 0\n2 1 0 0\n3 1 1 0\n4 0 1 0\n5 0 0 1\n6 1 0 1\n7 1 1 1\n8 0 1 1\n"
               "9 0.5 0.5 2\n10 2 0 0\n11 2 0 1\n12 1.5 0.5 2\n$EndNodes\n$Elements\n4\n"
               "1 5 2 1 1 1 2 3 4 5 6 7 8\n2 7 2 1 1 5 6 7 8 9\n3 6 2 2 2 2 10 3 6 11 7\n"
               "4 4 2 2 2 6 12 7 9\n$EndElements\n";
    }

    void write(const QString& name, const QStringList& options) const
    {
        const ToolRun run =
            runTool(QStringList{"export", path(name), "-o", path("out.cgns")} + options);
        QVERIFY2(run.exitCode == 0, run.errors.constData());
    }

    CgnsContent written(const QString& name, const QStringList& options = {}) const
    {
        write(name, options);
        return CgnsContent(path("out.cgns"));
    }

    /// \brief The sections of mesh faces, with the number of these.
    static QStringList facesIn(const CgnsContent::Zone& zone)
    {
        QStringList faces;
        for (const CgnsContent::Section& section : zone.sections) {
            if (section.type == CGNS_ENUMV(TRI_3)) {
                faces +=
                    QStringLiteral("%1 %2").arg(section.name).arg(section.last - section.first + 1);
            }
        }
        return faces;
    }

    static Ovra::Geo::ModelEntity* regionOf(ImportedCase& original, const QString& name)
    {
        for (Ovra::Geo::ModelEntity* region : original.entities(3)) {
            if (region->name() == name) {
                return region;
            }
        }
        return nullptr;
    }

    static std::vector<int> idsOf(Ovra::Geo::ModelEntity* region)
    {
        std::vector<int> ids;
        for (Ovra::Geo::MeshEntity* element : ImportedCase::children(region)) {
            if (element->dimension() == 3) {
                ids.push_back(element->id());
            }
        }
        return ids;
    }

    static std::vector<int> sorted(std::vector<int> values)
    {
        std::sort(values.begin(), values.end());
        return values;
    }

    /// Each vertex of one lies where its partner does, on the plane x = 1.
    static void checkLink(const CgnsContent& content, const QString& from, const QString& to,
                          const QString& relation, double x)
    {
        const CgnsContent::Zone& zone = content.zone(from);
        const CgnsContent::Zone& other = content.zone(to);
        const CgnsContent::Link* const link = zone.linkTo(to, relation);
        QVERIFY(link);
        QCOMPARE(link->type, CGNS_ENUMV(Abutting1to1));
        QVERIFY(link->points.size() > 2);
        QCOMPARE(link->points.size(), link->donors.size());
        for (std::size_t i = 0; i < link->points.size(); ++i) {
            const Vector point = zone.points[static_cast<std::size_t>(link->points[i]) - 1];
            QCOMPARE(point.x(), x);
            QVERIFY(point == other.points[static_cast<std::size_t>(link->donors[i]) - 1]);
        }
    }

    /// The connections of a relation, each with its zone.
    static std::vector<std::pair<const CgnsContent::Zone*, const CgnsContent::Link*>>
    linksOf(const CgnsContent& content, const QString& relation)
    {
        std::vector<std::pair<const CgnsContent::Zone*, const CgnsContent::Link*>> found;
        for (const CgnsContent::Zone& zone : content.zones) {
            for (const CgnsContent::Link& link : zone.links) {
                if (link.texts.value("Relation") == relation) {
                    found.emplace_back(&zone, &link);
                }
            }
        }
        return found;
    }

    static QString pairOf(const CgnsContent::Link& link)
    {
        return link.texts.value("FullName") + " to " + link.texts.value("DonorFace");
    }

    /// Not so the side of a region without mesh.
    static bool boundsElements(Ovra::Geo::ModelEntity* face)
    {
        const std::vector<Ovra::Geo::MeshEntity*> children = ImportedCase::children(face);
        return std::any_of(children.begin(), children.end(),
                           [](auto* child) { return child->adjacencyCount(3) > 0; });
    }

    /// What an attribute of faces connects, both ways.
    static QStringList connectedIn(ImportedCase& original, const AttributeType& type)
    {
        const auto nameOf = [](const Ovra::Geo::ModelEntity& face) {
            return face.name().isEmpty() ? QStringLiteral("face_%1").arg(face.id()) : face.name();
        };
        QStringList connected;
        for (Ovra::Geo::ModelEntity* face : original.entities(2)) {
            Ovra::Geo::ModelEntity* const other =
                original.model()->entity(2, face->attributes().value(type, 0).toInt());
            if (other && other != face && boundsElements(face) && boundsElements(other)) {
                connected += {nameOf(*face) + " to " + nameOf(*other),
                              nameOf(*other) + " to " + nameOf(*face)};
            }
        }
        connected.sort();
        return connected;
    }

    static QStringList sorted(QStringList texts)
    {
        texts.sort();
        return texts;
    }

    static Vector pointOf(const CgnsContent::Zone& zone, cgsize_t node)
    {
        return zone.points[static_cast<std::size_t>(node) - 1];
    }

    static std::vector<cgsize_t> distinct(std::vector<cgsize_t> numbers)
    {
        std::sort(numbers.begin(), numbers.end());
        numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
        return numbers;
    }

    static Vector turned(const Vector& point, const std::array<float, 3>& center,
                         const std::array<float, 3>& angle, const std::array<float, 3>& translation)
    {
        const auto at = [](const std::array<float, 3>& list) {
            return Vector(static_cast<double>(list[0]), static_cast<double>(list[1]),
                          static_cast<double>(list[2]));
        };
        const Vector a = at(angle);
        Vector p = point - at(center);
        p = Vector(p.x(), std::cos(a.x()) * p.y() - std::sin(a.x()) * p.z(),
                   std::sin(a.x()) * p.y() + std::cos(a.x()) * p.z());
        p = Vector(std::cos(a.y()) * p.x() + std::sin(a.y()) * p.z(), p.y(),
                   -std::sin(a.y()) * p.x() + std::cos(a.y()) * p.z());
        p = Vector(std::cos(a.z()) * p.x() - std::sin(a.z()) * p.y(),
                   std::sin(a.z()) * p.x() + std::cos(a.z()) * p.y(), p.z());
        return p + at(center) + at(translation);
    }

    /// By the formula of Rodrigues, whose columns make the frame's.
    static Ovra::Geo::PeriodicTransform rotation(const Vector& axis, double angle,
                                                 const Vector& origin)
    {
        Ovra::Geo::PeriodicTransform transform;
        transform.origin = origin;
        transform.xAxis = Vector(1, 0, 0);
        transform.yAxis = Vector(0, 1, 0);
        transform.zAxis = Vector(0, 0, 1);
        const auto column = [&](const Vector& unit) {
            return std::cos(angle) * unit + std::sin(angle) * (axis ^ unit) +
                   ((1 - std::cos(angle)) * (axis * unit)) * axis;
        };
        const std::array<Vector, 3> columns = {column(Vector(1, 0, 0)), column(Vector(0, 1, 0)),
                                               column(Vector(0, 0, 1))};
        for (int i = 0; i < 3; ++i) {
            const Vector& c = columns.at(static_cast<std::size_t>(i));
            transform.matrix(0, i) = c.x();
            transform.matrix(1, i) = c.y();
            transform.matrix(2, i) = c.z();
        }
        return transform;
    }

    /// The rotation takes the corners of the box of one side to those of the other.
    static void checkPeriodic(const CgnsContent& content, const CgnsContent::Zone& zone,
                              const CgnsContent::Link& link)
    {
        QVERIFY(link.isPeriodic);
        QVERIFY(std::abs(std::abs(static_cast<double>(link.angle[2])) - M_PI * 40 / 180) < 1e-6);
        const CgnsContent::Zone& other = content.zone(link.donor);
        const QString face = link.texts.value("FullName");
        const QString donor = link.texts.value("DonorFace");
        Vector low(1e9, 1e9, 1e9);
        Vector high(-1e9, -1e9, -1e9);
        for (const Vector& p : pointsOn(zone, face)) {
            const Vector moved = turned(p, link.center, link.angle, link.translation);
            low = Vector(std::min(low.x(), moved.x()), std::min(low.y(), moved.y()),
                         std::min(low.z(), moved.z()));
            high = Vector(std::max(high.x(), moved.x()), std::max(high.y(), moved.y()),
                          std::max(high.z(), moved.z()));
        }
        Vector lowest(1e9, 1e9, 1e9);
        Vector highest(-1e9, -1e9, -1e9);
        for (const Vector& p : pointsOn(other, donor)) {
            lowest = Vector(std::min(lowest.x(), p.x()), std::min(lowest.y(), p.y()),
                            std::min(lowest.z(), p.z()));
            highest = Vector(std::max(highest.x(), p.x()), std::max(highest.y(), p.y()),
                             std::max(highest.z(), p.z()));
        }
        QVERIFY2((low - lowest).length() < 1e-6 && (high - highest).length() < 1e-6,
                 qPrintable(face));
    }

    static std::vector<const CgnsContent::Section*> sectionsOn(const CgnsContent::Zone& zone,
                                                               const QString& face)
    {
        std::vector<const CgnsContent::Section*> sections;
        for (const CgnsContent::Section& section : zone.sections) {
            const bool isFace =
                section.type == CGNS_ENUMV(TRI_3) || section.type == CGNS_ENUMV(QUAD_4);
            if (isFace && section.texts.value("FullName") == face) {
                sections.push_back(&section);
            }
        }
        return sections;
    }

    /// The numbers of the mesh faces on a face, in ascending order.
    static std::vector<cgsize_t> elementsOn(const CgnsContent::Zone& zone, const QString& face)
    {
        std::vector<cgsize_t> elements;
        for (const CgnsContent::Section* section : sectionsOn(zone, face)) {
            for (int element = section->first; element <= section->last; ++element) {
                elements.push_back(element);
            }
        }
        return distinct(elements);
    }

    static std::vector<cgsize_t> nodesOn(const CgnsContent::Zone& zone, const QString& face)
    {
        std::vector<cgsize_t> nodes;
        for (const CgnsContent::Section* section : sectionsOn(zone, face)) {
            nodes.insert(nodes.end(), section->nodes.begin(), section->nodes.end());
        }
        return distinct(nodes);
    }

    static std::vector<Vector> pointsOn(const CgnsContent::Zone& zone, const QString& face)
    {
        std::vector<Vector> points;
        for (const cgsize_t node : nodesOn(zone, face)) {
            points.push_back(pointOf(zone, node));
        }
        return points;
    }

    QTemporaryDir directory_;
};

QTEST_GUILESS_MAIN(ExportCgnsTest)
#include "tst_ExportCgns.moc"
