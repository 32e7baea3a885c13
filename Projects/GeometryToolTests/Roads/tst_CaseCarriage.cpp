#include "CaseTest.h"

using Ovra::Geo::AttributeType;

/// Two moving blocks that touch one another, on a rail that stays, in a fluid.
class TestCaseCarriage : public CaseTest
{
    Q_OBJECT

public:
    TestCaseCarriage()
        : CaseTest(QStringLiteral("carriage"))
    {
    }

private slots:
    void hasBlocksThatTouch()
    {
        auto* const first = imported().named(3, "block_1");
        auto* const second = imported().named(3, "block_2");
        int touching = 0;
        for (int i = 0; i < first->adjacencyCount(2); ++i) {
            touching += second->isAdjacentTo(first->adjacencyAt(2, i));
        }
        QCOMPARE(touching, 1);
    }

    void replicatesTheBlocks()
    {
        QCOMPARE(prepared().replicaFaults(2), QString());
        QCOMPARE(prepared().model()->count(3), imported().model()->count(3) + 2);
    }

    void addsTheCopiesAlone()
    {
        int elements = 0;
        int faces = 0;
        for (const char* name : {"block_1", "block_2"}) {
            auto* const block = imported().named(3, name);
            elements += block->childCount();
            for (int i = 0; i < block->adjacencyCount(2); ++i) {
                faces += block->adjacencyAt(2, i)->childCount();
            }
        }
        for (auto* face : prepared().having(2, AttributeType::FluidFace)) {
            faces += face->childCount();
        }
        QCOMPARE(prepared().mesh()->count(3), imported().mesh()->count(3) + elements);
        QCOMPARE(prepared().mesh()->count(2), imported().mesh()->count(2) + faces);
        QCOMPARE(prepared().mesh()->count(1), imported().mesh()->count(1));
    }

    void turnsTheOldBlocksIntoFluid()
    {
        auto* const fluid = prepared().named(3, "fluid");
        for (const char* name : {"block_1", "block_2"}) {
            auto* const block = prepared().named(3, name);
            QCOMPARE(material(block), QStringLiteral("fluid"));
            QCOMPARE(PreparedCase::intOf(block, AttributeType::MaterialId), 1);
            QCOMPARE(PreparedCase::intOf(block, AttributeType::FluidRegion), fluid->id());
            auto* const copy = replicaOf(block);
            QCOMPARE(material(copy), QStringLiteral("solid"));
            QCOMPARE(PreparedCase::intOf(copy, AttributeType::MaterialId),
                     PreparedCase::intOf(imported().named(3, name), AttributeType::MaterialId));
        }
    }

    void splitsTheRailFromAllThatIsFluidNow()
    {
        QCOMPARE(prepared().splitFaults(8), QString()); // 6 towards the fluid, 2 under the blocks
        for (const char* name : {"fluid", "block_1", "block_2"}) {
            QCOMPARE(
                PreparedCase::sharingFaults(prepared().named(3, "rail"), prepared().named(3, name)),
                QString());
        }
    }

    void leavesTheFluidWhole()
    {
        // What stands still hangs together: the old blocks share their vertices with the fluid.
        auto* const fluid = prepared().named(3, "fluid");
        for (const char* name : {"block_1", "block_2"}) {
            QVERIFY(!PreparedCase::sharingFaults(fluid, prepared().named(3, name)).isEmpty());
        }
    }

    void copiesSharedVerticesTwice()
    {
        std::map<int, int> copies;
        for (auto* vertex : prepared().meshEntities(0)) {
            const int original = PreparedCase::intOf(vertex, AttributeType::OriginalMotionVertex);
            if (original != 0) {
                ++copies[original];
            }
        }
        const auto first = PreparedCase::meshVertices(prepared().named(3, "block_1"));
        const auto second = PreparedCase::meshVertices(prepared().named(3, "block_2"));
        int shared = 0;
        for (const auto& [original, count] : copies) {
            auto* const vertex = prepared().mesh()->entity(0, original);
            const int expected =
                static_cast<int>(first.count(vertex)) + static_cast<int>(second.count(vertex));
            QCOMPARE(count, expected);
            shared += expected == 2;
        }
        QVERIFY(shared > 0);
    }

    void writesEachElementAndNodeWithItsCopy()
    {
        const QList<QByteArray> lines = sectionLines("moving");
        QCOMPARE(lines.value(0), QByteArray("2"));
        QCOMPARE(QSet<QByteArray>({lines.value(1), lines.value(2)}), QSet<QByteArray>({"3", "4"}));
        const int elements = lines.value(3).toInt();
        QCOMPARE(elements, prepared().named(3, "block_1")->childCount() +
                               prepared().named(3, "block_2")->childCount());
        const int nodes = lines.value(4 + elements).toInt();
        QCOMPARE(lines.size(), 5 + elements + nodes + 1);
        std::set<int> copies;
        for (int i = 0; i < elements; ++i) {
            const auto [original, copy] = pairOf(3, lines.at(4 + i));
            QVERIFY(original != nullptr && copy != nullptr);
            QVERIFY(replicaOf(original->parent()) == copy->parent());
            QVERIFY(copies.insert(copy->id()).second);
        }
        for (int i = 0; i < nodes; ++i) {
            const auto [original, copy] = pairOf(0, lines.at(5 + elements + i));
            QVERIFY(original != nullptr && copy != nullptr && original != copy);
            QCOMPARE(copy->centroid(), original->centroid());
        }
    }

private:
    static QString material(Ovra::Geo::ModelEntity* region)
    {
        return region->attributes().value(AttributeType::MaterialType, QVariant()).toString();
    }

    Ovra::Geo::ModelEntity* replicaOf(Ovra::Geo::ModelEntity* block)
    {
        return prepared().model()->entity(
            3, PreparedCase::intOf(block, AttributeType::NewMotionRegion));
    }

    using MeshPair = std::pair<Ovra::Geo::MeshEntity*, Ovra::Geo::MeshEntity*>;

    MeshPair pairOf(int dimension, const QByteArray& line)
    {
        const QList<QByteArray> ids = line.split(' ');
        return {prepared().mesh()->entity(dimension, ids.value(0).toInt()),
                prepared().mesh()->entity(dimension, ids.value(1).toInt())};
    }
};

QTEST_APPLESS_MAIN(TestCaseCarriage)
#include "moc_CaseTest.cpp"
#include "tst_CaseCarriage.moc"
