#include "ImportTest.h"

#include <QtEndian>

using Counts = std::vector<int>;
Q_DECLARE_METATYPE(Counts)

/// Surfaces of triangles in STL and OFF files, and the bodies that they bound.
class TestImportTriangles : public ImportTest
{
    Q_OBJECT

private slots:
    void readsTextsInAllStyles_data()
    {
        QTest::addColumn<QByteArray>("text");
        const QByteArray plain = solid("box", box(0, 1));
        QTest::newRow("plain") << plain;
        QTest::newRow("upper case") << QByteArray(plain).toUpper();
        QTest::newRow("mixed case") << QByteArray(plain)
                                           .replace("solid", "Solid")
                                           .replace("vertex", "Vertex")
                                           .replace("outer loop", "Outer Loop");
        QTest::newRow("line ends of other systems") << QByteArray(plain).replace("\n", "\r\n");
        QTest::newRow("blanks")
            << QByteArray(plain).replace("\n", "  \n \t ").replace(" 1 ", "\t1  ");
        QTest::newRow("blank lines")
            << QByteArray("\n\n" + plain).replace("facet normal", "\nfacet normal");
        QTest::newRow("exponents") << QByteArray(plain).replace(" 1 ", " 1.000000E+00 ");
        QTest::newRow("rounded") << QByteArray(plain).replace("vertex 1 1", "vertex 1.000000001 1");
        QTest::newRow("end solid") << QByteArray(plain).replace("endsolid", "end solid");
        QTest::newRow("triangle without width") << QByteArray(plain).replace(
            "endsolid", facet({{{0, 0, 0}, {1, 1, 1}, {0, 0, 0}}}) + "endsolid");
    }

