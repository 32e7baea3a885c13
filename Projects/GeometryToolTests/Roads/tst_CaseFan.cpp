#include "CaseTest.h"

using Ovra::Geo::AttributeType;

/// A rotating device around a solid hub, and two devices without mesh of which one heats by its top
/// alone.
class TestCaseFan : public CaseTest
{
    Q_OBJECT

public:
    TestCaseFan()
        : CaseTest(QStringLiteral("fan"))
    {
        facts_.volumeTolerance = {{"hub", 0.05}, {"rotor", 0.05}, {"air", 0.005}};
        facts_.unmeshed = {"led_1", "led_2"};
    }

protected:
    int expectedEulerCharacteristic(Ovra::Geo::ModelEntity* region) const override
    {
        if (region->name() == QLatin1String("rotor")) {
            return 0; // a ring
        }
        return region->name() == QLatin1String("air") ? 4 : 2; // the walls, and the fan within
    }

private slots:
    void fillsTheDuct()
    {
        double sum = 0;
        for (auto* region : imported().entities(3)) {
            sum += ImportedCase::volume(region);
        }
        const double leds = 2 * 0.012 * 0.012 * 0.006;
        QVERIFY(qAbs(sum / (0.2 * 0.08 * 0.08 - leds) - 1) < 1e-9);
    }

    void namesTheHotFace()
    {
        auto* const led = imported().named(3, "led_1");
        QCOMPARE(led->attributes().value(AttributeType::HotFaces, QVariant()).toList(),
                 QVariantList{imported().named(2, "led_top")->id()});
    }

    void splitsFluidFromSolid()
    {
        // The hub from air (2 ends, 2 mantles) and from the rotor; one face of led_1, 5 of led_2.
        QCOMPARE(prepared().splitFaults(11), QString());
    }

    void splitsTheHeatingFaceAlone()
    {
        auto* const led = prepared().named(3, "led_1");
        int split = 0;
        for (int i = 0; i < led->adjacencyCount(2); ++i) {
            split += led->adjacencyAt(2, i)->attributes().contains(AttributeType::FluidFace);
        }
        QCOMPARE(split, 1);
        auto* const top = prepared().named(2, "led_top");
        QVERIFY(top->attributes().contains(AttributeType::SolidFace));
        QVERIFY(!led->isAdjacentTo(top));
    }

    void keepsTheSurfacesOfDevicesWithoutMesh()
    {
        for (const char* name : {"led_1", "led_2"}) {
            auto* const led = prepared().named(3, name);
            QCOMPARE(led->childCount(), 0);
            QCOMPARE(led->adjacencyCount(2), 6);
            for (int i = 0; i < 6; ++i) {
                QVERIFY(led->adjacencyAt(2, i)->childCount() > 0);
            }
        }
    }

    void doublesTheRotorTowardsTheAir() { QCOMPARE(prepared().peripheralFaults(3), QString()); }

    void partsRotorHubAndAir()
    {
        auto* const rotor = prepared().named(3, "rotor");
        auto* const hub = prepared().named(3, "hub");
        auto* const air = prepared().named(3, "air");
        QCOMPARE(PreparedCase::sharingFaults(rotor, hub), QString());
        QCOMPARE(PreparedCase::sharingFaults(rotor, air), QString());
        QCOMPARE(PreparedCase::sharingFaults(hub, air), QString());
    }

    void writesTheRotor()
    {
        const QList<QByteArray> lines = sectionLines("rotating");
        int faces = 0;
        std::set<PreparedCase::MeshEntity*> nodes;
        for (auto* face : prepared().having(2, AttributeType::StatorFace)) {
            faces += face->childCount();
            nodes.merge(PreparedCase::meshVertices(face));
        }
        const QByteArray rotor = QByteArray::number(prepared().named(3, "rotor")->id());
        const QByteArray count = QByteArray::number(faces);
        QCOMPARE(lines.value(0), "1 " + count + " " + count);
        QCOMPARE(lines.value(1), rotor + " 1");
        QCOMPARE(lines.value(2).toInt(), static_cast<int>(nodes.size()));
        QCOMPARE(lines.size(), 3 + lines.value(2).toInt() + 2 * (1 + faces) + 1);
    }
};

QTEST_APPLESS_MAIN(TestCaseFan)
#include "moc_CaseTest.cpp"
#include "tst_CaseFan.moc"
