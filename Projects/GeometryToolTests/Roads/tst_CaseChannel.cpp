#include "CaseTest.h"

using Ovra::Geo::AttributeType;
using Ovra::Geo::Vector;

/// Two streams with a thin plate between them that is a shell, a block that is meshed by extrusion
/// and does not match, and periodic sides that do not match either.
class TestCaseChannel : public CaseTest
{
    Q_OBJECT

public:
    TestCaseChannel()
        : CaseTest(QStringLiteral("channel"))
    {
        facts_.volumes = {{"block", 0.025 * 0.020 * 0.008}}; // the built-in kernel does not measure
        facts_.wedges = {"plate", "block"};
    }

private slots:
    void tiesTheVerticesAcrossThePlate()
    {
        for (PreparedCase* each : {&imported(), &prepared()}) {
            auto* const plate = each->named(3, "plate");
            QCOMPARE(plate->attributes().value(AttributeType::IsShell, QVariant()), QVariant(true));
            QCOMPARE(PreparedCase::intOf(plate, AttributeType::OriginalShellFace),
                     each->named(2, "plate_below")->id());
            QCOMPARE(each->having(2, AttributeType::NewShellFace).size(), std::size_t(1));
            QCOMPARE(each->shellFaults(Vector(0, 0, 0.001), 1e-12), QString());
        }
    }

    void hasQuadrilateralsAwayFromTetrahedra()
    {
        int count = 0;
        for (auto* face : imported().meshEntities(2)) {
            if (face->adjacencyCount(0) != 4) {
                continue;
            }
            ++count;
            QCOMPARE(face->adjacencyCount(3), 1);
            QCOMPARE(face->adjacencyAt(3, 0)->adjacencyCount(0), 6);
        }
        QVERIFY(count > 0);
    }

    void hasSidesThatDoNotMatch()
    {
        for (const char* part : {"lower", "plate", "upper"}) {
            auto* const first = imported().named(2, QLatin1String(part) + "_first");
            auto* const second = imported().named(2, QLatin1String(part) + "_second");
            QVERIFY(first->childCount() < second->childCount());
            QVERIFY((first->meshNormal() - Vector(0, -1, 0)).length() < 1e-9);
            QVERIFY((second->meshNormal() - Vector(0, 1, 0)).length() < 1e-9);
        }
    }

    void hasABlockThatDoesNotMatch()
    {
        for (const char* side : {"top", "west", "east", "south", "north"}) {
            auto* const face = imported().named(2, QLatin1String("block_") + side);
            auto* const around = imported().named(2, QLatin1String("around_") + side);
            QCOMPARE(PreparedCase::intOf(face, AttributeType::ExtrudedFace), around->id());
            QVERIFY(PreparedCase::places(face) != PreparedCase::places(around));
            QVERIFY((face->meshNormal() + around->meshNormal()).length() < 1e-9);
        }
    }

    void preparesWedgesAsTheyAre()
    {
        const QString name = importedName() + QStringLiteral("-wedges");
        const ToolRun run = runTool({"prepare", importedName(), "-o", name, "--split-fluid-solid",
                                     "--renumber", "--periodic", "--extruded"});
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        PreparedCase wedges(name);
        QCOMPARE(wedges.volumeFaults(imported()), QString());
        QCOMPARE(wedges.meshFaults(), QString());
        QCOMPARE(wedges.splitFaults(2), QString());
        QCOMPARE(wedges.periodicFaults(across, back, tolerance), QString());
        QCOMPARE(wedges.extrudedFaults(extrusionTolerance), QString());
        QCOMPARE(wedges.mesh()->count(3), imported().mesh()->count(3));
    }

    void splitsThePlateFromBothStreams()
    {
        QCOMPARE(prepared().splitFaults(2), QString());
        QCOMPARE(PreparedCase::sharingFaults(prepared().named(3, "lower_stream"),
                                             prepared().named(3, "upper_stream")),
                 QString());
    }

    void leavesTetrahedraAlone()
    {
        for (auto* element : prepared().meshEntities(3)) {
            QCOMPARE(element->adjacencyCount(0), 4);
        }
        for (auto* face : prepared().meshEntities(2)) {
            QCOMPARE(face->adjacencyCount(0), 3);
        }
    }

