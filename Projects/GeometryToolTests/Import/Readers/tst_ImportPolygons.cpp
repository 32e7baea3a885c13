#include "ImportTest.h"

#include <QtEndian>

using Counts = std::vector<int>;

/// Surfaces of polygons in PLY, VTK and VRML files, and the bodies that they bound.
class TestImportPolygons : public ImportTest
{
    Q_OBJECT

private slots:
    void fillsACube_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QByteArray>("content");
        const auto row = [](const char* name, const char* suffix, const QByteArray& content) {
            QTest::newRow(name) << QString::fromLatin1(suffix) << content;
        };
        const QByteArray text = plyHeader("ascii") + Points + faces("4 ", "\n");
        row("PLY, text", "ply", text);
        row("PLY, vertex_indices", "ply",
            QByteArray(text).replace("vertex_index", "vertex_indices"));
        row("PLY, comments", "ply",
            QByteArray(text).replace("element face",
                                     "comment by hand\nobj_info 1\n\nelement face"));
        row("PLY, a line for each number", "ply",
            plyHeader("ascii") + QByteArray(Points + faces("4 ", "\n")).replace(" ", "\n"));
        row("PLY, faces with colours", "ply",
            QByteArray(text)
                .replace("end_header", "property uchar red\nend_header")
                .replace(faces("4 ", "\n"), faces("4 ", " 255\n")));
        row("PLY, little-endian", "ply", plyHeader("binary_little_endian") + binaryCube(false));
        row("PLY, big-endian", "ply", plyHeader("binary_big_endian") + binaryCube(true));
        const QByteArray vtk = "# vtk DataFile Version 3.0\ncube\nASCII\nDATASET POLYDATA\n"
                               "POINTS 8 float\n" +
                               Points;
        row("VTK, text", "vtk", vtk + "POLYGONS 6 30\n" + faces("4 ", "\n"));
        row("VTK, lines and values", "vtk",
            vtk +
                "METADATA\nINFORMATION 0\n\nVERTICES 1 2\n1 0\nLINES 1 3\n2 0 1\nPOLYGONS 6 30\n" +
                faces("4 ", " ") +
                "\nCELL_DATA 6\nSCALARS a int 1\nLOOKUP_TABLE default\n"
                "1 2 3 4 5 6\n");
        row("VTK, binary", "vtk",
            QByteArray("# vtk DataFile Version 3.0\ncube\nBINARY\nDATASET POLYDATA\n"
                       "POINTS 8 float\n") +
                binaryPoints(true) + "\nPOLYGONS 6 30\n" + binaryFaces<qint32>(true) + '\n');
        row("VRML 2.0", "wrl",
            "#VRML V2.0 utf8\nTransform { children [ Shape { appearance USE looks\n geometry "
            "IndexedFaceSet {\n coordIndex [" +
                faces("", " -1,\n") + "] coord DEF all Coordinate { point [" + Points +
                "] } } } ] }\n");
        row("VRML 1.0", "vrml",
            "#VRML V1.0 ascii\nSeparator { Info { string \"a } of # text\" }\n"
            "Coordinate3 { point [" +
                Points +
                "] }\nSeparator { Coordinate3 { point [ 9 9 9 ] } IndexedLineSet { "
                "coordIndex [0, 0, -1] } }\n"
                "IndexedFaceSet { coordIndex [" +
                faces("", " -1\n").chopped(4) + "] } }\n");
    }

    void fillsACube()
    {
        QFETCH(QString, suffix);
        QFETCH(QByteArray, content);
        checkFilledCube(import(suffix, content));
    }

    void warnsOfAnOpenSurface()
    {
        const ToolRun run =
            import("vtk", "# vtk DataFile Version 3.0\nopen\nASCII\nDATASET POLYDATA\n"
                          "POINTS 4 double\n0 0 0 2 0 0 2 1 0 0 1 0\nPOLYGONS 1 5\n4 0 1 2 3\n");
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.errors.contains("its surface encloses no volume"), run.errors.constData());
        ImportedCase imported(path("case"));
        QCOMPARE(imported.mesh()->count(2), 2);
    }

    void refuses_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("words");
        refusedPly();
        refusedVtk();
        refusedVrml();
    }

    void refuses()
    {
        QFETCH(QString, suffix);
        QFETCH(QByteArray, content);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, words);
        checkRefused(import(suffix, content), exitCode, words);
    }

