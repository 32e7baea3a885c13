#include "AttributeType.h"
#include "GmshFixture.h"
#include "ImportChecks.h"
#include "Matrix.h"
#include "RefusalTest.h"

using Ovra::Geo::AttributeType;

/// What import says of wrong inputs, and that it leaves what stands at the output alone.
class TestImportErrors : public RefusalTest
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const GmshFixture gmsh;
        GmshFixture::makeTwoBoxes(1.0);
        GmshFixture::write(path("two.step"));
        GmshFixture::write(path("two.brep"));
        IgesFile iges;
        iges.addBox(0, 0, 0, 1, 1, 1);
        QVERIFY(writeContent(path("two.igs"), iges.content()));
        gmsh::model::addPhysicalGroup(2, {2}, 1);
        gmsh::model::setPhysicalName(2, 1, "between");
        gmsh::model::addPhysicalGroup(2, {1, 3}, 2);
        gmsh::model::setPhysicalName(2, 2, "left");
        gmsh::model::mesh::generate(3);
        for (const char* suffix : {"unv", "bdf", "vtk", "mesh", "inp", "stl"}) {
            GmshFixture::write(path("two.") + QLatin1String(suffix));
        }
        GmshFixture::write(path("two2.msh"), true, 2.2);
        GmshFixture::write(path("two.msh"));
        GmshFixture::write(path("twob.msh"), true, 4.1, true);
    }

    void init() { putWhatStays(); }

    void refusesTruncatedFiles_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("percent");
        const QStringList files{"two.step", "two.brep", "two.igs",  "two.unv", "two.bdf", "two.vtk",
                                "two.mesh", "two.stl",  "two2.msh", "two.msh", "twob.msh"};
        for (const QString& file : files) {
            for (const int percent : {0, 1, 30, 60, 90, 95, 97}) {
                QTest::addRow("%s %d %%", qPrintable(file), percent) << file << percent;
            }
        }
    }

    void refusesTruncatedFiles()
    {
        QFETCH(QString, file);
        QFETCH(int, percent);
        const QByteArray whole = contentOf(path(file));
        const QString cut = path(QStringLiteral("cut.") + QFileInfo(file).suffix());
        QVERIFY(writeContent(cut, whole.left(whole.size() * percent / 100)));
        checkRefused(import(cut), 4);
    }

    void refusesAbaqusCutInsideAnElement()
    {
        const QByteArray whole = contentOf(path("two.inp"));
        const qsizetype elements = whole.indexOf("type=C3D4");
        const qsizetype line = whole.indexOf('\n', whole.indexOf('\n', elements) + 1);
        QVERIFY(writeContent(path("cut.inp"), whole.left(line - 5) + '\n'));
        checkRefused(import(path("cut.inp")), 4);
    }

    void refusesGarbage_data()
    {
        QTest::addColumn<QString>("suffix");
        for (const char* suffix :
             {"geo", "msh", "step", "stp", "iges", "igs", "brep", "unv", "bdf", "nas", "stl", "vtk",
              "mesh", "inp", "txt", "pos", "ply2", "su2"}) {
            QTest::newRow(suffix) << QString::fromLatin1(suffix);
        }
    }

    void refusesGarbage()
    {
        QFETCH(QString, suffix);
        const QString file = path("garbage.") + suffix;
        QVERIFY(writeContent(file, "This is no mesh at all.\n1 2 3 4 5\n"));
        checkRefused(import(file), 4);
        QByteArray noise;
        for (int i = 0; i < 5000; ++i) {
            noise += static_cast<char>((i * 7919 + i / 13) % 251);
        }
        QVERIFY(writeContent(file, noise));
        checkRefused(import(file), 4);
    }

    void listsTheFormatsForAnUnknownSuffix()
    {
        for (const char* name : {"box.txt", "box", "box.geo.bak"}) {
            QVERIFY(writeContent(path(name), "SetFactory(\"OpenCASCADE\");\n"
                                             "Box(1) = {0, 0, 0, 1, 1, 1};\n"));
            checkRefused(import(path(name)), 4, "can be imported: .bdf, .brep, ");
        }
    }

    void refusesACase()
    {
        for (const char* name : {"script.geo_model", "script.geo_mesh"}) {
            QVERIFY(writeContent(path(name), "SetFactory(\"OpenCASCADE\");\n"
                                             "Box(1) = {0, 0, 0, 1, 1, 1};\n"));
            checkRefused(import(path(name)), 2, "this is a case already, not an input to import");
        }
    }

    void refusesMissingFile() { checkRefused(import(path("nowhere.msh")), 3, "no such file"); }

    void refusesDirectory() { checkRefused(import(folder()), 3, "is a directory"); }

    void namesFormatThatGmshWasBuiltWithout()
    {
        std::string options;
        {
            const GmshFixture gmsh;
            gmsh::option::getString("General.BuildOptions", options);
        }
        for (const char* suffix : {"cgns", "med"}) {
            if (options.find(suffix[0] == 'c' ? "Cgns" : "Med") != std::string::npos) {
                continue;
            }
            QVERIFY(writeContent(path("x.") + QLatin1String(suffix), "x"));
            checkRefused(import(path("x.") + QLatin1String(suffix)), 6, "built without support");
        }
    }

    void livesOnWhenAScriptEndsGmsh()
    {
        QVERIFY(writeContent(path("exit.geo"), "SetFactory(\"OpenCASCADE\");\n"
                                               "Box(1) = {0, 0, 0, 1, 1, 1};\nExit;\n"));
        // Gmsh leaves its memory behind, which a sanitizer build would tell by the exit code.
        const QByteArray options = qgetenv("ASAN_OPTIONS");
        qputenv("ASAN_OPTIONS", options + ":detect_leaks=0");
        const ToolRun run = import(path("exit.geo"));
        qputenv("ASAN_OPTIONS", options);
        checkRefused(run, 4,
                     "exit.geo: it ended Gmsh itself, as Exit does in a script; leave that out");
    }

    void livesOnWhenTheImportBreaksDown()
    {
        QVERIFY(writeContent(path("crash.geo"), "SystemCall \"kill -KILL $PPID\";\n"));
        checkRefused(import(path("crash.geo")), 4,
                     "crash.geo: the import broke down over it; the file is damaged or too much "
                     "for Gmsh (signal 9, Killed)");
    }

    /// Gmsh calls them triangles and tetrahedra, and has no nodes of theirs.
    void refusesKindsThatHaveNoCorners_data()
    {
        QTest::addColumn<QByteArray>("elements");
        QTest::addColumn<QByteArray>("kinds");
        QTest::newRow("cut triangles") << QByteArray("2 135 1 4 1 4 3 1\n3 135 1 4 4 2 3 1\n")
                                       << QByteArray("2 of type Triangle Xfem");
        QTest::newRow("cut line") << QByteArray("2 134 1 3 1 4 1\n3 15 1 1 1\n")
                                  << QByteArray("1 of type Line Xfem");
    }

    void refusesKindsThatHaveNoCorners()
    {
        QFETCH(QByteArray, elements);
        QFETCH(QByteArray, kinds);
        QVERIFY(writeContent(path("kinds.msh"), "$MeshFormat\n3 0 8\n$EndMeshFormat\n$Nodes\n4\n"
                                                "1 0 0 0 0\n2 1 0 0 0\n3 0 1 0 0\n4 0.5 0 0 0\n"
                                                "$EndNodes\n$Elements\n3\n1 2 0 3 1 2 3\n" +
                                                    elements + "$EndElements\n"));
        checkRefused(import(path("kinds.msh")), 6,
                     "kinds.msh: elements of kinds that cannot be imported: " + kinds + '\n');
    }

    void passesOnTheErrorOfAScript()
    {
        QVERIFY(writeContent(path("error.geo"), "Point(1) = {0, 0, 0};\nPoint(2) = {0, 0};\n"));
        checkRefused(import(path("error.geo")), 4, "line 2");
    }

    // Gmsh would pass over what follows the first statement of such a line without a word.
    void refusesStatementsThatGmshWouldPassOver_data()
    {
        QTest::addColumn<QByteArray>("ending");
        QTest::addColumn<bool>("refused");
        const QByteArray first = "Box(1) = {0, 0, 0, 1, 1, 1};";
        const QByteArray second = "Box(2) = {3, 0, 0, 1, 1, 1};";
        QTest::newRow("two in the last line") << first + ' ' + second << true;
        QTest::newRow("ended") << first + ' ' + second + '\n' << false;
        QTest::newRow("ended as elsewhere") << first + ' ' + second + "\r\n" << false;
        QTest::newRow("one in the last line") << first + '\n' + second << false;
        QTest::newRow("comment") << first + '\n' + second + " // Box(3), another one;" << false;
        QTest::newRow("other comment") << first + '\n' + second + " /* Box(3) */" << false;
        QTest::newRow("spaces") << first + ' ' + second + "\n\n  " << false;
        QTest::newRow("braces") << first + "\nTranslate {3, 0, 0} {Duplicata {Volume{1};} }"
                                << false;
    }

    void refusesStatementsThatGmshWouldPassOver()
    {
        QFETCH(QByteArray, ending);
        QFETCH(bool, refused);
        QVERIFY(writeContent(path("last.geo"), "SetFactory(\"OpenCASCADE\");\n" + ending));
        if (refused) {
            checkRefused(import(path("last.geo")), 4, "the last line has several statements");
            return;
        }
        const ToolRun run = import(path("last.geo"), {"--mesh-size", "1"});
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        QCOMPARE(ImportedCase(path("case")).modelCounts()[3], 2);
    }

    void countsElementsOfUnknownKinds()
    {
        const QByteArray text = contentOf(path("two.inp"));
        QVERIFY(writeContent(path("unknown.inp"),
                             text + "*ELEMENT, type=CONN3D2\n900001, 1, 2\n900002, 2, 3\n"
                                    "*ELEMENT, type=MASS\n900003, 1\n"));
        checkRefused(import(path("unknown.inp")), 6, "2 of type CONN3D2, 1 of type MASS");
        QVERIFY(writeContent(path("unknown.msh"),
                             "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n4\n1 0 0 0\n2 1 0 0\n"
                             "3 0 1 0\n4 0 0 1\n$EndNodes\n$Elements\n3\n1 4 2 0 1 1 2 3 4\n"
                             "2 34 2 0 2 4 1 2 3 4\n3 35 2 0 2 4 2 3 4 1\n$EndElements\n"));
        checkRefused(import(path("unknown.msh")), 6, "of its 3 elements, 2 are of kinds");
    }

    void countsElementsThatGmshPassesOver_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("more");
        QTest::newRow("Nastran springs") << "bdf" << QByteArray("ENDDATA")
                                         << QByteArray("CBUSH,99999,1,1,2\nCBUSH,99998,1,2,3\n");
        QTest::newRow("universal dampers")
            << "unv" << QByteArray("    -1\n    -1\n  2477")
            << QByteArray("     99998       136         1         0         7         2\n"
                          "         1         2\n"
                          "     99999       136         1         0         7         2\n"
                          "         1         2\n");
    }

    void countsElementsThatGmshPassesOver()
    {
        QFETCH(QString, suffix);
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, more);
        QByteArray text = contentOf(path("two.") + suffix);
        QVERIFY(text.contains(before));
        text.replace(before, more + before);
        QVERIFY(writeContent(path("more.") + suffix, text));
        checkRefused(import(path("more.") + suffix), 6,
                     "elements of kinds that cannot be imported: 2 of type ");
    }

    void namesTheVtkCellThatHasNoKind()
    {
        QVERIFY(writeContent(path("polygon.vtk"),
                             "# vtk DataFile Version 2.0\ntwo\nASCII\n"
                             "DATASET UNSTRUCTURED_GRID\nPOINTS 5 double\n0 0 0\n1 0 0\n0 1 0\n"
                             "0 0 1\n1 1 0\nCELLS 2 11\n4 0 1 2 3\n5 0 1 4 2 3\n"
                             "CELL_TYPES 2\n10\n7\n"));
        checkRefused(import(path("polygon.vtk")), 4, "Unknown type of cell 7");
    }

    void advisesASizeWhereAVolumeStaysEmpty()
    {
        const QString file = path("ball.geo");
        QVERIFY(writeContent(file, "SetFactory(\"OpenCASCADE\");\nSphere(1) = {0, 0, 0, 1};\n"
                                   "Mesh.MeshSizeMin = 100;\nMesh.MeshSizeMax = 100;\n"));
        checkRefused(
            import(file), 6,
            "No elements in volume 1; it is at most 2 thick, try --mesh-size 1 or smaller");
        QCOMPARE(import(file, {"--mesh-size", "1"}).exitCode, 0);
    }

    void refusesOverlappingElements()
    {
        QVERIFY(writeContent(path("overlap.msh"),
                             "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n6\n1 0 0 0\n2 1 0 0\n"
                             "3 0 1 0\n4 0 0 1\n5 1 1 1\n6 0 0 -1\n$EndNodes\n$Elements\n3\n"
                             "1 4 2 0 1 1 2 3 4\n2 4 2 0 1 1 2 3 5\n3 4 2 0 1 1 3 2 6\n"
                             "$EndElements\n"));
        checkRefused(import(path("overlap.msh")), 4, "share the face of nodes 1 2 3");
    }

    void refusesVolumesOfAFlatInput()
    {
        QVERIFY(writeContent(path("flat.geo"), "SetFactory(\"OpenCASCADE\");\n"
                                               "Rectangle(1) = {0, 0, 0, 1, 1};\n"));
        checkRefused(import(path("flat.geo"), {"--dimension", "3"}), 6, "--dimension 2");
    }

    void refusesOutputInAMissingDirectory()
    {
        const ToolRun run = runTool({"import", path("two.msh"), "-o", path("none/case")});
        QCOMPARE(run.exitCode, 5);
        QVERIFY(isOneErrorLine(run.errors));
    }

    void namesFilesWhoseNamesLookLikePlacesInAText_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("words");
        QTest::newRow("Nastran") << "50%2.bdf" << QByteArray("INCLUDE 'a'\n") << 6
                                 << QByteArray("50%2.bdf: line 1: INCLUDE is not followed");
        QTest::newRow("universal")
            << "50%3.unv" << QByteArray("    -1\n   780\n    -1\n") << 6
            << QByteArray("50%3.unv: line 2: elements of data set 780 are not read");
        QTest::newRow("VRML") << "50%2%3.wrl" << QByteArray("#VRML V1.0 ascii\nCube { }\n") << 6
                              << QByteArray("50%2%3.wrl: line 2: Cube of VRML is not read");
        QTest::newRow("Abaqus") << "50%2.inp" << QByteArray("*NODE\n1, x\n") << 4
                                << QByteArray("50%2.inp: line 2: a node needs a number");
    }

    void namesFilesWhoseNamesLookLikePlacesInAText()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, words);
        QVERIFY(writeContent(path(file), content));
        checkRefused(import(path(file)), exitCode, words);
    }

    void scaleOfAFileWhoseNameLooksLikeAPlaceInAText()
    {
        QVERIFY(QFile::copy(path("two.msh"), path("50%2.msh")));
        checkRefused(import(path("50%2.msh"), {"--scale", "1e308"}), 6,
                     "50%2.msh: --scale 1e+308 makes its coordinates or measures too large");
    }

    void refusesWrongOptions_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::newRow("dimension") << QStringList{"--dimension", "4"};
        QTest::newRow("size 0") << QStringList{"--mesh-size", "0"};
        QTest::newRow("size in words") << QStringList{"--mesh-size", "fine"};
        QTest::newRow("unknown") << QStringList{"--colour", "red"};
    }

    void refusesWrongOptions()
    {
        QFETCH(QStringList, options);
        checkRefused(import(path("two.msh"), options), 2);
    }

    void refusesWrongAttributes_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QByteArray>("words");
        const auto row = [](const char* name, const char* json, const char* words) {
            QTest::newRow(name) << QByteArray(json) << QByteArray(words);
        };
        row("no JSON", "{\"groups\":\n  nonsense}", "line 2");
        row("no object", "[1, 2]", "an object is expected");
        row("section", "{\"group\": {}}", "group: unknown section");
        row("unknown tag", "{\"groups\": {\"right\": {\"material_idx\": 1}}}",
            "groups/right/material_idx: unknown attribute tag");
        row("case of the tag", "{\"groups\": {\"right\": {\"MATERIAL_ID\": 1}}}",
            "unknown attribute tag");
        row("text for int", "{\"groups\": {\"right\": {\"material_id\": \"1\"}}}",
            "groups/right/material_id: an integer is expected, not the text \"1\"");
        row("fraction for int", "{\"groups\": {\"right\": {\"material_id\": 1.5}}}",
            "an integer is expected");
        row("too large an int", "{\"groups\": {\"right\": {\"material_id\": 3000000000}}}",
            "an integer is expected");
        row("number for bool", "{\"groups\": {\"right\": {\"is_shell\": 1}}}",
            "true or false is expected");
        row("number for text", "{\"groups\": {\"right\": {\"material_type\": 1}}}",
            "a text is expected");
        row("text for number", "{\"model\": {\"visual_scale_factor\": \"big\"}}",
            "a number is expected");
        row("short vector", "{\"model\": {\"periodic_origin\": [0, 1]}}",
            "a list of 3 numbers is expected, not a list of 2");
        row("short matrix", "{\"model\": {\"periodic_matrix\": [0, 1, 2]}}", "of 9 numbers");
        row("null", "{\"groups\": {\"right\": {\"side\": null}}}", "not null");
        row("object", "{\"groups\": {\"right\": {\"side\": {}}}}", "not an object");
        row("unmatched name", "{\"groups\": {\"nowhere\": {\"material_id\": 1}}}",
            "groups/nowhere: no physical group has this name; the input has between, left, right");
        row("ambiguous name", "{\"groups\": {\"left\": {\"material_id\": 1}}}",
            "write 2:left or 3:left");
        row("unmatched entity", "{\"entities\": {\"3:9\": {\"material_id\": 1}}}",
            "there is no entity of dimension 3 with id 9");
        row("no entity", "{\"entities\": {\"air\": {\"material_id\": 1}}}",
            "dimension and id are expected");
        row("unmatched face", "{\"entities\": {\"3:1\": {\"hot_faces\": [2, 99]}}}",
            "there is no entity of dimension 2 with id 99");
        row("unmatched face name", "{\"entities\": {\"3:1\": {\"hot_faces\": [\"right\"]}}}",
            "no physical group and no entity of dimension 2 has the name \"right\"");
        row("several faces for one", "{\"entities\": {\"2:4\": {\"extruded_face\": \"left\"}}}",
            "the name stands for 2 faces, but one is expected");
        row("twice the same tag",
            "{\"groups\": {\"right\": {\"material_id\": 1,\n \"material_id\" : 2}}}",
            "line 2, byte 41: \"material_id\" is there twice in one object");
        row("twice, written differently",
            "{\"groups\": {\"right\": {\"side\": \"\\\"}\", \"s\\u0069de\": [{}]}}}",
            "\"side\" is there twice in one object");
        row("twice the same group",
            "{\"groups\": {\"right\": {\"material_id\": 1}, \"right\": {\"side\": 2}}}",
            "\"right\" is there twice in one object");
        row("twice the same section", "{\"groups\": {}, \"model\": {}, \"groups\": {}}",
            "\"groups\" is there twice in one object");
        row("tag and alias", "{\"entities\": {\"3:1\": {\"material_id\": 1, \"materialId\": 2}}}",
            "the same attribute as");
    }

    void refusesWrongAttributes()
    {
        QFETCH(QByteArray, json);
        QFETCH(QByteArray, words);
        QVERIFY(writeContent(path("a.json"), json));
        const ToolRun run = import(path("two.msh"), {"--attributes", path("a.json")});
        checkRefused(run, 4, words);
        QVERIFY(run.errors.contains("a.json"));
    }

    void refusesMissingAttributes()
    {
        checkRefused(import(path("two.msh"), {"--attributes", path("none.json")}), 3, "none.json");
    }

    void warnsOfMaterials_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QByteArrayList>("lines");
        const auto row = [](const char* name, const char* json, const QByteArrayList& lines) {
            QTest::newRow(name) << QByteArray(json) << lines;
        };
        const QByteArray none =
            "gives a material_type to none of the regions, so that nothing can be prepared or "
            "solved";
        row("known", "{\"names\": {\"*\": {\"material_type\": \"solid\"}}}", {});
        row("unknown",
            "{\"groups\": {\"3:left\": {\"material_type\": \"solid\"},"
            " \"right\": {\"material_type\": \"Fluid\"}}}",
            {"model region 2 has the material_type \"Fluid\", which counts as neither fluid nor "
             "solid; known are fluid, solid, "});
        row("one without", "{\"groups\": {\"right\": {\"material_type\": \"solid\"}}}",
            {"gives no material_type to 1 region: 1 (left); without one, a region counts as "
             "neither fluid nor solid\n"});
        row("unknown, twice",
            "{\"entities\": {\"3:1\": {\"material_type\": \"air\"},"
            " \"3:2\": {\"material_type\": \"air\"}}}",
            {"model region 1 has the material_type \"air\""});
        row("none", "{\"groups\": {\"right\": {\"material_id\": 1}}}", {none});
        row("faces only", "{\"groups\": {\"between\": {\"material_type\": \"solid\"}}}", {none});
        row("empty", "{}", {none});
        row("names alone", "{\"entities\": {\"3:1\": {\"name\": \"case\"}}}", {});
        row("no more to say", "{\"entities\": {}}", {});
    }

    void warnsOfMaterials()
    {
        QFETCH(QByteArray, json);
        QFETCH(QByteArrayList, lines);
        QVERIFY(writeContent(path("a.json"), json));
        const ToolRun run = import(path("two.msh"), {"--attributes", path("a.json")});
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        QVERIFY2(run.errors.count('\n') == lines.size(), run.errors.constData());
        for (const QByteArray& line : lines) {
            QVERIFY2(
                run.errors.contains("ovrageo: warning: " + path("a.json").toUtf8() + ": " + line),
                run.errors.constData());
        }
    }

    void isSilentAboutMaterialsWithoutAttributes()
    {
        const ToolRun run = import(path("two.msh"));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors, QByteArray());
    }

    void allowsTheSameKeyInSeveralObjects()
    {
        QVERIFY(writeContent(path("a.json"),
                             "{\"groups\": {\"right\": {\"material_type\": \"solid\"},"
                             " \"3:left\": {\"material_type\": \"solid\", \"side\": \"side\"}}}"));
        const ToolRun run = import(path("two.msh"), {"--attributes", path("a.json")});
        QVERIFY2(run.exitCode == 0 && run.errors.isEmpty(), run.errors.constData());
    }

    void setsAttributes()
    {
        QVERIFY(writeContent(
            path("a.json"),
            "{\"model\": {\"coordinate_system\": 3, \"periodic_origin\": [1, 2, 3],"
            " \"periodic_matrix\": [[1, 2, 3], [4, 5, 6], [7, 8, 9]]},"
            " \"groups\": {\"right\": {\"materialId\": 7, \"material_type\": \"fluid\","
            " \"is_shell\": false, \"visual_scale_factor\": 2, \"side\": [1, \"x\", true, 0.5]},"
            " \"2:left\": {\"extruded_face\": \"between\"}},"
            " \"entities\": {\"3:1\": {\"hot_faces\": [4, \"left\", \"between\"]},"
            " \"2:5\": {\"periodic_weights\": [1, 0.5]}}}"));
        QCOMPARE(import(path("two.msh"), {"--attributes", path("a.json")}).exitCode, 0);
        ImportedCase imported(path("case"));
        const auto value = [&](int dimension, int id, const AttributeType& type) {
            return imported.model()->entity(dimension, id)->attributes().value(type, QVariant());
        };
        QCOMPARE(imported.model()->coordinateSystem(), 3);
        QCOMPARE(imported.model()
                     ->attributes()
                     .value(AttributeType::PeriodicOrigin, QVariant())
                     .value<Ovra::Geo::Vector>(),
                 Ovra::Geo::Vector(1, 2, 3));
        const auto matrix = imported.model()
                                ->attributes()
                                .value(AttributeType::PeriodicMatrix, QVariant())
                                .value<Ovra::Geo::Matrix>();
        QCOMPARE(matrix(1, 2), 6.0);
        QCOMPARE(value(3, 2, AttributeType::MaterialId), QVariant(7));
        QCOMPARE(value(3, 2, AttributeType::MaterialType), QVariant(QStringLiteral("fluid")));
        QCOMPARE(value(3, 2, AttributeType::IsShell), QVariant(false));
        QCOMPARE(value(3, 2, AttributeType::VisualScaleFactor), QVariant(2.0));
        QCOMPARE(value(3, 2, AttributeType::Side).toList(),
                 (QVariantList{1, QStringLiteral("x"), true, 0.5}));
        QCOMPARE(value(3, 1, AttributeType::HotFaces).toList(), (QVariantList{4, 1, 3, 2}));
        QCOMPARE(value(2, 1, AttributeType::ExtrudedFace), QVariant(2));
        QCOMPARE(value(2, 3, AttributeType::ExtrudedFace), QVariant(2));
        QCOMPARE(value(2, 5, AttributeType::PeriodicWeights).toList(), (QVariantList{1.0, 0.5}));
        QVERIFY(!value(3, 1, AttributeType::MaterialId).isValid());
    }
};

QTEST_APPLESS_MAIN(TestImportErrors)
#include "tst_ImportErrors.moc"
