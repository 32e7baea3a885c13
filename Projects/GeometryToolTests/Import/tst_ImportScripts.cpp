#include "InputFileCheck.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

using Ovra::GeoTool::InputFileCheck;

/// No file but a script may run anything, whatever is in it.
class TestImportScripts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(directory_.isValid()); }

    // What the commands of this test leave behind shows in a file that may run them.
    void seesWhatAScriptDoes()
    {
        for (const char* name : {"box.geo", "box.GEO", "box.geo_unrolled"}) {
            QVERIFY(writeContent(path(name), commands() + "SetFactory(\"OpenCASCADE\");\n"
                                                          "Rectangle(1) = {0, 0, 0, 1, 1};\n"));
            QCOMPARE(import(path(name)).exitCode, 0);
            QCOMPARE(traces(), (QStringList{"trace.msh", "trace.txt"}));
        }
    }

    // Hangs if it does.
    void doesNotWaitForWhatAScriptLeavesRunning()
    {
        const QByteArray stop = path("stop").toUtf8();
        QVERIFY(writeContent(path("starts.geo"), "NonBlockingSystemCall \"sh -c 'while [ ! -e " +
                                                     stop +
                                                     " ]; do sleep 0.1; done'\";\n"
                                                     "SetFactory(\"OpenCASCADE\");\n"
                                                     "Rectangle(1) = {0, 0, 0, 1, 1};\n"));
        QCOMPARE(import(path("starts.geo")).exitCode, 0);
        QVERIFY(writeContent(path("stop"), "now"));
    }

    void runsNothing_data()
    {
        QTest::addColumn<QString>("suffix");
        for (const QString& suffix : InputFileCheck::knownSuffixes()) {
            if (InputFileCheck::isScript("x." + suffix)) {
                continue;
            }
            const QString mixed = suffix.left(1).toUpper() + suffix.mid(1);
            for (const QString& written : {suffix, suffix.toUpper(), mixed}) {
                QTest::newRow(qPrintable(written)) << written;
            }
        }
    }

    // A bare script; one that looks like each format to whoever looks at its end or for its
    // keywords; one behind the first words of other formats.
    void runsNothing()
    {
        QFETCH(QString, suffix);
        const QString file = path("script." + suffix);
        for (const QByteArray& text :
             {commands(), commands() + marksOfAllFormats(),
              "solid x\n" + commands() + "endsolid x\n",
              "$Comments\n$EndComments\n" + commands() + marksOfAllFormats()}) {
            QVERIFY(writeContent(file, text));
            const ToolRun run = import(file);
            QCOMPARE(traces(), QStringList());
            QVERIFY2(run.exitCode == 4 || run.exitCode == 6, run.errors.constData());
            QVERIFY2(run.errors.contains("ovrageo: error: "), run.errors.constData());
        }
    }

    void readsMeshesUnderSuffixesInAnyCase_data()
    {
        QTest::addColumn<QString>("suffix");
        for (const char* suffix : {"msh", "MSH", "Msh"}) {
            QTest::newRow(suffix) << QString::fromLatin1(suffix);
        }
    }

    void readsMeshesUnderSuffixesInAnyCase()
    {
        QFETCH(QString, suffix);
        QVERIFY(writeContent(path("mesh." + suffix),
                             "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n4\n1 0 0 0\n2 1 0 0\n"
                             "3 0 1 0\n4 0 0 1\n$EndNodes\n$Elements\n1\n1 4 2 0 1 1 2 3 4\n"
                             "$EndElements\n"));
        const ToolRun run = import(path("mesh." + suffix));
        QVERIFY2(run.exitCode == 0, run.errors.constData());
    }

    // Gmsh runs a file whose name goes on in ".opt" beside what it reads.
    void runsNoOptionsBesideTheInput_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("text");
        const QByteArray nodes = "$Nodes\n1 4 1 4\n3 1 0 4\n1\n2\n3\n4\n0 0 0\n1 0 0\n0 1 0\n"
                                 "0 0 1\n$EndNodes\n$Elements\n1 1 1 1\n3 1 4 1\n1 1 2 3 4\n"
                                 "$EndElements\n";
        QTest::newRow("msh 4") << "mesh.msh"
                               << QByteArray("$MeshFormat\n4.1 0 8\n$EndMeshFormat\n$Entities\n"
                                             "0 0 0 1\n1 0 0 0 1 1 1 0 0\n$EndEntities\n") +
                                      nodes;
        QTest::newRow("vtk") << "mesh.vtk"
                             << QByteArray("# vtk DataFile Version 2.0\nx\nASCII\n"
                                           "DATASET UNSTRUCTURED_GRID\nPOINTS 4 double\n0 0 0\n"
                                           "1 0 0\n0 1 0\n0 0 1\nCELLS 1 5\n4 0 1 2 3\n"
                                           "CELL_TYPES 1\n10\n");
    }

    void runsNoOptionsBesideTheInput()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, text);
        QVERIFY(writeContent(path(name), text));
        QVERIFY(writeContent(path(name + ".opt"), commands()));
        const ToolRun run = import(path(name));
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        QCOMPARE(traces(), QStringList());
    }

    void readsNastranUnderSuffixesInAnyCase_data()
    {
        QTest::addColumn<QString>("suffix");
        for (const char* suffix : {"bdf", "BDF", "Bdf", "Nas"}) {
            QTest::newRow(suffix) << QString::fromLatin1(suffix);
        }
    }

    void readsNastranUnderSuffixesInAnyCase()
    {
        QFETCH(QString, suffix);
        QVERIFY(writeContent(path("mesh." + suffix),
                             "BEGIN BULK\nGRID,1,,0.,0.,0.\nGRID,2,,1.,0.,0.\nGRID,3,,0.,1.,0.\n"
                             "GRID,4,,0.,0.,1.\nCTETRA,1,1,1,2,3,4\nENDDATA\n"));
        const ToolRun run = import(path("mesh." + suffix));
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        QCOMPARE(run.errors, QByteArray());
    }

private:
    QString path(const QString& name) const { return directory_.filePath(name); }
    QString path(const char* name) const { return path(QString::fromLatin1(name)); }

    QByteArray commands() const
    {
        const QByteArray trace = path("trace").toUtf8();
        return "SystemCall \"touch " + trace + ".txt\";\nSave \"" + trace + ".msh\";\n";
    }

    /// \brief What tells whole files of each format, in a comment.
    static QByteArray marksOfAllFormats()
    {
        const QByteArray text =
            "/*\n$MeshFormat\n2.2 0 8\n$EndMeshFormat\nsolid x\n    -1\n    -1\nTShapes 0\n+1 0\n"
            "Vertices\n0\nTriangles\n0\nEnd\nCELL_TYPES 0\nBEGIN BULK\nENDDATA\nendsolid x\n"
            "END-ISO-10303-21;\n*/\n";
        return text + QByteArray("// +1 0").leftJustified(72) + "T      1\n";
    }

    /// \brief What commands left behind; gone afterwards.
    QStringList traces()
    {
        const QStringList found = QDir(directory_.path()).entryList({"trace*"}, QDir::Files);
        for (const QString& name : found) {
            QFile::remove(path(name));
        }
        return found;
    }

    ToolRun import(const QString& file) { return runTool({"import", file, "-o", path("case")}); }

    QTemporaryDir directory_;
};

QTEST_APPLESS_MAIN(TestImportScripts)
#include "tst_ImportScripts.moc"
