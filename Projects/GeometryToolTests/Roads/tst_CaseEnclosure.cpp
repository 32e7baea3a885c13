#include "CaseTest.h"
#include "ModelFace.h"
#include "ModelRegion.h"

using Ovra::Geo::AttributeType;

/// An electronics enclosure, on a coarse mesh: chips and a heat sink in air, on a board that is
/// extruded from them.
class TestCaseEnclosure : public CaseTest
{
    Q_OBJECT

public:
    TestCaseEnclosure()
        : CaseTest(QStringLiteral("enclosure"))
    {
        facts_.meshSize = 0.012;
        facts_.wedges = {"board"};
    }

protected:
    /// The board has holes where the chips stand.
    int expectedEulerCharacteristic(Ovra::Geo::ModelEntity* region) const override
    {
        const bool perforated =
            region->name() == QLatin1String("board") && region->boundingBox().extent().x() > 0.15;
        return perforated ? 2 - 2 * 4 : 2;
    }

private slots:
    void hasTheNodesWhereGmshHasThem()
    {
        for (int d = 0; d <= 3; ++d) {
            for (auto* entity : imported().entities(d)) {
                std::vector<std::size_t> tags;
                std::vector<double> coordinates;
                std::vector<double> parameters;
                gmsh::model::mesh::getNodes(tags, coordinates, parameters, d, entity->id());
                for (std::size_t i = 0; i < tags.size(); ++i) {
                    auto* vertex = imported().mesh()->entity(0, static_cast<int>(tags[i]));
                    QVERIFY(vertex != nullptr);
                    QVERIFY(vertex->parent() == entity);
                    QCOMPARE(vertex->centroid(),
                             Ovra::Geo::Vector(coordinates[3 * i], coordinates[3 * i + 1],
                                               coordinates[3 * i + 2]));
                }
            }
        }
    }

    void storesTheVolumesOfTheKernel()
    {
        for (auto* region : imported().entities(3)) {
            double mass = 0;
            gmsh::model::occ::getMass(3, region->id(), mass);
            QVERIFY(qAbs(static_cast<Ovra::Geo::ModelRegion*>(region)->volume() / mass - 1.0) <
                    1e-12);
        }
    }

    void hasTheAreasOfTheKernel()
    {
        for (auto* face : imported().entities(2)) {
            double mass = 0;
            gmsh::model::occ::getMass(2, face->id(), mass);
            QVERIFY(qAbs(static_cast<Ovra::Geo::ModelFace*>(face)->area() / mass - 1.0) < 1e-12);
            QVERIFY(face->isPlanar());
        }
    }

    void hasNamesAndAttributes_data()
    {
        QTest::addColumn<int>("dimension");
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("material");
        QTest::newRow("air") << 3 << "air" << 1 << "fluid";
        QTest::newRow("board") << 3 << "board" << 5 << "solid";
        for (const char* chip : {"chip_1", "chip_2", "chip_3", "chip_4", "heat_sink"}) {
            QTest::newRow(chip) << 3 << QString::fromLatin1(chip) << 1 << "solid";
        }
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
        for (auto* entity : imported().entities(dimension)) {
            if (entity->name() != name) {
                continue;
            }
            ++found;
            QCOMPARE(entity->attributes().value(AttributeType::MaterialType, QVariant()).toString(),
                     material);
            QCOMPARE(entity->attributes().contains(AttributeType::MaterialId), dimension == 3);
        }
        QCOMPARE(found, count);
    }

    void namesTheHotFaces()
    {
        for (auto* region : imported().entities(3)) {
            if (region->name() != QLatin1String("chip_1")) {
                continue;
            }
            const QVariantList faces =
                region->attributes().value(AttributeType::HotFaces, QVariant()).toList();
            QCOMPARE(faces.size(), 1);
            auto* face = imported().model()->entity(2, faces.first().toInt());
            QVERIFY(face != nullptr);
            QCOMPARE(face->name(), QStringLiteral("thermal_joint"));
            QVERIFY(region->isAdjacentTo(face));
            QCOMPARE(face->adjacencyCount(3), 2);
        }
    }

    void givesTheSameBytesAgain()
    {
        const QString again = importedName() + QStringLiteral("-again");
        QCOMPARE(runTool(importArguments(again), QStringLiteral("4711")).exitCode, 0);
        for (const char* suffix : {".geo_model", ".geo_mesh"}) {
            QCOMPARE(contentOf(again + QLatin1String(suffix)),
                     contentOf(importedName() + QLatin1String(suffix)));
        }
    }

    void splitsTheAirFromAllSolids()
    {
        std::size_t count = 0;
        for (auto* face : imported().entities(2)) {
            int air = 0;
            for (int i = 0; i < face->adjacencyCount(3); ++i) {
                air += face->adjacencyAt(3, i)->name() == QLatin1String("air");
            }
            count += air == 1 && face->adjacencyCount(3) == 2;
        }
        QVERIFY(count > 0);
        QCOMPARE(prepared().splitFaults(count), QString());
        auto* const air = prepared().named(3, "air");
        for (auto* region : prepared().entities(3)) {
            if (region != air) {
                QCOMPARE(PreparedCase::sharingFaults(air, region), QString());
            }
        }
    }
};

QTEST_APPLESS_MAIN(TestCaseEnclosure)
#include "moc_CaseTest.cpp"
#include "tst_CaseEnclosure.moc"
