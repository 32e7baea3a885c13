#include "ImportChecks.h"
#include "ModelEdge.h"
#include "ModelFace.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

/// Mesh faces on the outside look outwards, whatever the sense that the input gives them.
class TestImportOrientation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(directory_.isValid()); }

    void turnsFacesOutwards_data()
    {
        QTest::addColumn<QByteArray>("reversed");
        QTest::addColumn<QByteArray>("recombined");
        QTest::newRow("none") << QByteArray() << QByteArray();
        QTest::newRow("one") << QByteArray("ReverseMesh Surface{2};") << QByteArray();
        QTest::newRow("all") << QByteArray("ReverseMesh Surface{1:6};") << QByteArray();
        QTest::newRow("quadrilaterals")
            << QByteArray("ReverseMesh Surface{1:6};") << QByteArray("Recombine Surface{1:6};");
    }

    void turnsFacesOutwards()
    {
        QFETCH(QByteArray, reversed);
        QFETCH(QByteArray, recombined);
        const auto box = imported("SetFactory(\"OpenCASCADE\"); Box(1) = {0, 0, 0, 1, 1, 1};"
                                  "Transfinite Curve{1:12} = 4; Transfinite Surface{1:6};"
                                  "Transfinite Volume{1};" +
                                  recombined + reversed);
        QCOMPARE(box->faults(), QString());
        const Ovra::Geo::Vector middle(0.5, 0.5, 0.5);
        for (auto* face : box->entities(2)) {
            const Ovra::Geo::Vector outward = 2.0 * (face->centroid() - middle);
            QVERIFY(face->childCount() >= 9);
            for (auto* child : ImportedCase::children(face)) {
                QVERIFY((child->normal() - outward).length() < 1e-9);
            }
            QVERIFY((face->normal() - outward).length() < 1e-9);
        }
    }

    void leavesFacesBetweenRegionsAsTheyAre()
    {
        const QByteArray script = "SetFactory(\"OpenCASCADE\"); Box(1) = {0, 0, 0, 1, 1, 1};"
                                  "Box(2) = {1, 0, 0, 1, 1, 1};"
                                  "BooleanFragments{ Volume{1}; Delete; }{ Volume{2}; Delete; }"
                                  "between() = Surface In BoundingBox {0.9, -1, -1, 1.1, 2, 2};"
                                  "Mesh.MeshSizeMax = 0.5;";
        const auto plain = imported(script);
        const auto reversed = imported(script + "ReverseMesh Surface{between()};");
        const Ovra::Geo::Vector normal = normalBetween(*plain);
        QVERIFY(qAbs(qAbs(normal.x()) - 1.0) < 1e-9);
        QVERIFY((normal + normalBetween(*reversed)).length() < 1e-9);
    }

    void turnsEdgesOfPlanarModelsOutwards_data()
    {
        QTest::addColumn<QByteArray>("reversed");
        QTest::newRow("none") << QByteArray();
        QTest::newRow("some") << QByteArray("ReverseMesh Curve{1, 3};");
        QTest::newRow("all") << QByteArray("ReverseMesh Curve{1:4}; ReverseMesh Surface{1};");
    }

    void turnsEdgesOfPlanarModelsOutwards()
    {
        QFETCH(QByteArray, reversed);
        const auto square = imported("SetFactory(\"OpenCASCADE\"); Rectangle(1) = {0, 0, 0, 1, 1};"
                                     "Mesh.MeshSizeMax = 0.3;" +
                                     reversed);
        const Ovra::Geo::Vector middle(0.5, 0.5, 0);
        for (auto* edge : square->entities(1)) {
            const Ovra::Geo::Vector outward = 2.0 * (edge->centroid() - middle);
            QVERIFY((edge->normal() - outward).length() < 1e-9);
            QVERIFY((edge->meshNormal() - outward).length() < 1e-9);
        }
    }

private:
    std::unique_ptr<ImportedCase> imported(const QByteArray& script)
    {
        const QString input = directory_.filePath("case.geo");
        const QString name = directory_.filePath("case");
        writeContent(input, script + '\n');
        const ToolRun run = runTool({"import", input, "-o", name});
        if (run.exitCode != 0) {
            qWarning("%s", run.errors.constData());
        }
        return std::make_unique<ImportedCase>(name);
    }

    static Ovra::Geo::Vector normalBetween(ImportedCase& boxes)
    {
        for (auto* face : boxes.entities(2)) {
            if (face->adjacencyCount(3) == 2) {
                return face->meshNormal();
            }
        }
        return Ovra::Geo::Vector();
    }

    QTemporaryDir directory_;
};

QTEST_APPLESS_MAIN(TestImportOrientation)
#include "tst_ImportOrientation.moc"