    void readsTextsInAllStyles()
    {
        QFETCH(QByteArray, text);
        const ToolRun run = importContent("case.stl", text);
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        const bool hasFlat = text.count("facet normal") > 24 / 2;
        QCOMPARE(run.errors, hasFlat ? "ovrageo: warning: " + path("case.stl").toUtf8() +
                                           ": 1 triangle has corners that are the same and is "
                                           "left out\n"
                                     : QByteArray());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.modelCounts(), (Counts{0, 0, 1, 1}));
        QCOMPARE(imported.faults(), QString());
        QVERIFY(qAbs(ImportedCase::volume(imported.entities(3)[0]) - 1.0) < 1e-7);
        QCOMPARE(imported.entities(3)[0]->name().toLower(), QStringLiteral("box"));
    }

    void readsBinaryFiles_data()
    {
        QTest::addColumn<QByteArray>("header");
        QTest::newRow("zeros") << QByteArray();
        QTest::newRow("words") << QByteArray("exported by a program");
        QTest::newRow("words of a text") << QByteArray("solid box\nfacet normal 0 0 1\n");
        QTest::newRow("words of a text in upper case") << QByteArray("SOLID");
    }

    void readsBinaryFiles()
    {
        QFETCH(QByteArray, header);
        const ToolRun run = importContent("case.stl", binary(header, box(0, 1)));
        checkFilledCube(run);
    }

    void makesABodyOfEachSolid_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QList<double>>("volumes");
        const auto row = [](const char* name, const QByteArray& text, const QStringList& names,
                            const QList<double>& volumes) {
            QTest::newRow(name) << text << names << volumes;
        };
        const auto first = box(0, 1);
        const auto second = box(5, 7);
        row("apart", solid("left", first) + solid("right", second), {"left", "right"}, {1, 8});
        row("names with blanks", solid("the left one", first) + solid("  b  c ", second),
            {"the left one", "b c"}, {1, 8});
        row("same name", solid("part", first) + solid("part", second), {"part", "part"}, {1, 8});
        row("no names", solid("", first) + solid("", second), {"", ""}, {1, 8});
        row("two bodies in one solid", solid("both", joined(first, second)), {"both", "both"},
            {1, 8});
        row("nested", solid("case", box(0, 5)) + solid("core", box(1, 2)), {"case", "core"},
            {124, 1});
        row("nested, the inner one first", solid("core", box(1, 2)) + solid("case", box(0, 5)),
            {"core", "case"}, {1, 124});
        row("one on another", solid("board", box(0, 5)) + solid("chip", moved(box(1, 2), 4)),
            {"board", "chip"}, {125, 1});
        row("one on another, in the other order",
            solid("chip", moved(box(1, 2), 4)) + solid("board", box(0, 5)), {"chip", "board"},
            {1, 125});
        row("one on another, with a corner in common",
            solid("board", box(0, 2)) + solid("chip", moved(box(0, 1), 2)), {"board", "chip"},
            {8, 1});
        row("corner to corner", solid("left", box(0, 1)) + solid("right", box(1, 2)),
            {"left", "right"}, {1, 1});
        row("overlapping", solid("board", box(0, 5)) + solid("chip", moved(box(1, 2), 3.5)),
            {"board", "chip"}, {125, 1});
        row("hollow", solid("case", box(0, 5)) + solid("hole", turned(box(1, 2))), {"case"}, {124});
    }

    void makesABodyOfEachSolid()
    {
        QFETCH(QByteArray, text);
        QFETCH(QStringList, names);
        QFETCH(QList<double>, volumes);
        const ToolRun run = importContent("case.stl", text);
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        QStringList foundNames;
        QList<double> foundVolumes;
        for (auto* region : imported.entities(3)) {
            foundNames.append(region->name());
            foundVolumes.append(std::round(ImportedCase::volume(region) * 1e6) / 1e6);
        }
        QCOMPARE(foundNames, names);
        QCOMPARE(foundVolumes, volumes);
    }

    void warnsOfSolidsThatTouch()
    {
        const ToolRun run =
            importContent("case.stl", solid("a", box(0, 1)) + solid("b", moved(box(0, 1), 1)));
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.errors.contains("its surface encloses no volume: 5 edges belong to more than "
                                     "two triangles; only the surface is imported"),
                 run.errors.constData());
    }

    /// As flow solvers have it: the solids are the sides of one body.
    void makesFacesOfSolidsThatAreSides()
    {
        const auto all = box(0, 1);
        const Triangles inlet(all.begin(), all.begin() + 2);
        const Triangles outlet(all.begin() + 2, all.begin() + 4);
        const Triangles walls(all.begin() + 4, all.end());
        const ToolRun run = importContent(
            "case.stl", solid("inlet", inlet) + solid("outlet", outlet) + solid("walls", walls));
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.faults(), QString());
        QCOMPARE(imported.entities(3).size(), std::size_t(1));
        QCOMPARE(imported.entities(3)[0]->name(), QString());
        QVERIFY(qAbs(ImportedCase::volume(imported.entities(3)[0]) - 1.0) < 1e-9);
        QStringList faces;
        for (auto* face : imported.entities(2)) {
            faces.append(face->name());
        }
        QCOMPARE(faces, (QStringList{"inlet", "outlet", "walls"}));
        QCOMPARE(imported.model()->count(1), 2);
    }

    void keepsNamesOfASurfaceAlone()
    {
        const QByteArray text = solid("a", box(0, 1)) + solid("b", box(5, 7));
        QCOMPARE(importContent("case.stl", text, {"--dimension", "2"}).exitCode, 0);
        ImportedCase imported(path("case"));
        QCOMPARE(imported.modelCounts(), (Counts{0, 0, 2, 0}));
        QCOMPARE(imported.entities(2)[0]->name(), QStringLiteral("a"));
        QCOMPARE(imported.entities(2)[1]->name(), QStringLiteral("b"));
    }

    void warnsOfAnOpenSurface()
    {
        Triangles open = box(0, 1);
        open.pop_back();
        const ToolRun run = importContent("case.stl", solid("box", open));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors, "ovrageo: warning: " + path("case.stl").toUtf8() +
                                 ": its surface encloses no volume: 3 edges belong to one triangle "
                                 "only; only the surface is imported\n");
    }

    void refusesWrongStl_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("words");
        const auto row = [](const char* name, const QByteArray& text, const char* words) {
            QTest::newRow(name) << text << QByteArray(words);
        };
        const QByteArray plain = solid("box", box(0, 1));
        row("no number", QByteArray(plain).replace("vertex 1 1 1", "vertex 1 x 1"),
            ": a vertex needs three coordinates");
        row("two numbers", QByteArray(plain).replace("vertex 1 1 1", "vertex 1 1"),
            ": a vertex needs three coordinates");
        row("not finite", QByteArray(plain).replace("vertex 1 1 1", "vertex 1 nan 1"),
            ": the facet has a coordinate that is no number");
        row("four vertices", QByteArray(plain).replace("endloop", "vertex 0 0 0\nendloop"),
            "line 9: a facet with 4 vertices; it must have 3");
        row("strange word", QByteArray(plain).replace("endsolid", "sphere 1\nendsolid"),
            "line 86: \"sphere 1\" does not belong here");
        row("solid within a solid", QByteArray(plain).replace("endsolid", "solid x\nendsolid"),
            "line 86: \"solid x\" does not belong here");
        row("cut off between solids", plain + "solid x\n", "there is no endsolid");
        row("nothing in it", "solid x\nendsolid x\n", "holds no triangles");
        for (const char* header : {"x", "solid box", "SOLID"}) {
            const QByteArray whole = binary(header, box(0, 1));
            const auto binaryRow = [header](const char* name, const QByteArray& content,
                                            const char* words) {
                QTest::addRow("binary \"%s\", %s", header, name) << content << QByteArray(words);
            };
            binaryRow("cut short", whole.chopped(51),
                      "the file is cut off at byte 633: binary STL whose header promises 12 "
                      "triangles, of which 10 are there\n");
            binaryRow("cut in the second triangle", whole.left(84 + 60),
                      "promises 12 triangles, of which 1 is there\n");
            binaryRow("cut in the header", whole.left(83),
                      "the file is cut off at byte 83: a binary STL file has a header of 84 bytes");
            binaryRow(
                "longer than its count", whole + "x",
                "binary STL whose header promises 12 triangles; behind them 1 byte is left over\n");
        }
        row("text, cut short", solid("box", box(0, 1)).chopped(20), "there is no endsolid");
        row("other text", "facet normal 0 0 0\n",
            "not an STL file: as a text it must begin with solid");
        row("binary without triangles", binary("x", {}), "holds no triangles");
        row("binary, not finite", binary("x", {{{{qQNaN(), 0, 0}, {1, 0, 0}, {0, 1, 0}}}}),
            "triangle 1 has a coordinate that is no number");
    }

    void refusesWrongStl()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, words);
        checkRefused(importContent("case.stl", text), 4, words);
    }

    void readsOff_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("plain") << "OFF\n" + Counted;
        QTest::newRow("counts in the first line") << "OFF " + Counted;
        QTest::newRow("comments") << "# made by hand\n\nOFF # cube\n" + Counted;
        QTest::newRow("line ends of other systems")
            << QByteArray("OFF\n" + Counted).replace("\n", "\r\n");
        QTest::newRow("no count of edges")
            << QByteArray("OFF\n" + Counted).replace("8 6 12", "8 6");
        QTest::newRow("colours of faces")
            << QByteArray("OFF\n" + Counted).replace("0 3 2 1\n", "0 3 2 1 255 0 0\n");
        QTest::newRow("colours of vertices") << "COFF\n" + withEachVertex(" 0.5 0.5 0.5 1");
        QTest::newRow("normals") << "NOFF\n" + withEachVertex(" 0 0 1");
        QTest::newRow("lower case") << "off\n" + Counted;
        QTest::newRow("triangles") << QByteArray("OFF\n" + Counted)
                                          .replace("8 6 12", "8 7 0")
                                          .replace("4 0 3 2 1", "3 0 3 2\n3 0 2 1");
        QTest::newRow("vertices that are there twice")
            << QByteArray("OFF\n" + Counted)
                   .replace("8 6 12", "9 6 12")
                   .replace("0 1 1\n4", "0 1 1\n0 0 0\n4")
                   .replace("4 0 3 2 1", "4 8 3 2 1");
        QTest::newRow("more behind the faces") << "OFF\n" + Counted + "1 2 3\n";
    }

    void readsOff()
    {
        QFETCH(QByteArray, text);
        checkFilledCube(importContent("case.off", text));
    }

    void refusesWrongOff_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("words");
        const auto row = [](const char* name, const QByteArray& text, const char* words) {
            QTest::newRow(name) << text << QByteArray(words);
        };
        const QByteArray plain = "OFF\n" + Counted;
        row("no header", Counted, "line 1: not an object file: it must begin with OFF");
        row("script", "SystemCall \"x\";\n", "line 1: not an object file");
        row("four coordinates", "4OFF\n" + Counted, "line 1: not an object file");
        row("binary", "OFF BINARY\n" + Counted, "binary object files are not read");
        row("no counts", "OFF\n", "the line with the numbers of vertices and faces is missing");
        row("counts in words", "OFF\neight 6 12\n", "line 2: \"eight\" is no number of vertices");
        row("negative count", "OFF\n-8 6 12\n", "\"-8\" is no number of vertices");
        row("no faces", "OFF\n8 0 0\n", "line 2: holds no faces");
        row("counts beyond the file", QByteArray(plain).replace("8 6", "8 4000000000000000000"),
            "of 4000000000000000000 faces, 6 are there");
        row("vertices beyond the file", QByteArray(plain).replace("8 6", "4000000000000000000 6"),
            "of 4000000000000000000 vertices, 14 are there");
        row("cut off", "OFF\n2 1 0\n0 0 0\n", "at byte 16: of 2 vertices, 1 is there\n");
        row("position that is none", QByteArray(plain).replace("0 3 2 1", "0 3 2 8"),
            "there is no vertex 8; they are counted from 0 to 7");
        row("too few positions", QByteArray(plain).replace("4 0 3 2 1", "4 0 3 2"),
            "line 11: a face needs the number of its corners");
        row("two corners", QByteArray(plain).replace("4 0 3 2 1", "2 0 3"),
            "line 11: a face needs the number of its corners, at least 3");
        row("corners without number", QByteArray(plain).replace("4 0 3 2 1", "x 0 3 2"),
            "\"x\" is no number of vertices, faces or corners");
        row("not convex", "OFF\n4 1 0\n0 0 0\n2 0 0\n0.2 0.2 0\n0 2 0\n4 1 2 3 0\n",
            "line 7: the face is not convex; cut it into triangles");
        row("no coordinate", QByteArray(plain).replace("1 1 1\n", "1 y 1\n"),
            "a vertex needs three coordinates");
        row("not finite", QByteArray(plain).replace("1 1 1\n", "1 inf 1\n"),
            "a vertex needs three coordinates");
    }

    void refusesWrongOff()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, words);
        checkRefused(importContent("case.off", text), 4, words);
    }