    void tiesTheSidesByTheTranslation()
    {
        QCOMPARE(prepared().periodicFaults(across, back, tolerance), QString());
    }

    void tiesTheBlockToTheStream()
    {
        QCOMPARE(prepared().having(2, AttributeType::ExtrudedFace).size(), std::size_t(5));
        QCOMPARE(prepared().extrudedFaults(extrusionTolerance), QString());
    }

    void writesTheShell()
    {
        const QList<QByteArray> lines = sectionLines("shells");
        auto* const plate = prepared().named(3, "plate");
        auto* const below = prepared().named(2, "plate_below");
        const qsizetype elements = plate->childCount();
        QCOMPARE(lines.value(elements), QByteArray("-1"));
        QCOMPARE(lines.value(elements + 1), number(plate->id()) + " 3 " + number(below->id()));
        const auto nodes = static_cast<qsizetype>(PreparedCase::meshVertices(below).size());
        QCOMPARE(lines.value(elements + 3), number(below->id()) + ' ' +
                                                number(prepared().named(2, "plate_above")->id()) +
                                                ' ' + QByteArray::number(nodes));
        QCOMPARE(lines.size(), elements + 4 + nodes + 2);
    }

    /// Both streams see through the plate to one another.
    void joinsTheStreamsAcrossThePlate()
    {
        const QList<QByteArray> lines = sectionLines("surface-connectivity");
        for (const char* name : {"plate_below", "plate_above"}) {
            auto* const face = prepared().named(2, name);
            auto* const stream = face->adjacencyAt(3, 0);
            qsizetype line = 0;
            while (line < lines.size() &&
                   !lines.at(line).startsWith(number(face->id()) + ' ' + number(stream->id()))) {
                ++line;
            }
            line += 2 + (static_cast<qsizetype>(PreparedCase::meshVertices(face).size()) + 4) / 5;
            for (int i = 0; i < face->childCount(); ++i) {
                const QList<QByteArray> fields = lines.value(line + i).trimmed().split(' ');
                QCOMPARE(fields.size(), 8);
                auto* const near = prepared().mesh()->entity(3, fields.at(0).toInt());
                auto* const far = prepared().mesh()->entity(3, -fields.at(4).toInt());
                QVERIFY(near != nullptr && far != nullptr);
                QVERIFY(near->parent() == stream);
                QVERIFY(far->parent()->name().endsWith(QLatin1String("_stream")));
                QVERIFY(far->parent() != stream);
            }
        }
    }

    void writesTheTransform()
    {
        const QList<QByteArray> lines = sectionLines("periodic");
        QVERIFY(lines.size() >= 5);
        const QList<QByteArray> translation = lines.at(lines.size() - 5).split(' ');
        QVERIFY(qAbs(translation.value(0).toDouble()) < 1e-12);
        QVERIFY(qAbs(translation.value(1).toDouble() - width) < 1e-12);
        QVERIFY(qAbs(translation.value(2).toDouble()) < 1e-12);
    }

    void writesTheExtrusion()
    {
        std::set<PreparedCase::MeshEntity*> nodes;
        int sides = 0;
        for (auto* face : prepared().having(2, AttributeType::ExtrudedFace)) {
            auto* const partner = prepared().model()->entity(
                2, PreparedCase::intOf(face, AttributeType::ExtrudedFace));
            for (auto* each : {face, partner}) {
                nodes.merge(PreparedCase::meshVertices(each));
                sides += each->childCount();
            }
        }
        const QList<QByteArray> lines = sectionLines("extrusion");
        const auto count = static_cast<int>(nodes.size());
        QCOMPARE(lines.value(0).toInt(), count);
        QCOMPARE(lines.value(1 + count).toInt(), sides);
        QCOMPARE(lines.size(), 2 + count + sides + 1);
    }

private:
    static constexpr double width = 0.050;
    static constexpr double tolerance = 1e-8;                   // of sides 0.1 long
    static constexpr double extrusionTolerance = 0.01 * 0.0045; // of the size of an element

    static Vector across(const Vector& p) { return p + Vector(0, width, 0); }
    static Vector back(const Vector& p) { return p - Vector(0, width, 0); }
    static QByteArray number(int value) { return QByteArray::number(value); }
};

QTEST_APPLESS_MAIN(TestCaseChannel)
#include "moc_CaseTest.cpp"
#include "tst_CaseChannel.moc"
