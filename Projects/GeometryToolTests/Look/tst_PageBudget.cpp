#include "AttributeType.h"
#include "CaseFiles.h"
#include "ClosedCase.h"
#include "EarlierCase.h"
#include "PageBudget.h"
#include "Progress.h"
#include "Report.h"
#include "ReportFile.h"
#include "TinyCase.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

using namespace Ovra::Geo;
using namespace Ovra::GeoTool;

namespace
{

constexpr qsizetype mostOfPage = 15'000'000;

/// Lists that a page can have beside that of regions and faces: materials, twins and names, of two
/// cases, findings, what has changed, what differs, and what has been doubled.
constexpr int lists = 10;

/// Faces of one triangle each, with names, links and materials, and regions.
void addMany(ClosedCase& closed, int count, const QString& name)
{
    for (int i = 0; i < count; ++i) {
        ModelFace* const face = closed.addFace();
        face->setName(name + QString::number(i));
        face->attributes().insert(AttributeType::SolidFace, face->id());
        closed.addElement(2, {1, 2, 1 + i % 3}, face);
        auto* const region = new ModelRegion;
        region->attributes().insert(AttributeType::MaterialType, QString::number(i));
        closed.model()->add(region);
    }
}

} // namespace

/// What a report's page may take, whatever the case.
class TestPageBudget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(directory_.isValid()); }

    /// Some words between the parts are counted nowhere.
    void keepsThePageUnderItsLimit()
    {
        const PageBudget budget;
        constexpr qsizetype words = 50'000;
        QVERIFY(budget.page + words < mostOfPage);
        ClosedCase closed;
        QVERIFY(closed.save(path("closed")));
        const qsizetype page = pageOf("closed", budget).size();
        QVERIFY(page + lists * budget.list + budget.surfaces < budget.page);
    }

    void holdsWhatItIsGiven_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("names") << "face ";
        QTest::newRow("names that grow") << QString(300, '<');
        QTest::newRow("a long name") << QString(300'000, 'x');
    }

    void holdsWhatItIsGiven()
    {
        QFETCH(QString, name);
        ClosedCase before;
        QVERIFY(before.save(path("before")));
        ClosedCase closed;
        addMany(closed, name.size() > 1000 ? 10 : 1500, name);
        QVERIFY(closed.save(path("many")));
        const qsizetype fixed = pageOf("before", PageBudget()).size();
        const PageBudget small{fixed + 400'000, 100'000, 20'000, 200};
        const ReportFile report(pageOf("many", small, path("before")));
        QVERIFY(report.isFilled());
        QVERIFY2(report.page().size() < small.page + 1000,
                 qPrintable(QString::number(report.page().size() - small.page)));
        QVERIFY(report.at("surfaces/patches").toArray().size() > 2);
    }

    void countsWhatItLeavesOut()
    {
        ClosedCase before;
        QVERIFY(before.save(path("before")));
        ClosedCase closed;
        addMany(closed, 1500, QStringLiteral("face "));
        QVERIFY(closed.save(path("many")));
        const qsizetype fixed = pageOf("before", PageBudget()).size();
        const ReportFile report(
            pageOf("many", {fixed + 400'000, 100'000, 20'000, 200}, path("before")));
        const auto checkList = [&report](const QString& list, int whole) {
            const int shown = static_cast<int>(report.at(list).toArray().size());
            QVERIFY2(shown > 0 && shown < whole, qPrintable(list));
            QCOMPARE(report.at(list + "More").toInt(), whole - shown);
        };
        checkList("info/materials", 1501);
        checkList("before/changed", 3000);
        int regions = 0;
        int faces = 0;
        for (const QJsonValue& entity : report.at("entities").toArray()) {
            ++(entity["dimension"].toInt() == 3 ? regions : faces);
        }
        QVERIFY(regions > 100 && regions < 1501);
        QVERIFY(faces > 100 && faces < 1502);
        int polygons = report.at("surfaces/polygonsLeftOut").toInt();
        QVERIFY(polygons > 0);
        for (const QJsonValue& patch : report.at("surfaces/patches").toArray()) {
            polygons += patch["triangles"].toInt() + patch["leftOut"].toInt();
        }
        QCOMPARE(polygons, 1504);
    }

    void regionsHaveWhatFacesLeave()
    {
        ClosedCase closed;
        for (int i = 0; i < 1500; ++i) {
            closed.model()->add(new ModelRegion);
        }
        QVERIFY(closed.save(path("regions")));
        ClosedCase both;
        addMany(both, 1500, QString());
        QVERIFY(both.save(path("both")));
        const qsizetype fixed = pageOf("closed", PageBudget()).size();
        const PageBudget small{fixed + 240'000, 100'000, 20'000, 200};
        const auto regionsOf = [&](const char* name) {
            int regions = 0;
            for (const QJsonValue& entity :
                 ReportFile(pageOf(name, small)).at("entities").toArray()) {
                regions += entity["dimension"].toInt() == 3 ? 1 : 0;
            }
            return regions;
        };
        QVERIFY(regionsOf("regions") < 1501);
        QVERIFY2(2 * regionsOf("regions") > 3 * regionsOf("both"),
                 qPrintable(QString::number(regionsOf("both"))));
    }

    void cutsTextsAndLists()
    {
        PageBudget budget;
        budget.text = 3;
        budget.list = 12;
        const QJsonObject object{
            {"text", "abcd"}, {"fits", "abc"}, {"list", QJsonArray{10, 20, 30}}};
        QCOMPARE(budget.limited(QJsonObject{{"in", object}}),
                 (QJsonObject{{"in", QJsonObject{{"text", QString("abc") + QChar(0x2026)},
                                                 {"fits", "abc"},
                                                 {"list", QJsonArray{10, 20}},
                                                 {"listMore", 1}}}}));
        QCOMPARE(PageBudget::scriptText(QJsonObject{{"a", "</script>"}}),
                 QByteArray("{\"a\":\"\\u003c/script>\"}"));
    }

private:
    QString path(const char* name) const { return directory_.filePath(QLatin1String(name)); }

    QByteArray pageOf(const char* name, const PageBudget& budget,
                      const QString& before = QString()) const
    {
        Progress progress;
        CaseFiles files(path(name));
        CaseDatabase database;
        files.load(database, progress);
        std::optional<QJsonObject> changes;
        if (!before.isEmpty()) {
            changes = EarlierCase(before, progress).changesTo(database);
        }
        return Report(budget).page(files, database, changes, progress);
    }

    QTemporaryDir directory_;
};

QTEST_GUILESS_MAIN(TestPageBudget)
#include "tst_PageBudget.moc"
