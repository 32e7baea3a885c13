#include "AttributeType.h"
#include "GmshFixture.h"
#include "ImportChecks.h"
#include "ModelFace.h"
#include "ModelRegion.h"
#include "ToolRun.h"

#include <QTemporaryDir>
#include <QTest>

using Ovra::Geo::AttributeType;

/// The case that goes with the tool, on a coarse mesh, against what Gmsh and its geometry kernel
/// say.
class TestImportEnclosure : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(directory_.isValid());
        const ToolRun run = runTool(
            {"import", input(), "-o", name(), "--mesh-size", QString::number(size), "--attributes",
             QStringLiteral(OVRA_CASES_DIRECTORY "/enclosure/enclosure.json")});
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.output, QByteArray());
        QCOMPARE(run.exitCode, 0);
        gmsh_ = std::make_unique<GmshFixture>();
        GmshFixture::openAndMesh(input(), size);
        case_ = std::make_unique<ImportedCase>(name());
        QVERIFY(case_->isOpen());
    }

    void cleanupTestCase()
    {
        case_.reset();
        gmsh_.reset();
    }

    void hasTheEntitiesOfGmsh()
    {
        for (int d = 0; d <= 3; ++d) {
            gmsh::vectorpair expected;
            gmsh::model::getEntities(expected, d);
            QCOMPARE(case_->model()->count(d), static_cast<int>(expected.size()));
            for (const auto& entity : expected) {
                auto* found = case_->model()->entity(d, entity.second);
                QVERIFY(found != nullptr);
                if (d > 0)
                    QCOMPARE(found->childCount(), GmshFixture::elementCount(d, entity.second));
            }
        }
    }

    void hasTheMeshOfGmsh()
    {
        QCOMPARE(case_->mesh()->count(0), GmshFixture::nodeCount());
        for (int d = 1; d <= 3; ++d)
            QCOMPARE(case_->mesh()->count(d), GmshFixture::elementCount(d));
    }

    void hasTheNodesWhereGmshHasThem()
    {
        for (int d = 0; d <= 3; ++d) {
            for (auto* entity : case_->entities(d)) {
                std::vector<std::size_t> tags;
                std::vector<double> coordinates;
                std::vector<double> parameters;
                gmsh::model::mesh::getNodes(tags, coordinates, parameters, d, entity->id());
                for (std::size_t i = 0; i < tags.size(); ++i) {
                    auto* vertex = case_->mesh()->entity(0, static_cast<int>(tags[i]));
                    QVERIFY(vertex != nullptr);
                    QVERIFY(vertex->parent() == entity);
                    QCOMPARE(vertex->centroid(),
                             Ovra::Geo::Vector(coordinates[3 * i], coordinates[3 * i + 1],
                                               coordinates[3 * i + 2]));
                }
            }
        }
    }

    void hasTheVolumesOfTheKernel()
    {
        for (auto* region : case_->entities(3)) {
            double mass = 0;
            gmsh::model::occ::getMass(3, region->id(), mass);
            QVERIFY(qAbs(ImportedCase::volume(region) / mass - 1.0) < 1e-9);
            QVERIFY(qAbs(static_cast<Ovra::Geo::ModelRegion*>(region)->volume() / mass - 1.0) <
                    1e-12);
        }
    }

    void hasTheAreasOfTheKernel()
    {
        for (auto* face : case_->entities(2)) {
            double mass = 0;
            gmsh::model::occ::getMass(2, face->id(), mass);
            QVERIFY(qAbs(static_cast<Ovra::Geo::ModelFace*>(face)->area() / mass - 1.0) < 1e-12);
            QVERIFY(face->isPlanar());
        }
    }

    void isSound() { QCOMPARE(case_->faults(), QString()); }

    /// Euler and Poincare: 2 less 2 for each hole through; the board has holes where chips stand.
    void hasBoundariesOfTheRightGenus()
    {
        for (auto* region : case_->entities(3)) {
            const bool perforated = region->name() == QLatin1String("board") &&
                                    region->boundingBox().extent().x() > 0.15;
            QCOMPARE(ImportedCase::eulerCharacteristic(region), perforated ? 2 - 2 * 4 : 2);
        }
    }

    void hasWedgesInTheBoardAndTetrahedraElsewhere()
    {
        int wedges = 0;
        for (auto* region : case_->entities(3)) {
            const int nodes = region->name() == QLatin1String("board") ? 6 : 4;
            for (auto* element : ImportedCase::children(region))
                QCOMPARE(element->adjacencyCount(0), nodes);
            wedges += nodes == 6 ? region->childCount() : 0;
        }
        QVERIFY(wedges > 0);
    }

    void hasNamesAndAttributes_data()
    {
        QTest::addColumn<int>("dimension");
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("material");
        QTest::newRow("air") << 3 << "air" << 1 << "fluid";
        QTest::newRow("board") << 3 << "board" << 5 << "solid";
        for (const char* chip : {"chip_1", "chip_2", "chip_3", "chip_4", "heat_sink"})
            QTest::newRow(chip) << 3 << QString::fromLatin1(chip) << 1 << "solid";
        QTest::newRow("inlet") << 2 << "inlet" << 1 << QString();
        QTest::newRow("fan") << 2 << "fan_opening" << 1 << QString();
        QTest::newRow("walls") << 2 << "walls" << 5 << QString();
    }

    void hasNamesAndAttributes()
    {
        QFETCH(int, dimension);
        QFETCH(QString, name);
        QFETCH(int, count);
        QFETCH(QString, material);
        int found = 0;
        for (auto* entity : case_->entities(dimension)) {
            if (entity->name() != name)
                continue;
            ++found;
            QCOMPARE(entity->attributes().value(AttributeType::MaterialType, QVariant()).toString(),
                     material);
            QCOMPARE(entity->attributes().contains(AttributeType::MaterialId), dimension == 3);
        }
        QCOMPARE(found, count);
    }

    void namesTheHotFaces()
    {
        for (auto* region : case_->entities(3)) {
            if (region->name() != QLatin1String("chip_1"))
                continue;
            const QVariantList faces =
                region->attributes().value(AttributeType::HotFaces, QVariant()).toList();
            QCOMPARE(faces.size(), 1);
            auto* face = case_->model()->entity(2, faces.first().toInt());
            QVERIFY(face != nullptr);
            QCOMPARE(face->name(), QStringLiteral("thermal_joint"));
            QVERIFY(region->isAdjacentTo(face));
            QCOMPARE(face->adjacencyCount(3), 2);
        }
    }

    void givesTheSameBytesAgain()
    {
        const QString again = directory_.filePath(QStringLiteral("again"));
        QCOMPARE(runTool({"import", input(), "-o", again, "--mesh-size", QString::number(size),
                          "--attributes",
                          QStringLiteral(OVRA_CASES_DIRECTORY "/enclosure/enclosure.json")},
                         QStringLiteral("4711"))
                     .exitCode,
                 0);
        for (const char* suffix : {".geo_model", ".geo_mesh"})
            QCOMPARE(contentOf(again + QLatin1String(suffix)),
                     contentOf(name() + QLatin1String(suffix)));
    }

private:
    static constexpr double size = 0.012;

    static QString input()
    {
        return QStringLiteral(OVRA_CASES_DIRECTORY "/enclosure/enclosure.geo");
    }
    QString name() const { return directory_.filePath(QStringLiteral("enclosure")); }

    QTemporaryDir directory_;
    std::unique_ptr<GmshFixture> gmsh_;
    std::unique_ptr<ImportedCase> case_;
};

QTEST_APPLESS_MAIN(TestImportEnclosure)
#include "tst_ImportEnclosure.moc"
