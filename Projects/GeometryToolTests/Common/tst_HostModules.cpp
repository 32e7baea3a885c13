#include "Programs.h"
#include "TinyCase.h"
#include "ToolRun.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

/// What large libraries are linked to stands in modules, so that no command waits for what it has no
/// need of.
class TestHostModules : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(directory_.isValid());
        QVERIFY(TinyCase().save(path("tiny")));
        QVERIFY(
            writeContent(path("box.geo"), "SetFactory(\"OpenCASCADE\");\nBox(1)={0,0,0,1,1,1};\n"));
        QVERIFY(QFile::copy(Places::tool(), path("ovrageo")));
    }

    void theHostIsLinkedToNoneOfThem()
    {
        if (Programs::isMissing("readelf")) {
            QSKIP("there is no readelf here (Debian's package binutils)");
        }
        QProcess process;
        process.start(Programs::find("readelf"), {"--dynamic", Places::tool()});
        QVERIFY(process.waitForFinished(-1));
        static const QRegularExpression needed(QStringLiteral("\\(NEEDED\\).*\\[(.*)\\.so"));
        static const QStringList known = {"libOvraGeometryDatabase",
                                          "libQt6Core",
                                          "libstdc++",
                                          "libm",
                                          "libgcc_s",
                                          "libc",
                                          "ld-linux-x86-64", // and of instrumented builds
                                          "libasan",
                                          "libubsan"};
        auto lines = needed.globalMatch(QString::fromLocal8Bit(process.readAllStandardOutput()));
        QVERIFY(lines.hasNext());
        while (lines.hasNext()) {
            const QString library = lines.next().captured(1);
            QVERIFY2(known.contains(library), library.toLocal8Bit().constData());
        }
    }

    void tellsOfAMissingModule_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("missing");
        QTest::addColumn<QByteArray>("library");
        QTest::addColumn<QByteArray>("option");

        const QString tiny = path("tiny");
        QTest::newRow("import") << QStringList{"import", path("box.geo"), "-o", path("new")}
                                << QByteArray(
                                       "ovrageo-import.so, which imports geometry and meshes")
                                << QByteArray("Gmsh") << QByteArray("OVRA_WITH_GMSH");
        QTest::newRow("export by Gmsh")
            << QStringList{"export", tiny, "-o", path("new.msh")}
            << QByteArray("ovrageo-gmsh.so, which writes the files of Gmsh") << QByteArray("Gmsh")
            << QByteArray("OVRA_WITH_GMSH");
        QTest::newRow("export to CGNS") << QStringList{"export", tiny, "-o", path("new.cgns")}
                                        << QByteArray("ovrageo-cgns.so, which writes CGNS files")
                                        << QByteArray("CGNS") << QByteArray("OVRA_WITH_CGNS");
        QTest::newRow("export by VTK")
            << QStringList{"export", tiny, "-o", path("new.vtu")}
            << QByteArray("ovrageo-vtk.so, which writes the files of VTK") << QByteArray("VTK")
            << QByteArray("OVRA_WITH_VTK");
        QTest::newRow("picture") << QStringList{"picture", tiny, "-o", path("new.png")}
                                 << QByteArray("ovrageo-picture.so, which draws pictures")
                                 << QByteArray("VTK") << QByteArray("OVRA_WITH_VTK");
    }

    void tellsOfAMissingModule()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, missing);
        QFETCH(QByteArray, library);
        QFETCH(QByteArray, option);
        QProcess process;
        process.start(path("ovrageo"), arguments);
        QVERIFY(process.waitForFinished(-1));
        QCOMPARE(process.exitCode(), 2);
        const QByteArray errors = process.readAllStandardError();
        const QByteArray end = "; build it with -D" + option + "=ON\n";
        const QByteArray without = "ovrageo: error: this ovrageo was built without " + library +
                                   ", which this needs" + end;
        if (errors != without) {
            QCOMPARE(errors, "ovrageo: error: this ovrageo has no " + missing + end);
        }
        QCOMPARE(process.readAllStandardOutput(), QByteArray());
        QVERIFY(QDir(directory_.path()).entryList({"new*"}).isEmpty());
    }

    /// It is loaded beside the reading of the case, and what is wrong is told all the same.
    void tellsOfABrokenModule()
    {
        QVERIFY(QDir(directory_.path()).mkdir("modules"));
        QVERIFY(writeContent(path("modules/ovrageo-vtk.so"), "no library"));
        QProcess process;
        process.start(path("ovrageo"), {"export", path("tiny"), "-o", path("new.vtu")});
        QVERIFY(process.waitForFinished(-1));
        QCOMPARE(process.exitCode(), 2);
        const QByteArray errors = process.readAllStandardError();
        if (!errors.contains("was built without VTK")) {
            QVERIFY2(errors.startsWith("ovrageo: error: cannot load "), errors.constData());
            QVERIFY2(errors.contains("modules/ovrageo-vtk.so: "), errors.constData());
        }
        QVERIFY(QDir(directory_.path()).entryList({"new*"}).isEmpty());
    }

private:
    QString path(const char* name) const { return directory_.filePath(QLatin1String(name)); }

    QTemporaryDir directory_;
};

QTEST_GUILESS_MAIN(TestHostModules)

#include "tst_HostModules.moc"
