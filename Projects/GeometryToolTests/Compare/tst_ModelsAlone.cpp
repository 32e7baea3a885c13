#include "AttributeType.h"
#include "CaseComparison.h"
#include "CaseView.h"
#include "ClosedCase.h"
#include "DiffReport.h"

#include <QJsonArray>
#include <QTest>

using namespace Ovra::Geo;
using namespace Ovra::GeoTool;

/// Models are compared without a look at their meshes.
class TestModelsAlone : public QObject
{
    Q_OBJECT

private slots:
    void aViewOfTheModelHasNoMesh()
    {
        const ClosedCase closed;
        const CaseView whole(closed.database);
        const CaseView model(closed.database, CaseView::Part::Model);
        for (int dimension = 0; dimension < 4; ++dimension) {
            QCOMPARE(model.modelEntities(dimension), whole.modelEntities(dimension));
            QVERIFY(model.meshEntities(dimension).empty());
        }
        QCOMPARE(whole.meshEntities(3).size(), std::size_t(1));
    }

    /// As with a mesh that has been cleared.
    void theMeshesMakeNoDifference()
    {
        ClosedCase before;
        ClosedCase after;
        after.walls->setName(QStringLiteral("shell"));
        after.face->attributes().insert(AttributeType::SolidFace, 4);
        after.vertices[3]->setPoint(Vector(1, 2, 3));
        const QJsonArray found = DiffReport::differencesJson(
            CaseComparison::compareModels(before.database, after.database));
        QCOMPARE(found.size(), 2);
        after.mesh()->clear();
        QCOMPARE(DiffReport::differencesJson(
                     CaseComparison::compareModels(before.database, after.database)),
                 found);
    }
};

QTEST_GUILESS_MAIN(TestModelsAlone)
#include "tst_ModelsAlone.moc"
