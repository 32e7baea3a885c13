#include "ImportChecks.h"
#include "RefusalTest.h"

/// Nodes that are not there, or not anywhere, in what import reads.
class TestImportNodes : public RefusalTest
{
    Q_OBJECT

private slots:
    void init() { putWhatStays(); }

    void saysWhichLineNamesAnUnknownNode_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("node");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArray>("place");
        const QByteArray msh4 =
            "$MeshFormat\n4.1 0 8\n$EndMeshFormat\n$Nodes\n1 4 1 4\n3 1 0 4\n1\n"
            "2\n3\n4\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n$EndNodes\n$Elements\n"
            "1 1 1 1\n3 1 4 1\n657 1 2 3 657\n$EndElements\n";
        const QByteArray points = "1 0 0 0\n2 1 0 0\n3 0 1 0\n4 0 0 1\n";
        QTest::newRow("msh 4") << "in.msh" << QByteArray("657") << msh4
                               << QByteArray(", $Elements: an element");
        QTest::newRow("msh 2") << "in.msh" << QByteArray("657")
                               << "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n4\n" + points +
                                      "$EndNodes\n$Elements\n1\n657 4 2 1 1 1 2 3 657\n"
                                      "$EndElements\n"
                               << QByteArray(", $Elements: an element");
        QTest::newRow("msh 1") << "in.msh" << QByteArray("657")
                               << "$NOD\n4\n" + points +
                                      "$ENDNOD\n$ELM\n1\n1 4 1 1 4 1 2 3 657\n$ENDELM\n"
                               << QByteArray(", $ELM: an element");
        QTest::newRow("msh 1, other numbers are like the node's")
            << "in.msh" << QByteArray("657")
            << "$NOD\n4\n" + points +
                   "$ENDNOD\n$ELM\n2\n657 4 657 657 4 1 2 3 4\n2 4 1 1 4 1 2 3 657\n$ENDELM\n"
            << QByteArray(", $ELM: an element");
        QTest::newRow("msh 2, tags are like the node's number")
            << "in.msh" << QByteArray("657")
            << "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n4\n" + points +
                   "$EndNodes\n$Elements\n3\n1 4 2 657 657 1 2 3 4\n2 4 3 1 1 657 1 2 3 4\n"
                   "3 4 2 58 58 2 3 4 657\n$EndElements\n"
            << QByteArray(", $Elements: an element");
        QTest::newRow("msh 4, headers are like the node's number")
            << "in.msh" << QByteArray("657") << msh4OfManyElements()
            << QByteArray(", $Elements: an element");
        QTest::newRow("Nastran") << "in.bdf" << QByteArray("657")
                                 << QByteArray("BEGIN BULK\nGRID,1,,0.,0.,0.\nGRID,2,,1.,0.,0.\n"
                                               "GRID,3,,0.,1.,0.\nGRID,4,,0.,0.,1.\n"
                                               "CTETRA,1,1,1,2,3,657\nENDDATA\n")
                                 << QByteArray(": element 1");
        QTest::newRow("Abaqus") << "in.inp" << QByteArray("657")
                                << QByteArray("*NODE\n1, 0., 0., 0.\n2, 1., 0., 0.\n"
                                              "3, 0., 1., 0.\n*ELEMENT, TYPE=C3D4\n"
                                              "1, 1, 2, 3, 657\n")
                                << QByteArray(": element 1");
        QTest::newRow("universal")
            << "in.unv" << QByteArray("657")
            << QByteArray("    -1\n  2411\n1 1 1 11\n0 0 0\n2 1 1 11\n1 0 0\n3 1 1 11\n"
                          "0 1 0\n    -1\n    -1\n  2412\n657 91 1 1 7 3\n1 2 657\n    -1\n")
            << QByteArray(": element 657");
        QTest::newRow("VTK") << "in.vtk" << QByteArray("657")
                             << QByteArray("# vtk DataFile Version 2.0\nx\nASCII\n"
                                           "DATASET UNSTRUCTURED_GRID\nPOINTS 4 double\n0 0 0\n"
                                           "1 0 0\n0 1 0\n0 0 1\nCELLS 1 5\n4 0 1 2 657\n"
                                           "CELL_TYPES 1\n10\n")
                             << QByteArray(", CELLS: an element");
        QTest::newRow("VTK, counts are like the node's number")
            << "in.vtk" << QByteArray("4")
            << QByteArray("# vtk DataFile Version 2.0\nx\nASCII\n"
                          "DATASET UNSTRUCTURED_GRID\nPOINTS 4 double\n0 0 0\n"
                          "1 0 0\n0 1 0\n0 0 1\nCELLS 3 15\n4 0 1 2 3 4 0 1 2 3\n4 0 1\n2 4\n"
                          "CELL_TYPES 3\n10\n10\n10\n")
            << QByteArray(", CELLS: an element");
    }

    void saysWhichLineNamesAnUnknownNode()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, node);
        QFETCH(QByteArray, content);
        QFETCH(QByteArray, place);
        QVERIFY(writeContent(path(file), content));
        const qsizetype last = content.lastIndexOf(node + '\n');
        const QByteArray line = QByteArray::number(content.left(last).count('\n') + 1);
        checkRefused(import(path(file)), 4,
                     file.toUtf8() + ": line " + line + place + " names node " + node +
                         ", which the file does not have; the file is "
                         "damaged, or was put together from files whose nodes are numbered apart");
    }

    void refusesCoordinatesThatAreNoNumbers_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("words");
        const QByteArray node = ": node 4 has a coordinate that is no finite number\n";
        const QByteArray first = "1 0 0 0\n2 1 0 0\n3 0 1 0\n4 0 0 ";
        const QByteArray msh2 = "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n4\n" + first;
        const QByteArray volume = "\n$EndNodes\n$Elements\n1\n1 4 2 1 1 1 2 3 4\n$EndElements\n";
        for (const char* value : {"nan", "inf", "-inf", "1e400"}) {
            QTest::addRow("msh 2, %s", value)
                << "in.msh" << msh2 + value + volume << QStringList() << node;
            QTest::addRow("VTK, %s", value)
                << "in.vtk"
                << QByteArray("# vtk DataFile Version 2.0\nx\nASCII\n"
                              "DATASET UNSTRUCTURED_GRID\nPOINTS 4 double\n0 0 0\n"
                              "1 0 0\n0 1 0\n0 0 ") +
                       value + "\nCELLS 1 5\n4 0 1 2 3\nCELL_TYPES 1\n10\n"
                << QStringList()
                << QByteArray(": node 4, counted from 1, has a coordinate that is no finite "
                              "number\n");
        }
        QTest::newRow("msh 1") << "in.msh"
                               << "$NOD\n4\n" + first +
                                      "nan\n$ENDNOD\n$ELM\n1\n1 4 1 1 4 1 2 3 4\n$ENDELM\n"
                               << QStringList() << node;
        QTest::newRow("msh 4")
            << "in.msh"
            << QByteArray("$MeshFormat\n4.1 0 8\n$EndMeshFormat\n$Nodes\n1 4 1 4\n3 1 0 4\n1\n"
                          "2\n3\n4\n0 0 0\n1 0 0\n0 1 0\n0 nan 1\n$EndNodes\n$Elements\n"
                          "1 1 1 1\n3 1 4 1\n1 1 2 3 4\n$EndElements\n")
            << QStringList() << node;
        QTest::newRow("a surface that is to be filled")
            << "in.msh"
            << msh2 + "nan\n$EndNodes\n$Elements\n4\n1 2 2 1 1 1 3 2\n2 2 2 1 1 1 2 4\n"
                      "3 2 2 1 1 2 3 4\n4 2 2 1 1 3 1 4\n$EndElements\n"
            << QStringList{"--dimension", "3"} << node;
    }

    void refusesCoordinatesThatAreNoNumbers()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        QFETCH(QStringList, options);
        QFETCH(QByteArray, words);
        QVERIFY(writeContent(path(file), content));
        const ToolRun run = import(path(file), options);
        checkRefused(run, 4, file.toUtf8() + words);
        QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
    }

    // Measures beyond all numbers have no sign.
    void turnsNoVolumesThatAreNoNumbers()
    {
        QVERIFY(writeContent(path("big.msh"),
                             "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n4\n1 0 0 0\n"
                             "2 1e200 2e200 3e200\n3 3e200 1e200 2e200\n4 2e200 3e200 "
                             "1e200\n$EndNodes\n$Elements\n1\n"
                             "1 4 2 1 1 1 2 3 4\n$EndElements\n"));
        const ToolRun run = import(path("big.msh"));
        QVERIFY2(!run.errors.contains("negative"), run.errors.constData());
    }

private:
    static QByteArray msh4OfManyElements()
    {
        QByteArray text = "$MeshFormat\n4.1 0 8\n$EndMeshFormat\n$Nodes\n1 4 1 4\n3 1 0 4\n1\n"
                          "2\n3\n4\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n$EndNodes\n$Elements\n"
                          "1 657 1 657\n3 1 4 657\n";
        for (int number = 1; number <= 657; ++number) {
            text += QByteArray::number(number) + " 1 2 3 " + (number == 656 ? "657\n" : "4\n");
        }
        return text + "$EndElements\n";
    }
};

QTEST_APPLESS_MAIN(TestImportNodes)
#include "tst_ImportNodes.moc"
