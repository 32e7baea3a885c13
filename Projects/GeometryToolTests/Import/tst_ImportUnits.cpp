#include "GmshFixture.h"
#include "ImportChecks.h"
#include "InfoPage.h"
#include "ModelEdge.h"
#include "ModelFace.h"
#include "ModelRegion.h"
#include "ModelVertex.h"
#include "TinyCase.h"
#include "ToolRun.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

/// Units that files state, and the scale of an import.
class TestImportUnits : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(directory_.isValid());
        const GmshFixture gmsh;
        gmsh::model::occ::addBox(1, 2, 3, 1, 1, 1);
        gmsh::model::occ::synchronize();
        gmsh::write(path("box.step").toStdString());
        step_ = contentOf(path("box.step"));
        IgesFile patches;
        patches.addBox(0, 0, 0, 1, 1, 1);
        iges_ = patches.content();
    }

    void tellsOfAFileAheadOfACaseOfItsName()
    {
        QVERIFY(writeContent(path("both.step"), step_));
        QVERIFY(TinyCase().save(path("both.step")));
        QVERIFY(runTool({"info", path("both.step")}).output.contains("is in millimetres"));
        QVERIFY(runTool({"info", path("both.step.geo_model")}).output.startsWith("Case "));
        QVERIFY(QFile::remove(path("both.step")));
        QVERIFY(runTool({"info", path("both.step")}).output.startsWith("Case "));
    }

    void tellsTheUnitOfStep_data()
    {
        QTest::addColumn<QByteArray>("unit");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("millimetre")
            << QByteArray("( LENGTH_UNIT() NAMED_UNIT(*) SI_UNIT(.MILLI.,.METRE.) )")
            << QByteArray("is in millimetres");
        QTest::newRow("metre") << QByteArray("(LENGTH_UNIT()\nNAMED_UNIT(*)SI_UNIT($,.METRE.))")
                               << QByteArray("is in metres");
        QTest::newRow("micrometre")
            << QByteArray("( NAMED_UNIT(*) SI_UNIT( .MICRO. , .METRE. ) LENGTH_UNIT() )")
            << QByteArray("is in micrometres");
        QTest::newRow("inch") << QByteArray(
                                     "( CONVERSION_BASED_UNIT('INCH',#9001) LENGTH_UNIT() "
                                     "NAMED_UNIT(#9002) );\n#9001 = LENGTH_MEASURE_WITH_UNIT("
                                     "LENGTH_MEASURE(25.4),#9003);\n#9002 = DIMENSIONAL_EXPONENTS("
                                     "1.,0.,0.,0.,0.,0.,0.);\n#9003 = ( LENGTH_UNIT() "
                                     "NAMED_UNIT(*) SI_UNIT(.MILLI.,.METRE.) )")
                              << QByteArray("is in inches");
    }

    void tellsTheUnitOfStep()
    {
        QFETCH(QByteArray, unit);
        QFETCH(QByteArray, text);
        static const QByteArray usual = "( LENGTH_UNIT() NAMED_UNIT(*) SI_UNIT(.MILLI.,.METRE.) )";
        QVERIFY(step_.contains(usual));
        QVERIFY(writeContent(path("part.step"), QByteArray(step_).replace(usual, unit)));
        const ToolRun run = runTool({"info", path("part.step")});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.output, path("part.step").toUtf8() + ' ' + text +
                                 "; as a case it is in millimetres (in metres with import --scale "
                                 "0.001)\n");
    }

    void tellsTheUnitOfIges_data()
    {
        QTest::addColumn<QByteArray>("unit");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("2") << QByteArray("2,2HMM") << QByteArray("is in millimetres");
        QTest::newRow("1") << QByteArray("1,2HIN") << QByteArray("is in inches");
        QTest::newRow("6") << QByteArray("6,1HM ") << QByteArray("is in metres");
        QTest::newRow("3, by name") << QByteArray("3,2HCM") << QByteArray("is in centimetres");
        QTest::newRow("none") << QByteArray(",     ") << QByteArray("is in inches");
        QTest::newRow("unknown") << QByteArray("17,1HX")
                                 << QByteArray(
                                        "states no unit of length, so that millimetres are taken");
    }

    void tellsTheUnitOfIges()
    {
        QFETCH(QByteArray, unit);
        QFETCH(QByteArray, text);
        QVERIFY(iges_.contains("2,2HMM"));
        QVERIFY(writeContent(path("part.igs"), QByteArray(iges_).replace("2,2HMM", unit)));
        const ToolRun run = runTool({"info", path("part.igs")});
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.output.startsWith(path("part.igs").toUtf8() + ' ' + text + "; as a case"),
                 run.output.constData());
    }

    void tellsTheUnitAsJson()
    {
        const ToolRun run = runTool({"info", path("box.step"), "--json"});
        QCOMPARE(run.exitCode, 0);
        const QJsonObject expected{
            {"file", path("box.step")}, {"unit", "millimetres"}, {"importedUnit", "millimetres"}};
        QCOMPARE(QJsonDocument::fromJson(run.output).object(), expected);
        QCOMPARE(InfoPage::keys("Of a STEP or IGES file:"), expected.keys());
    }

    /// As import says of them, too.
    void refusesWhatIsNoneOfTheFormat_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("words");
        for (const char* suffix : {"step", "stp"}) {
            const QByteArray whole = step_;
            row("a text", suffix, "This is no model.\n", 4,
                "not a STEP file: it does not begin with ISO-10303-21");
            row("the other format", suffix, iges_, 4, "not a STEP file");
            row("cut off", suffix, whole.left(whole.size() / 2), 4, "there is no END-ISO-10303-21");
            row("empty", suffix, "", 4, "the file is empty");
        }
        for (const char* suffix : {"iges", "igs"}) {
            row("a text", suffix, "This is no model.\n", 4,
                "not an IGES file: its first line has no S in column 73");
            row("the other format", suffix, step_, 4, "not an IGES file");
            row("cut off", suffix, iges_.left(iges_.size() / 2), 4,
                "there is no terminate section");
            row("empty", suffix, "", 4, "the file is empty");
        }
    }

    void refusesWhatIsNoneOfTheFormat()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, words);
        QVERIFY(writeContent(path(file), content));
        for (const QStringList& arguments :
             {QStringList{"info", path(file)}, QStringList{"info", path(file), "--json"},
              QStringList{"import", path(file), "-o", path("never")}}) {
            const ToolRun run = runTool(arguments);
            QCOMPARE(run.exitCode, exitCode);
            QCOMPARE(run.output, QByteArray());
            QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
            QVERIFY2(run.errors.contains(file.toUtf8() + ": "), run.errors.constData());
            QVERIFY2(run.errors.contains(words), run.errors.constData());
        }
    }

    void tellsOfInputsThatStateNoUnit_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("words");
        QTest::newRow("missing") << "nowhere.step" << 3 << QByteArray("nowhere.step: no such file");
        QTest::newRow("directory") << "folder.igs" << 3 << QByteArray("folder.igs: is a directory");
        QTest::newRow("BREP") << "box.brep" << 2
                              << QByteArray("box.brep: of inputs, only STEP and IGES files state a "
                                            "unit; import it, then ask for the case");
        QTest::newRow("no input") << "box.txt" << 3
                                  << QByteArray("box.txt.geo_model: no such file");
    }

    void tellsOfInputsThatStateNoUnit()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, words);
        QVERIFY(QDir().mkpath(path("folder.igs")));
        QVERIFY(writeContent(path("box.brep"), "DBRep_DrawableShape\n"));
        const ToolRun run = runTool({"info", path(name)});
        QTEST(run.exitCode, "exitCode");
        QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
        QVERIFY2(run.errors.contains(words), run.errors.constData());
    }

    void tellsOfACaseNamedAsAnInput()
    {
        QCOMPARE(runTool({"import", path("box.step"), "-o", path("case.brep")}).exitCode, 0);
        const ToolRun run = runTool({"info", path("case.brep")});
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.output.startsWith("Case "), run.output.constData());
    }

    void tellsTheUnitOfTheCase_data()
    {
        QTest::addColumn<QString>("scale");
        QTest::addColumn<QByteArray>("unit");
        QTest::newRow("1") << "1"
                           << QByteArray("millimetres (in metres with import --scale 0.001)");
        QTest::newRow("0.001") << "0.001" << QByteArray("metres");
        QTest::newRow("2.5") << "2.5" << QByteArray("millimetres times 2.5");
    }

    void tellsTheUnitOfTheCase()
    {
        QFETCH(QString, scale);
        QFETCH(QByteArray, unit);
        const ToolRun run =
            runTool({"import", path("box.step"), "-o", path("case"), "--scale", scale});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.output, path("box.step").toUtf8() + " is in millimetres; as a case it is in " +
                                 unit + '\n');
    }

    /// Mesh sizes are those of the input: the mesh stays the same one.
    void scalesAllThatFollowsFromPlaces()
    {
        const QStringList common{"import", path("box.step"), "--mesh-size", "0.5", "-o"};
        QCOMPARE(runTool(common + QStringList{path("one")}).exitCode, 0);
        QCOMPARE(runTool(common + QStringList{path("half"), "--scale", "0.5"}).exitCode, 0);
        ImportedCase one(path("one"));
        ImportedCase half(path("half"));
        QCOMPARE(half.meshCounts(), one.meshCounts());
        QCOMPARE(half.faults(), QString());
        const auto nodes = one.meshEntities(0);
        const auto halfNodes = half.meshEntities(0);
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            QCOMPARE(halfNodes[i]->centroid(), 0.5 * nodes[i]->centroid());
        }
        QCOMPARE(half.model()->boundingBox().maximum(), 0.5 * one.model()->boundingBox().maximum());
        for (int dimension = 0; dimension <= 3; ++dimension) {
            const auto entities = one.entities(dimension);
            const auto halves = half.entities(dimension);
            QCOMPARE(halves.size(), entities.size());
            for (std::size_t i = 0; i < entities.size(); ++i) {
                QCOMPARE(halves[i]->centroid(), 0.5 * entities[i]->centroid());
                QCOMPARE(halves[i]->normal(), entities[i]->normal());
                QCOMPARE(measureOf(halves[i]), std::pow(0.5, dimension) * measureOf(entities[i]));
            }
        }
    }

    void refusesScales_data()
    {
        QTest::addColumn<QString>("scale");
        QTest::addColumn<int>("exitCode");
        for (const char* scale : {"0", "-1", "nan", "inf", "mm"}) {
            QTest::newRow(scale) << scale << 2;
        }
        QTest::newRow("1e308") << "1e308" << 6;
    }

    void refusesScales()
    {
        QFETCH(QString, scale);
        const ToolRun run =
            runTool({"import", path("box.step"), "-o", path("never"), "--scale=" + scale});
        QTEST(run.exitCode, "exitCode");
        QVERIFY2(isOneErrorLine(run.errors), run.errors.constData());
        QVERIFY(!QFile::exists(path("never.geo_mesh")));
    }

private:
    static void row(const char* name, const char* suffix, const QByteArray& content, int exitCode,
                    const char* words)
    {
        QTest::addRow("%s, %s", suffix, name)
            << QStringLiteral("part.") + suffix << content << exitCode << QByteArray(words);
    }

    QString path(const QString& name) const { return directory_.filePath(name); }

    static double measureOf(Ovra::Geo::ModelEntity* entity)
    {
        using namespace Ovra::Geo;
        if (const auto* edge = dynamic_cast<ModelEdge*>(entity)) {
            return edge->length();
        }
        if (const auto* face = dynamic_cast<ModelFace*>(entity)) {
            return face->area();
        }
        const auto* region = dynamic_cast<ModelRegion*>(entity);
        return region == nullptr ? 0 : region->volume();
    }

    QTemporaryDir directory_;
    QByteArray step_;
    QByteArray iges_;
};

QTEST_APPLESS_MAIN(TestImportUnits)
#include "tst_ImportUnits.moc"
