#include "CaseTest.h"

#include <cmath>

using Ovra::Geo::AttributeType;
using Ovra::Geo::Vector;

/// One sector of a rotor: sides 40 degrees apart that do not match, in two pairs, solid and fluid.
class TestCaseSector : public CaseTest
{
    Q_OBJECT

public:
    TestCaseSector()
        : CaseTest(QStringLiteral("sector"))
    {
        facts_.volumeTolerance = {{"wheel", 0.01}, {"passage", 0.01}};
    }

private slots:
    void hasSidesThatDoNotMatch()
    {
        for (const char* part : {"ring", "passage"}) {
            auto* const first = imported().named(2, QLatin1String(part) + "_first");
            auto* const second = imported().named(2, QLatin1String(part) + "_second");
            QVERIFY(first->isPlanar() && second->isPlanar());
            QVERIFY(first->childCount() < second->childCount());
        }
    }

    void hasSidesThatAreTurnedOutwards()
    {
        for (const char* name : {"ring_first", "passage_first"}) {
            QVERIFY((imported().named(2, name)->meshNormal() - Vector(0, -1, 0)).length() < 1e-9);
        }
        const Vector outward(-std::sin(angle), std::cos(angle), 0);
        for (const char* name : {"ring_second", "passage_second"}) {
            QVERIFY((imported().named(2, name)->meshNormal() - outward).length() < 1e-9);
        }
    }

    void splitsFluidFromSolid()
    {
        QCOMPARE(prepared().splitFaults(6), QString()); // the blade's 5 faces and the hub
        QCOMPARE(PreparedCase::sharingFaults(prepared().named(3, "wheel"),
                                             prepared().named(3, "passage")),
                 QString());
    }

    void tiesTheSidesByTheRotation()
    {
        QCOMPARE(prepared().periodicFaults([](const Vector& p) { return turned(p, angle); },
                                           [](const Vector& p) { return turned(p, -angle); },
                                           tolerance),
                 QString());
    }

    void tiesVerticesThatDoNotMatchToFaces()
    {
        int ties[3] = {0, 0, 0};
        for (auto* face : prepared().having(2, AttributeType::PeriodicPairId)) {
            for (auto* vertex : PreparedCase::meshVertices(face)) {
                ++ties[PreparedCase::intOf(vertex, AttributeType::PeriodicEntityType)];
            }
        }
        QCOMPARE(ties[1], 0);
        QVERIFY(ties[0] > 0); // corners at the least
        QVERIFY(ties[2] > 10 * ties[0]);
    }

    void keepsPairsApart()
    {
        for (auto* face : prepared().having(2, AttributeType::PeriodicPairId)) {
            auto* const partner = prepared().model()->entity(
                2, PreparedCase::intOf(face, AttributeType::PeriodicFace));
            QCOMPARE(face->name().section('_', 0, 0), partner->name().section('_', 0, 0));
            QVERIFY(face->name() != partner->name());
        }
    }

    void writesTheTransform()
    {
        const QList<QByteArray> lines = sectionLines("periodic");
        QCOMPARE(lines.size(), lines.indexOf("0 0 0") + 5); // no translation, 3 lines, the end
        const QList<QByteArray> matrix = lines.at(lines.size() - 2).split(' ');
        QCOMPARE(matrix.size(), 9);
        const double expected[] = {
            std::cos(angle), -std::sin(angle), 0, std::sin(angle), std::cos(angle), 0, 0, 0, 1};
        for (qsizetype i = 0; i < 9; ++i) {
            QVERIFY(qAbs(matrix.at(i).toDouble() - expected[i]) < 1e-9);
        }
    }

private:
    static constexpr double angle = 40 * 3.14159265358979323846 / 180;
    static constexpr double tolerance = 1e-8; // of sides 0.03 wide

    static Vector turned(const Vector& p, double by)
    {
        return Vector(std::cos(by) * p.x() - std::sin(by) * p.y(),
                      std::sin(by) * p.x() + std::cos(by) * p.y(), p.z());
    }
};

QTEST_APPLESS_MAIN(TestCaseSector)
#include "moc_CaseTest.cpp"
#include "tst_CaseSector.moc"