private:
    using Point = std::array<double, 3>;
    using Triangle = std::array<Point, 3>;
    using Triangles = std::vector<Triangle>;

    static inline const QByteArray Counted =
        "8 6 12\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n0 0 1\n1 0 1\n1 1 1\n0 1 1\n"
        "4 0 3 2 1\n4 4 5 6 7\n4 0 1 5 4\n4 1 2 6 5\n4 2 3 7 6\n4 3 0 4 7\n";

    static QByteArray withEachVertex(const QByteArray& more)
    {
        QByteArrayList lines = Counted.split('\n');
        for (qsizetype i = 1; i <= 8; ++i) {
            lines[i] += more;
        }
        return lines.join('\n');
    }

    /// Twelve triangles, turned outwards, of the cube from low to high in each direction.
    static Triangles box(double low, double high)
    {
        const auto at = [=](int x, int y, int z) {
            return Point{x != 0 ? high : low, y != 0 ? high : low, z != 0 ? high : low};
        };
        const auto quad = [](const Point& a, const Point& b, const Point& c, const Point& d) {
            return Triangles{{{a, b, c}}, {{a, c, d}}};
        };
        Triangles all;
        for (const Triangles& side : {quad(at(0, 0, 0), at(0, 0, 1), at(0, 1, 1), at(0, 1, 0)),
                                      quad(at(1, 0, 0), at(1, 1, 0), at(1, 1, 1), at(1, 0, 1)),
                                      quad(at(0, 0, 0), at(1, 0, 0), at(1, 0, 1), at(0, 0, 1)),
                                      quad(at(0, 1, 0), at(0, 1, 1), at(1, 1, 1), at(1, 1, 0)),
                                      quad(at(0, 0, 0), at(0, 1, 0), at(1, 1, 0), at(1, 0, 0)),
                                      quad(at(0, 0, 1), at(1, 0, 1), at(1, 1, 1), at(0, 1, 1))}) {
            all.insert(all.end(), side.begin(), side.end());
        }
        return all;
    }

    static Triangles joined(Triangles a, const Triangles& b)
    {
        a.insert(a.end(), b.begin(), b.end());
        return a;
    }

    static Triangles turned(Triangles triangles)
    {
        for (Triangle& triangle : triangles) {
            std::swap(triangle[1], triangle[2]);
        }
        return triangles;
    }

    static Triangles moved(Triangles triangles, double x)
    {
        for (Triangle& triangle : triangles) {
            for (Point& point : triangle) {
                point[0] += x;
            }
        }
        return triangles;
    }

    static QByteArray facet(const Triangle& triangle)
    {
        QByteArray text = "facet normal 0 0 0\nouter loop\n";
        for (const Point& point : triangle) {
            text += "vertex";
            for (const double coordinate : point) {
                text += ' ' + QByteArray::number(coordinate, 'g', 9);
            }
            text += '\n';
        }
        return text + "endloop\nendfacet\n";
    }

    static QByteArray solid(const QByteArray& name, const Triangles& triangles)
    {
        QByteArray text = "solid " + name + '\n';
        for (const Triangle& triangle : triangles) {
            text += facet(triangle);
        }
        return text + "endsolid " + name + '\n';
    }

    static QByteArray binary(const QByteArray& header, const Triangles& triangles)
    {
        QByteArray bytes = header.leftJustified(80, '\0', true);
        const auto put = [&bytes](auto value) {
            char buffer[sizeof value];
            qToLittleEndian(value, buffer);
            bytes.append(buffer, sizeof value);
        };
        put(static_cast<quint32>(triangles.size()));
        for (const Triangle& triangle : triangles) {
            bytes.append(12, '\0');
            for (const Point& point : triangle) {
                for (const double coordinate : point) {
                    put(static_cast<float>(coordinate));
                }
            }
            bytes.append(2, '\0');
        }
        return bytes;
    }
};

QTEST_APPLESS_MAIN(TestImportTriangles)
#include "tst_ImportTriangles.moc"
