#include "CaseLines.h"
#include "ExportFormat.h"
#include "GmshFixture.h"
#include "GmshFormat.h"
#include "Matrix.h"
#include "ReturningFormats.h"
#include "Su2File.h"
#include "TinyCase.h"
#include "ToolRun.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <sys/resource.h>

using Ovra::GeoTool::ExportFormat;
using Ovra::GeoTool::GmshFormat;

/// The formats that Gmsh writes: what comes back from each.
class ExportGmshTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(directory_.isValid());
        QVERIFY(writeContent(path("parts.geo"), script()));
        QVERIFY(writeContent(path("parts.json"), attributes()));
        const ToolRun run = runTool(
            {"import", path("parts.geo"), "-o", path("parts"), "--attributes", path("parts.json")});
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        QVERIFY(writeContent(path("kinds.msh"), kinds()));
        QCOMPARE(runTool({"import", path("kinds.msh"), "-o", path("kinds")}).exitCode, 0);
        QVERIFY(writeContent(path("wedge.msh"), wedge()));
        QCOMPARE(runTool({"import", path("wedge.msh"), "-o", path("wedge")}).exitCode, 0);
        QVERIFY(
            writeContent(path("plane.geo"),
                         "SetFactory(\"OpenCASCADE\"); Rectangle(1) = {0, 0, 0, 1, 1};\n"
                         "Rectangle(2) = {1, 0, 0, 1, 1}; Coherence; Mesh.MeshSizeMax = 0.5;\n"
                         "Physical Surface(\"left\") = {1}; Physical Curve(\"wall\") = {4};\n"));
        QCOMPARE(runTool({"import", path("plane.geo"), "-o", path("plane")}).exitCode, 0);
    }

    void bringsTheCaseBack_data() { ReturningFormats::addAll(); }

    /// Names, materials and other attributes, classification, counts and places.
    void bringsTheCaseBack()
    {
        QFETCH(QString, suffix);
        QFETCH(CaseLines::Parts, parts);
        const ToolRun run = roundTrip("parts", suffix);
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        ImportedCase before(path("parts"));
        ImportedCase after(path("back"));
        QCOMPARE(after.faults(), QString());
        QCOMPARE(CaseLines::meshOf(after), CaseLines::meshOf(before));
        QCOMPARE(CaseLines::of(after, parts), CaseLines::of(before, parts));
    }

    void bringsAllKindsBack_data() { ReturningFormats::addAll(); }

    /// Or says which it cannot write.
    void bringsAllKindsBack()
    {
        QFETCH(QString, suffix);
        const std::vector<int> missing = GmshFormat::ofSuffix(suffix).missingKinds;
        const ToolRun run = roundTrip("kinds", suffix);
        if (!missing.empty()) {
            QVERIFY2(
                run.errors.endsWith(" files, and the case has 1 pyramid; take another format\n"),
                run.errors.constData());
            QVERIFY(run.errors.startsWith("ovrageo: error: " + path("out.").toUtf8() +
                                          suffix.toUtf8() + ": Gmsh writes no pyramids to "));
            QCOMPARE(run.exitCode, 6);
            return;
        }
        QCOMPARE(run.errors, QByteArray());
        ImportedCase before(path("kinds"));
        ImportedCase after(path("back"));
        QCOMPARE(after.faults(), QString());
        QCOMPARE(CaseLines::meshOf(before).last(), QStringLiteral("volume 2"));
        QCOMPARE(CaseLines::meshOf(after), CaseLines::meshOf(before));
    }

    void bringsWedgesBack_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::newRow("unv") << "unv";
        QTest::newRow("inp") << "inp";
    }

    void bringsWedgesBack()
    {
        QFETCH(QString, suffix);
        QCOMPARE(roundTrip("wedge", suffix).errors, QByteArray());
        ImportedCase before(path("wedge"));
        ImportedCase after(path("back"));
        QCOMPARE(CaseLines::meshOf(after), CaseLines::meshOf(before));
    }

    void hasThisTableInTheDocumentation_data() { addFormats(); }

    void hasThisTableInTheDocumentation()
    {
        QFETCH(QString, suffix);
        const QByteArray page = contentOf(Places::documentation() + "/Export.md");
        const QByteArray row = rowOf(GmshFormat::ofSuffix(suffix));
        QVERIFY2(page.contains(row), row.constData());
    }

    void tellsWhatItLeavesOut_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QByteArrayList>("losses");
        const QByteArray empty = "1 region without elements is left out";
        const QByteArray oneMesh =
            " does not tell regions apart: the elements of 3 regions become one mesh";
        const QByteArray attributes =
            "materials and other attributes of 5 model entities are left out";
        const QByteArray names = " has no names: 9 entities lose their names";
        QTest::newRow("msh") << "msh" << QByteArrayList();
        for (const char* suffix : {"msh2", "unv", "inp", "bdf", "nas", "mesh"}) {
            QTest::newRow(suffix) << suffix << QByteArrayList{empty};
        }
        QTest::newRow("su2") << "su2" << QByteArrayList{"SU2" + oneMesh, attributes};
        QTest::newRow("vtk") << "vtk"
                             << QByteArrayList{"legacy VTK" + oneMesh, "legacy VTK" + names,
                                               attributes};
        QTest::newRow("stl") << "stl"
                             << QByteArrayList{"STL holds surfaces alone: the " + elementCount() +
                                                   " elements of 3 regions are left out",
                                               "STL" + names, attributes};
    }

    void tellsWhatItLeavesOut()
    {
        QFETCH(QString, suffix);
        QFETCH(QByteArrayList, losses);
        const QString file = path("out.") + suffix;
        const ToolRun run = runTool({"export", path("parts"), "-o", file});
        QByteArray expected;
        for (const QByteArray& loss : losses) {
            expected += "ovrageo: warning: " + file.toUtf8() + ": " + loss + '\n';
        }
        QCOMPARE(run.errors, expected);
        QCOMPARE(run.exitCode, 0);
        const QByteArray content = contentOf(file); // the same in every run
        QVERIFY(!content.isEmpty());
        QCOMPARE(runTool({"export", path("parts"), "-o", file, "-q"}, "2").exitCode, 0);
        QCOMPARE(contentOf(file), content);
    }

    void writesSurfacesToStl()
    {
        QVERIFY(roundTrip("parts", "stl", {"--dimension", "2"}).exitCode == 0);
        ImportedCase before(path("parts"));
        ImportedCase after(path("back"));
        QCOMPARE(after.mesh()->count(2), before.mesh()->count(2));
    }

    void writesAllElementsToLegacyVtk()
    {
        QCOMPARE(roundTrip("parts", "vtk").exitCode, 0);
        ImportedCase before(path("parts"));
        ImportedCase after(path("back"));
        QCOMPARE(CaseLines::meshOf(after), CaseLines::meshOf(before));
    }

    /// Which neither ovrageo nor Gmsh itself reads.
    void writesElementsAndBoundariesByNameToSu2()
    {
        QCOMPARE(runTool({"export", path("parts"), "-o", path("out.su2"), "-q"}).exitCode, 0);
        ImportedCase before(path("parts"));
        const Su2File file(contentOf(path("out.su2")));
        QCOMPARE(file.elements, before.mesh()->count(3));
        QVERIFY2(qAbs(file.volume - 2.0) < 1e-12, qPrintable(QString::number(file.volume)));
        for (const auto& [name, label] :
             {std::pair("in let", "in_let"), std::pair("side", "side")}) {
            QCOMPARE(file.markers.value(label), elementsOn(before, name));
        }
        int marked = 0;
        for (const int count : file.markers) {
            marked += count;
        }
        QCOMPARE(marked, before.mesh()->count(2));
    }

    /// Vertices, elements and classification, in their order.
    void bringsAMeshBackByteByByte()
    {
        QCOMPARE(roundTrip("plane", "msh").errors, QByteArray());
        QCOMPARE(contentOf(path("back.geo_mesh")), contentOf(path("plane.geo_mesh")));
    }

    void groupsRegionsByMaterial_data()
    {
        QTest::addColumn<QString>("suffix");
        for (const GmshFormat& format : GmshFormat::all()) {
            if (format.hasMaterialGroups) {
                QTest::newRow(qPrintable(format.suffix)) << format.suffix;
            }
        }
    }

    void groupsRegionsByMaterial()
    {
        QFETCH(QString, suffix);
        QCOMPARE(runTool({"export", path("parts"), "-o", path("out." + suffix)}).exitCode, 0);
        QCOMPARE(runTool({"import", path("out." + suffix), "-o", path("back"), "--attributes",
                          path("group.json")})
                     .exitCode,
                 3);
        QVERIFY(writeContent(path("group.json"),
                             R"({"groups": {"solid_2": {"material_type": "solid"}}})"));
        const ToolRun run = runTool({"import", path("out." + suffix), "-o", path("back"),
                                     "--attributes", path("group.json"), "-q"});
        QCOMPARE(run.errors, QByteArray());
        QVERIFY(QFile::remove(path("group.json")));
    }

    void writesNamesThatTheFormatHasPlaceFor_data() { ReturningFormats::addAll(); }

    /// Quotation marks, controls, blanks, letters in two cases, and length.
    void writesNamesThatTheFormatHasPlaceFor()
    {
        QFETCH(QString, suffix);
        const QString longName = QString(300, QChar(0xe4));
        const QStringList names{"a b",          "a_b",      "A_B",    "say \"so\"",
                                "two\nlines",   "a,b=c*.",  " a  b ", longName,
                                longName + 'x', "Surface3", "\"",     "Größe"};
        TinyCase tiny;
        for (const QString& name : names) {
            addTetrahedron(tiny, name);
        }
        QVERIFY(tiny.save(path("names")));
        const ToolRun run = roundTrip("names", suffix, {"-q"});
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        ImportedCase after(path("back"));
        QStringList found;
        for (Ovra::Geo::ModelEntity* region : after.entities(3)) {
            found += region->name();
        }
        QCOMPARE(found, QStringList("box") + names);
    }

    void keepsValuesOfAllKinds()
    {
        using namespace Ovra::Geo;
        TinyCase tiny;
        Matrix matrix;
        matrix(0, 1) = 0.1;
        matrix(2, 0) = -3;
        AttributeMap& attributes = tiny.region->attributes();
        attributes.insert(AttributeType::IsSuppressed, true);
        attributes.insert(AttributeType::VisualScaleFactor, 0.1);
        attributes.insert(AttributeType::fromString("mesh_offset"),
                          QVariantList{1, 2.5, "x", false});
        attributes.insert(AttributeType::PeriodicOrigin, Vector(1, 2, 1.0 / 3));
        attributes.insert(AttributeType::PeriodicMatrix, matrix);
        attributes.insert(AttributeType::HotFaces, QVariantList{3});
        tiny.face->attributes().insert(AttributeType::FluidFace, 77); // names none
        QVERIFY(tiny.save(path("values")));
        QCOMPARE(roundTrip("values", "msh").errors, QByteArray());
        ImportedCase before(path("values"));
        ImportedCase after(path("back"));
        const AttributeMap& found = after.entities(3).front()->attributes();
        QCOMPARE(found.types(), attributes.types());
        for (const AttributeType& type : found.types()) {
            const QVariant value = before.entities(3).front()->attributes().value(type, {});
            if (value.canConvert<Matrix>()) {
                for (int i = 0; i < 9; ++i) {
                    QCOMPARE(found.value(type, {}).value<Matrix>()(i / 3, i % 3),
                             matrix(i / 3, i % 3));
                }
            } else {
                QCOMPARE(found.value(type, {}), value);
            }
        }
        QCOMPARE(after.entities(2).front()->attributes().count(), 0);
    }

    void tellsOfAttributesThatNoFileHolds()
    {
        using namespace Ovra::Geo;
        TinyCase tiny;
        tiny.region->attributes().insert(AttributeType::fromString("mesh_offset"), QByteArray("x"));
        tiny.vertices[0]->attributes().insert(AttributeType::RotorVertex, 2);
        tiny.tetrahedron->attributes().insert(AttributeType::InBL, true);
        QVERIFY(tiny.save(path("held")));
        const QByteArray file = path("out.msh").toUtf8();
        QCOMPARE(runTool({"export", path("held"), "-o", path("out.msh")}).errors,
                 "ovrageo: warning: " + file + ": attributes of 1 mesh vertex are left out\n" +
                     "ovrageo: warning: " + file + ": attributes of 1 mesh region are left out\n" +
                     "ovrageo: warning: " + file +
                     ".json: mesh_offset of model region 2 is of a kind that it cannot hold\n");
    }

    void writesElementsWithoutARegion()
    {
        TinyCase tiny;
        tiny.addElement(3, {1, 2, 3, 4}, nullptr);
        tiny.addElement(2, {1, 2, 4}, nullptr);
        QVERIFY(tiny.save(path("stray")));
        const ToolRun run = runTool({"export", path("stray"), "-o", path("out.msh")});
        const QByteArray begin = "ovrageo: warning: " + path("out.msh").toUtf8() + ": ";
        QCOMPARE(run.errors,
                 begin +
                     "1 mesh edge or face that stands on no model entity of its dimension is left "
                     "out\n" +
                     begin + "1 element that stands on no region is written as one of its own\n");
        const GmshFixture gmsh;
        gmsh::open(path("out.msh").toStdString());
        QCOMPARE(GmshFixture::elementCount(3), 2);
        QCOMPARE(GmshFixture::elementCount(3, 3), 1);
    }

    void writesPlanarCases_data() { ReturningFormats::addAll(); }

    void writesPlanarCases()
    {
        QFETCH(QString, suffix);
        const ToolRun run = roundTrip("plane", suffix);
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        ImportedCase before(path("plane"));
        ImportedCase after(path("back"));
        QFETCH(CaseLines::Parts, parts);
        parts.lowest = 1;
        QCOMPARE(CaseLines::meshOf(after), CaseLines::meshOf(before));
        QCOMPARE(CaseLines::of(after, parts), CaseLines::of(before, parts));
    }

    void writesTextToStandardOutput_data()
    {
        QTest::addColumn<QString>("suffix");
        for (const ExportFormat& format : ExportFormat::all()) {
            if (format.content == ExportFormat::Content::Text) {
                QTest::newRow(qPrintable(format.suffix)) << format.suffix;
            }
        }
    }

    /// What stands in the file, and nothing else; there is no attributes file.
    void writesTextToStandardOutput()
    {
        QFETCH(QString, suffix);
        const QString file = path("out.") + suffix;
        const QString empty = path("empty");
        QVERIFY(QDir().mkpath(empty));
        QCOMPARE(runTool({"export", path("parts"), "-o", file, "-q"}).exitCode, 0);
        const ToolRun run = runTool({"export", path("parts"), "-o", "-", "--format", suffix, "-q"},
                                    QString(), [&empty] { QDir::setCurrent(empty); });
        QCOMPARE(run.errors, QByteArray());
        QVERIFY(!run.output.isEmpty());
        QCOMPARE(run.output, contentOf(file));
        QVERIFY(QDir(empty).isEmpty());
    }

    void leavesNothingWhereTheDiskIsFull_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::newRow("binary") << "msh";
        QTest::newRow("text") << "unv";
    }

    void leavesNothingWhereTheDiskIsFull()
    {
        QFETCH(QString, suffix);
        QVERIFY(QDir(path("")).mkpath("full"));
        const QString file = path("full/out.") + suffix;
        const ToolRun run = runTool({"export", path("parts"), "-o", file, "-q"}, QString(), [] {
            const rlimit limit = {4096, 4096};
            setrlimit(RLIMIT_FSIZE, &limit);
        });
        QCOMPARE(run.exitCode, 5);
        QVERIFY(isOneErrorLine(run.errors));
        QVERIFY2(run.errors.contains(": File too large"), run.errors.constData());
        QCOMPARE(filesIn(path("full")), QStringList());
    }

    void replacesNoInputByItsAttributesFile()
    {
        QVERIFY(TinyCase().save(path("tiny")));
        QFile::remove(path("out.msh.json"));
        QVERIFY(QFile::link(path("tiny.geo_model"), path("out.msh.json")));
        const QByteArray before = contentOf(path("tiny.geo_model"));
        QCOMPARE(runTool({"export", path("tiny"), "-o", path("out.msh")}).exitCode, 2);
        QCOMPARE(contentOf(path("tiny.geo_model")), before);
        QVERIFY(QFile::remove(path("out.msh.json")));
    }

    void refusesWhatGmshHasNoNumbersFor()
    {
        TinyCase tiny;
        auto* face = new Ovra::Geo::ModelFace;
        face->setId(1000000001);
        tiny.model()->add(face);
        QVERIFY(tiny.save(path("high")));
        const ToolRun run = runTool({"export", path("high"), "-o", path("high.msh")});
        QCOMPARE(run.errors,
                 QByteArray("ovrageo: error: model face 1000000001: Gmsh takes numbers from 1 to "
                            "1000000000; renumber the case\n"));
        QCOMPARE(run.exitCode, 6);
        QVERIFY(!QFile::exists(path("high.msh")));
    }

    void refusesWhatTheFormatHasNoColumnsFor_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<int>("limit");
        QTest::newRow("Nastran") << "bdf" << 99999999;
        QTest::newRow("Nastran by its other name") << "nas" << 99999999;
        QTest::newRow("Universal") << "unv" << 999999999;
    }

    void refusesWhatTheFormatHasNoColumnsFor()
    {
        QFETCH(QString, suffix);
        QFETCH(int, limit);
        const QString title = suffix == "unv" ? "Universal" : "Nastran";
        const QString out = path("columns." + suffix);
        QVERIFY(saveWithIds(limit + 1, 1));
        QCOMPARE(exportedTo(out), QStringLiteral("ovrageo: error: mesh vertex %1: %2 takes numbers "
                                                 "from 1 to %3; renumber the case\n")
                                      .arg(limit + 1)
                                      .arg(title)
                                      .arg(limit));
        QVERIFY(saveWithIds(4, limit)); // the mesh face comes behind
        QCOMPARE(exportedTo(out),
                 QStringLiteral("ovrageo: error: mesh region %1: %2 takes numbers up to %3, which "
                                "leaves too few for what is numbered behind it; renumber the "
                                "case\n")
                     .arg(limit)
                     .arg(title)
                     .arg(limit));
        QVERIFY(!QFile::exists(out));
    }

    void comesBackFromTheLastOfTheColumns_data() { refusesWhatTheFormatHasNoColumnsFor_data(); }

    void comesBackFromTheLastOfTheColumns()
    {
        QFETCH(QString, suffix);
        QFETCH(int, limit);
        const QString out = path("last." + suffix);
        QVERIFY(saveWithIds(limit, limit - 1));
        QCOMPARE(exportedTo(out), QString());
        QCOMPARE(runTool({"import", out, "-o", path("last")}).errors, QByteArray());
        const ToolRun text = runTool({"info", path("last"), "--json"});
        QVERIFY(text.output.contains("tetrahedra"));
    }

    void refusesWhatIsNoElement()
    {
        TinyCase tiny;
        tiny.addElement(3, {1, 2}, tiny.region);
        QVERIFY(tiny.save(path("two")));
        const ToolRun run = runTool({"export", path("two"), "-o", path("two.msh")});
        QCOMPARE(run.errors,
                 QByteArray("ovrageo: error: mesh region 2 is no element: it has 2 vertices\n"));
        QCOMPARE(run.exitCode, 6);
    }

