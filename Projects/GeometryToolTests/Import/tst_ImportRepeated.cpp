#include "GmshFixture.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

#include <utility>

/// The same import gives the same bytes, whatever the script asks of Gmsh.
class TestImportRepeated : public QObject
{
    Q_OBJECT

private slots:
    void givesTheSameBytes_data()
    {
        QTest::addColumn<QByteArray>("script");
        // Not HXT, boundary layers and packing: Gmsh goes by an order of addresses there.
        const QByteArray bodies =
            "SetFactory(\"OpenCASCADE\");\nBox(1) = {0, 0, 0, 1, 1, 1};\n"
            "Sphere(2) = {1, 0.5, 0.5, 0.4};\nBooleanFragments{Volume{1, 2}; Delete;}{}\n"
            "Mesh.MeshSizeMax = 0.25;\n";
        QTest::newRow("plain") << bodies;
        QTest::newRow("threads") << bodies + "General.NumThreads = 4;\n";
        QTest::newRow("all threads") << bodies + "General.NumThreads = 0;\n";
        QTest::newRow("threads of each dimension")
            << bodies + "Mesh.MaxNumThreads1D = 4;\nMesh.MaxNumThreads2D = 4;\n"
                        "Mesh.MaxNumThreads3D = 4;\n";
        QTest::newRow("random numbers")
            << bodies + "Mesh.RandomSeed = 7;\nMesh.RandomFactor = 1e-4;\n";
        QTest::newRow("periodic") << QByteArray(
            "SetFactory(\"OpenCASCADE\");\nBox(1) = {0, 0, 0, 1, 1, 1};\n"
            "Mesh.MeshSizeMax = 0.3;\n"
            "Periodic Surface{2} = {1} Translate{1, 0, 0};\n");
        QTest::newRow("extruded") << QByteArray(
            "SetFactory(\"OpenCASCADE\");\nRectangle(1) = {0, 0, 0, 1, 1};\n"
            "Mesh.MeshSizeMax = 0.2;\n"
            "Extrude{0, 0, 1}{Surface{1}; Layers{5}; Recombine;}\n");
    }

    void givesTheSameBytes()
    {
        QFETCH(QByteArray, script);
        QVERIFY(writeContent(path("in.geo"), script));
        checkRepeated("in.geo");
    }

    void givesTheSameFilling()
    {
        {
            const GmshFixture gmsh;
            gmsh::model::occ::addBox(0, 0, 0, 1, 1, 1);
            gmsh::model::occ::synchronize();
            gmsh::option::setNumber("Mesh.MeshSizeMax", 0.3);
            gmsh::model::mesh::generate(2);
            GmshFixture::write(path("skin.stl"));
        }
        checkRepeated("skin.stl");
    }

    void tellsOfAScriptThatMeshesItself()
    {
        QVERIFY(writeContent(path("self.geo"), "SetFactory(\"OpenCASCADE\");\n"
                                               "Box(1) = {0, 0, 0, 1, 1, 1};\n"
                                               "General.NumThreads = 2;\nMesh 3;\n"));
        const ToolRun run = runTool({"import", path("self.geo"), "-o", path("case")});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(QString::fromUtf8(run.errors),
                 QStringLiteral("ovrageo: warning: %1: meshes itself with several threads, so that "
                                "every import may give another mesh; leave out its Mesh command, "
                                "or the threads\n")
                     .arg(path("self.geo")));
    }

private:
    QString path(const QString& name) const { return directory_.filePath(name); }

    void checkRepeated(const QString& file)
    {
        QByteArray model;
        QByteArray mesh;
        int number = 0;
        for (const char* seed : {"", "1", "2", "77", "4711"}) {
            const QTemporaryDir folder(path(QStringLiteral("%1-XXXXXX").arg(++number)));
            const QString name = folder.filePath("case");
            const ToolRun run =
                runTool({"import", path(file), "-o", name}, QString::fromLatin1(seed));
            QCOMPARE(run.exitCode, 0);
            const bool isFirst = mesh.isEmpty();
            const QByteArray lastModel = std::exchange(model, contentOf(name + ".geo_model"));
            const QByteArray lastMesh = std::exchange(mesh, contentOf(name + ".geo_mesh"));
            QVERIFY(!mesh.isEmpty());
            QVERIFY(isFirst || (model == lastModel && mesh == lastMesh));
        }
    }

    QTemporaryDir directory_;
};

QTEST_APPLESS_MAIN(TestImportRepeated)
#include "tst_ImportRepeated.moc"