private:
    static inline const QByteArray Points = "0 0 0\n1 0 0\n1 1 0\n0 1 0\n0 0 1\n1 0 1\n1 1 1\n"
                                            "0 1 1\n";
    static constexpr int Corners[6][4] = {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4},
                                          {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}};

    static QByteArray faces(const QByteArray& before, const QByteArray& behind)
    {
        QByteArray text;
        for (const auto& face : Corners) {
            text += before;
            for (int i = 0; i < 4; ++i) {
                text += (i > 0 ? " " : "") + QByteArray::number(face[i]);
            }
            text += behind;
        }
        return text;
    }

    static QByteArray plyHeader(const QByteArray& format)
    {
        return "ply\nformat " + format +
               " 1.0\nelement vertex 8\nproperty float x\nproperty float y\nproperty float z\n"
               "element face 6\nproperty list uchar int vertex_index\nend_header\n";
    }

    template <typename Number>
    static QByteArray bytes(Number value, bool bigEndian)
    {
        char buffer[sizeof value];
        if (bigEndian) {
            qToBigEndian(value, buffer);
        } else {
            qToLittleEndian(value, buffer);
        }
        return QByteArray(buffer, sizeof value);
    }

    static QByteArray binaryPoints(bool bigEndian)
    {
        QByteArray all;
        for (const QByteArray& number : Points.simplified().split(' ')) {
            all += bytes(number.toFloat(), bigEndian);
        }
        return all;
    }

    template <typename Count>
    static QByteArray binaryFaces(bool bigEndian)
    {
        QByteArray all;
        for (const auto& face : Corners) {
            all += bytes(Count(4), bigEndian);
            for (const int corner : face) {
                all += bytes(qint32(corner), bigEndian);
            }
        }
        return all;
    }

    static QByteArray binaryCube(bool bigEndian)
    {
        return binaryPoints(bigEndian) + binaryFaces<quint8>(bigEndian);
    }

    static void row(const char* name, const char* suffix, const QByteArray& content, int exitCode,
                    const char* words)
    {
        QTest::newRow(name) << QString::fromLatin1(suffix) << content << exitCode
                            << QByteArray(words);
    }

    static void refusedPly()
    {
        const QByteArray text = plyHeader("ascii") + Points + faces("4 ", "\n");
        const QByteArray binary = plyHeader("binary_little_endian") + binaryCube(false);
        row("PLY, other", "ply", "solid x\n", 4, "does not begin with ply");
        row("PLY, no end of the header", "ply", "ply\nformat ascii 1.0\n", 4,
            "there is no end_header");
        row("PLY, strange format", "ply", QByteArray(text).replace("ascii", "packed"), 4,
            "line 2: \"format packed 1.0\" is not understood");
        row("PLY, strange type", "ply", QByteArray(text).replace("float y", "word y"), 4,
            "line 5: \"property word y\" is not understood");
        row("PLY, strange word", "ply",
            QByteArray(text).replace("element face", "else\nelement face"), 4,
            "line 7: \"else\" is not understood");
        row("PLY, number too many", "ply", QByteArray(text).replace("1 1 0\n", "1 1 0 7\n"), 4,
            "line 12: vertex 2 ends in front of \"7\"; what comes next needs a line of its own");
        row("PLY, as many numbers again", "ply",
            QByteArray(text).replace("0 0 0\n", "0 0 0 0 0 1\n"), 4,
            "line 10: vertex 0 ends in front of \"0\"");
        row("PLY, corner too many", "ply", QByteArray(text).replace("4 3 0 4 7", "3 3 0 4 7"), 4,
            "line 23: face 5 ends in front of \"7\"");
        row("PLY, part of a corner", "ply", QByteArray(text).replace("4 3 0 4 7", "3.5 3 0 4 7"), 4,
            "line 23: face 5: 3.5 is no length of a list");
        row("PLY, points only", "ply", QByteArray(text).replace("face 6", "face 0"), 6,
            "holds no faces, points at most");
        row("PLY, strips", "ply", QByteArray(text).replace("element face", "element tristrips"), 6,
            "strips of triangles are not read");
        row("PLY, cut off", "ply", QByteArray(text).replace("4 3 0 4 7\n", "4 3 0"), 4,
            "face 5 is not whole");
        row("PLY, binary cut off", "ply", binary.chopped(1), 4, "face 5 is not whole");
        row("PLY, count beyond the file", "ply",
            QByteArray(text).replace("face 6", "face 4000000000000000000"), 4,
            "face 6 is not whole");
        row("PLY, no number", "ply", QByteArray(text).replace("1 1 1\n", "1 x 1\n"), 4,
            "line 16: vertex 6: \"x\" is no number");
        row("PLY, not finite", "ply", QByteArray(text).replace("1 1 1\n", "1 nan 1\n"), 4,
            "line 16: vertex 6 has a coordinate that is no number");
        row("PLY, no such vertex", "ply", QByteArray(text).replace("3 0 4 7", "3 0 4 8"), 4,
            "line 23: face 5: there is no vertex 8; they are counted from 0 to 7");
        row("PLY, binary, no such vertex", "ply",
            plyHeader("binary_big_endian") +
                binaryCube(true).replace(bytes(qint32(7), true), bytes(qint32(-8), true)),
            4, "case.ply: before byte 294: face 1: there is no vertex -8");
        row("PLY, part of a vertex", "ply", QByteArray(text).replace("3 0 4 7", "3 0 4 6.5"), 4,
            "line 23: face 5: 6.5 is no position of a vertex");
        row("PLY, two corners", "ply", QByteArray(text).replace("4 3 0 4 7", "2 3 0"), 4,
            "line 23: face 5: a face needs at least 3 corners");
    }

    static void refusedVtk()
    {
        const QByteArray start = "# vtk DataFile Version 3.0\nx\nASCII\nDATASET POLYDATA\n";
        const QByteArray vtk = start + "POINTS 8 float\n" + Points;
        row("VTK, points only", "vtk", vtk, 6, "holds no POLYGONS");
        row("VTK, strips", "vtk", vtk + "TRIANGLE_STRIPS 1 4\n3 0 1 2\n", 6,
            "TRIANGLE_STRIPS are not read");
        row("VTK, newer", "vtk", QByteArray(vtk).replace("3.0", "5.1"), 6,
            "POLYDATA of version 5.1 is not read");
        row("VTK, grid", "vtk", QByteArray(vtk).replace("POLYDATA", "STRUCTURED_GRID"), 6,
            "DATASET STRUCTURED_GRID is not read; UNSTRUCTURED_GRID and POLYDATA are");
        row("VTK, cut off", "vtk", vtk + "POLYGONS 6 30\n4 0 1 2", 4, "polygon 0 is not whole");
        row("VTK, types of cells cut off", "vtk",
            "# vtk DataFile Version 3.0\nx\nASCII\nDATASET UNSTRUCTURED_GRID\nPOINTS 4 float\n0 0 "
            "0\n"
            "1 0 0\n0 1 0\n0 0 1\nCELLS 2 10\n4 0 1 2 3\n4 0 1 2 3\nCELL_TYPES 2\n10\n",
            4, ": CELL_TYPES announces 2 types, of which 1 is there\n");
        row("VTK, no such vertex", "vtk", vtk + "POLYGONS 1 4\n3 0 1 8\n", 4,
            "line 15: polygon 0: there is no vertex 8");
        row("VTK, part of a corner", "vtk", vtk + "POLYGONS 1 5\n3.5 0 1 2 3\n", 4,
            "line 15: polygon 0: 3.5 is no number of corners");
        row("VTK, less than no corner", "vtk", vtk + "POLYGONS 1 5\n-4 0 1 2 3\n", 4,
            "line 15: polygon 0: -4 is no number of corners");
        row("VTK, binary, less than no corner", "vtk",
            QByteArray(start).replace("ASCII", "BINARY") + "POINTS 8 float\n" + binaryPoints(true) +
                "\nPOLYGONS 1 5\n" + bytes(qint32(-4), true),
            4, "case.vtk: before byte 182: polygon 0: -4 is no number of corners");
        row("VTK, no number of points", "vtk", QByteArray(vtk).replace("POINTS 8", "POINTS 8.5"), 4,
            "line 5: \"POINTS 8.5 float\" does not say how much there is");
        row("VTK, no number of polygons", "vtk", vtk + "POLYGONS all\n3 0 1 2\n", 4,
            "line 14: \"POLYGONS all\" does not say how much there is");
        row("VTK, no number", "vtk", vtk + "POLYGONS 1 4\n3 0 1 x\n", 4,
            "line 15: polygon 0: \"x\" is no number");
    }

    static void refusedVrml()
    {
        const QByteArray start = "#VRML V2.0 utf8\nShape { geometry IndexedFaceSet { coord "
                                 "Coordinate { point [0 0 0, 1 0 0, 0 1 0] }\ncoordIndex [";
        row("VRML, other", "wrl", "VRML\n", 4, "not a VRML file as text");
        row("VRML, moved", "wrl",
            "#VRML V2.0 utf8\nTransform {\n translation 1 0 0 children [] }\n", 6,
            "line 3: translation of VRML is not read");
        row("VRML, solid", "wrl", "#VRML V2.0 utf8\nShape { geometry Sphere { radius 1 } }\n", 6,
            "line 2: Sphere of VRML is not read");
        row("VRML, used again", "wrl", start + "0 1 2 -1] } }\nGroup { children [ USE a ] }\n", 6,
            "line 4: USE of VRML is not read");
        row("VRML, nothing", "wrl", "#VRML V1.0 ascii\nSeparator { }\n", 6,
            "holds no IndexedFaceSet");
        row("VRML, points without brackets", "wrl",
            "#VRML V1.0 ascii\nCoordinate3 { point 1 2 3 }\n", 4, "line 2: point needs brackets");
        row("VRML, cut off in brackets", "wrl", start + "0 1", 4,
            "the brackets of coordIndex are not closed");
        row("VRML, cut off between braces", "wrl", start + "0 1 2 -1]", 4,
            "the brace of line 2 is not closed");
        row("VRML, no such point", "wrl", start + "0 1 3 -1] } }\n", 4,
            "line 2: IndexedFaceSet: there is no vertex 3");
        row("VRML, no number", "wrl", start + "0 1 a -1] } }\n", 4,
            "line 3: \"a\" is no position of a point");
        row("VRML, not finite", "wrl", QByteArray(start).replace("0 1 0]", "0 inf 0]"), 4,
            "line 2: \"inf\" is no coordinate");
    }

    ToolRun import(const QString& suffix, const QByteArray& content) const
    {
        return importContent("case." + suffix, content);
    }
};

QTEST_APPLESS_MAIN(TestImportPolygons)
#include "tst_ImportPolygons.moc"