private:
    /// A tetrahedron and a mesh face, with an id of one of the vertices and of the tetrahedron.
    bool saveWithIds(int vertex, int element)
    {
        TinyCase tiny;
        tiny.vertices[3]->setId(vertex);
        tiny.tetrahedron->setId(element);
        return tiny.save(path("numbered"));
    }

    /// \brief What the export of that said.
    QString exportedTo(const QString& out)
    {
        return QString::fromUtf8(runTool({"export", path("numbered"), "-o", out}).errors);
    }

    QString path(const QString& name) const { return directory_.filePath(name); }

    /// Two joined boxes and a device without mesh on top; faces of several names and of none.
    static QByteArray script()
    {
        return "SetFactory(\"OpenCASCADE\"); Mesh.MeshSizeMax = 0.6;\n"
               "Box(1) = {0, 0, 0, 1, 1, 1}; Box(2) = {1, 0, 0, 1, 1, 1};\n"
               "Box(3) = {0, 0, 1, 1, 1, 0.5}; Coherence;\n"
               "Physical Volume(\"Luft\", 7) = {1}; Physical Volume(\"block\", 8) = {2};\n"
               "Physical Volume(\"led\", 9) = {3};\n"
               "Physical Surface(\"in let\", 1) = Surface In BoundingBox{-1, -1, -1, 0.1, 2, "
               "1.1};\n"
               "Physical Surface(\"side\", 2) = Surface In BoundingBox{-1, -1, -1, 3, 0.1, 1.1};\n"
               "Physical Surface(\"top\", 3) = Surface In BoundingBox{-1, -1, 1.4, 3, 3, 3};\n"
               "Physical Curve(\"seam\", 4) = Curve In BoundingBox{0.9, -1, 0.9, 1.1, 2, 1.1};\n"
               "Physical Point(\"corner\", 5) = Point In BoundingBox{-1, -1, -1, 0.1, 0.1, 0.1};\n";
    }

    static QByteArray attributes()
    {
        return R"({"model": {"coordinate_system": 3},
                   "groups": {
                       "Luft": {"material_type": "fluid", "material_id": 1, "fluid_region": 2},
                       "block": {"material_type": "solid", "material_id": 2, "mesh_size": 0.25},
                       "led": {"material_type": "led_device", "hot_faces": ["top"], "mesh": false},
                       "in let": {"periodic_pair_id": 1, "periodic_side_id": 2}},
                   "entities": {"1:1": {"is_resist": true}}})";
    }

    /// A hexahedron with a pyramid on top, a wedge beside, and a tetrahedron on the pyramid; volume 2.
    static QByteArray kinds()
    {
        return "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n12\n"
               "1 0 0 0\n2 1 0 0\n3 1 1 0\n4 0 1 0\n5 0 0 1\n6 1 0 1\n7 1 1 1\n8 0 1 1\n"
               "9 0.5 0.5 2\n10 2 0 0\n11 2 0 1\n12 1.5 0.5 2\n$EndNodes\n$Elements\n4\n"
               "1 5 2 1 1 1 2 3 4 5 6 7 8\n2 7 2 1 1 5 6 7 8 9\n3 6 2 2 2 2 10 3 6 11 7\n"
               "4 4 2 2 2 6 12 7 9\n$EndElements\n";
    }

    static QByteArray wedge()
    {
        return "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n6\n1 0 0 0\n2 1 0 0\n3 0 1 0\n"
               "4 0 0 1\n5 1 0 1\n6 0 1 1\n$EndNodes\n$Elements\n1\n1 6 2 1 1 1 2 3 4 5 6\n"
               "$EndElements\n";
    }

    static void addFormats()
    {
        QTest::addColumn<QString>("suffix");
        for (const GmshFormat& format : GmshFormat::all()) {
            QTest::newRow(qPrintable(format.suffix)) << format.suffix;
        }
    }

    static QByteArray rowOf(const GmshFormat& format)
    {
        const QStringList dimensions{"vertices", "edges", "faces", "regions"};
        const QStringList numbers{"no", "from 1", "yes"};
        const QStringList names{"no", "of boundaries", "yes"};
        const QString held = format.lowestDimension == format.highestDimension
                                 ? dimensions.at(format.lowestDimension)
                                 : dimensions.at(format.lowestDimension) + " to " +
                                       dimensions.at(format.highestDimension);
        QString ofNames = names.at(static_cast<int>(format.names));
        if (format.names == GmshFormat::Names::Lost && format.comesBack()) {
            ofNames = "beside";
        }
        const auto yes = [](bool value) { return value ? QString("yes") : QString("no"); };
        QStringList missing;
        for (const int vertices : format.missingKinds) {
            missing += vertices == 5 ? "pyramids" : "wedges";
        }
        return QStringList{"| `." + format.suffix + '`',
                           held,
                           missing.isEmpty() ? "all" : "no " + missing.join(", "),
                           yes(format.hasRegions),
                           yes(format.hasEmptyRegions),
                           numbers.at(static_cast<int>(format.numbers)),
                           ofNames,
                           format.comesBack() ? "beside" : "no",
                           yes(format.hasMaterialGroups) + " |\n"}
            .join(" | ")
            .toUtf8();
    }

    static int elementsOn(ImportedCase& imported, const QString& faces)
    {
        int count = 0;
        for (Ovra::Geo::ModelEntity* face : imported.entities(2)) {
            for (Ovra::Geo::MeshEntity* child : ImportedCase::children(face)) {
                count += face->name() == faces && child->dimension() == 2 ? 1 : 0;
            }
        }
        return count;
    }

    QByteArray elementCount() const
    {
        return QByteArray::number(ImportedCase(path("parts")).mesh()->count(3));
    }

    ToolRun roundTrip(const QString& name, const QString& suffix,
                      const QStringList& importOptions = {}) const
    {
        const QString file = path("out.") + suffix;
        QFile::remove(file + ".json");
        const ToolRun run = runTool({"export", path(name), "-o", file, "-q"});
        if (run.exitCode != 0) {
            return run;
        }
        QStringList arguments{"import", file, "-o", path("back")};
        if (QFile::exists(file + ".json")) {
            arguments += QStringList{"--attributes", file + ".json"};
        }
        return runTool(arguments + importOptions);
    }

    /// A region of one tetrahedron that touches no other.
    static void addTetrahedron(TinyCase& tiny, const QString& name)
    {
        using namespace Ovra::Geo;
        auto* region = new ModelRegion;
        region->setName(name);
        tiny.model()->add(region);
        const int first = tiny.mesh()->count(0) + 1;
        const double x = 2.0 * first;
        for (const Vector& point :
             {Vector(x, 0, 0), Vector(x + 1, 0, 0), Vector(x, 1, 0), Vector(x, 0, 1)}) {
            tiny.addVertex(point);
        }
        tiny.addElement(3, {first, first + 1, first + 2, first + 3}, region);
    }

    QTemporaryDir directory_;
};

QTEST_GUILESS_MAIN(ExportGmshTest)
#include "tst_ExportGmsh.moc"
