#include "ModelEdge.h"
#include "ModelFace.h"
#include "ModelRegion.h"
#include "PreparationCase.h"
#include "SolverInput.h"

#include <QTest>
#include <QTextStream>

using namespace Ovra::Geo;
using namespace PreparationCase;

namespace
{

using T = AttributeType;

/// Numbers that no mesh gives, so that they can only have been copied.
void measure(ModelEntity* entity)
{
    const double id = entity->id();
    const Box box(Vector(-id, 0, 0), Vector(id, 1, 2));
    if (auto* const edge = dynamic_cast<ModelEdge*>(entity)) {
        edge->setBoundingBox(box);
        edge->setLength(10 + id);
        edge->setCentroid(Vector(id, 5, 6));
        edge->setNormal(Vector(0, id, 0));
        edge->setPlanar(true);
    }
    if (auto* const face = dynamic_cast<ModelFace*>(entity)) {
        face->setBoundingBox(box);
        face->setArea(10 + id);
        face->setCentroid(Vector(id, 5, 6));
        face->setNormal(Vector(0, id, 0));
        face->setPlanar(true);
    }
    if (auto* const region = dynamic_cast<ModelRegion*>(entity)) {
        region->setBoundingBox(box);
        region->setVolume(10 + id);
        region->setCentroid(Vector(id, 5, 6));
    }
}

QString measuresOf(const ModelEntity* entity)
{
    double size = 0;
    if (const auto* const edge = dynamic_cast<const ModelEdge*>(entity)) {
        size = edge->length();
    } else if (const auto* const face = dynamic_cast<const ModelFace*>(entity)) {
        size = face->area();
    } else if (const auto* const region = dynamic_cast<const ModelRegion*>(entity)) {
        size = region->volume();
    }
    return QStringList{entity->boundingBox().toString(), entity->centroid().toString(),
                       entity->normal().toString(), QString::number(entity->isPlanar()),
                       QString::number(size)}
        .join(QLatin1Char('|'));
}

void nameAll(GridMesh& grid)
{
    for (const int dimension : {grid.faceDimension(), grid.regionDimension()}) {
        auto entities = grid.model()->orderedIterator(dimension);
        while (entities.hasNext()) {
            ModelEntity* const entity = entities.next();
            entity->setName(QStringLiteral("part %1").arg(entity->id()));
            measure(entity);
        }
    }
}

/// The entity that another one names in an attribute.
ModelEntity* linked(GridMesh& grid, const ModelEntity* entity, const AttributeType& link)
{
    return grid.model()->entity(entity->dimension(), entity->attributes().value(link, 0).toInt());
}

QString solverInput(GridMesh& grid)
{
    QString text;
    QTextStream stream(&text);
    Ovra::GeoTool::Progress progress;
    progress.setQuiet(true);
    Ovra::GeoTool::SolverInput().write(*grid.database(), stream, progress);
    return text;
}

GridSpec planar(GridSpec spec)
{
    spec.planar = true;
    return spec;
}

} // namespace

/// What the library adds to the model gets its name and measures from what it was made of.
class TestPreparedNames : public QObject
{
    Q_OBJECT

private slots:
    void doubledFacesFollowTheirOriginals_data()
    {
        QTest::addColumn<bool>("isPlanar");
        QTest::addColumn<QString>("other");
        QTest::addColumn<QString>("name");
        QTest::newRow("solid") << false << "solid"
                               << "hull:solid";
        QTest::newRow("stator") << false << "rotating_device"
                                << "hull:stator";
        QTest::newRow("solid, planar") << true << "solid"
                                       << "hull:solid";
        QTest::newRow("stator, planar") << true << "rotating_device"
                                        << "hull:stator";
    }

    void doubledFacesFollowTheirOriginals()
    {
        QFETCH(bool, isPlanar);
        QFETCH(QString, other);
        const GridSpec spec = plan({"12"}, {{1, "fluid"}, {2, other}});
        GridMesh grid(isPlanar ? planar(spec) : spec);
        nameAll(grid);
        ModelEntity* const hull = grid.face(1, 2);
        hull->setName(QStringLiteral("hull"));
        const QString before = measuresOf(hull);
        QCOMPARE(prepareAll(*grid.database()).refusal, QString());
        const ModelEntity* const copy =
            linked(grid, hull, other == "solid" ? T::SolidFace : T::StatorFace);
        QVERIFY(copy != nullptr && copy != hull);
        QTEST(copy->name(), "name");
        QCOMPARE(measuresOf(copy), before);
        QCOMPARE(hull->name(), QString("hull"));
        QCOMPARE(measuresOf(hull), before);
    }

    // A face between two moving regions is copied twice, with the region of the lower id first.
    void replicasFollowTheirOriginals()
    {
        for (const bool isPlanar : {false, true}) {
            const GridSpec spec = plan({"1111", "1231"}, {{1, "fluid"}, {2, "a"}, {3, "b"}});
            GridMesh grid(isPlanar ? planar(spec) : spec);
            nameAll(grid);
            grid.face(2, 3)->setName(QStringLiteral("between"));
            for (const int id : {2, 3}) {
                setAttribute(grid.region(id), T::MotionType, 1);
            }
            QCOMPARE(prepare(*grid.database(), {"replicate-moving"}).refusal, QString());
            for (const int id : {2, 3}) {
                const ModelEntity* const region = grid.region(id);
                const ModelEntity* const replica = linked(grid, region, T::NewMotionRegion);
                QCOMPARE(replica->name(), region->name() + ":replica");
                QCOMPARE(measuresOf(replica), measuresOf(region));
                const int dimension = grid.faceDimension();
                QCOMPARE(replica->adjacencyCount(dimension), region->adjacencyCount(dimension));
                for (int i = 0; i < region->adjacencyCount(dimension); ++i) {
                    const ModelEntity* const face = region->adjacencyAt(dimension, i);
                    const ModelEntity* const copy = replica->adjacencyAt(dimension, i);
                    const bool isSecond = face == grid.face(2, 3) && id == 3;
                    QCOMPARE(copy->name(), face->name() + (isSecond ? ":replica:2" : ":replica"));
                    QCOMPARE(measuresOf(copy), measuresOf(face));
                }
            }
        }
    }

    void namesStayUnique_data()
    {
        QTest::addColumn<QStringList>("names"); // of the face that is split and of two others
        QTest::addColumn<QString>("copy");
        QTest::newRow("free") << QStringList{"hull", "top", "bottom"} << "hull:solid";
        QTest::newRow("taken") << QStringList{"hull", "hull:solid", "bottom"} << "hull:solid:2";
        QTest::newRow("taken twice")
            << QStringList{"hull", "hull:solid", "hull:solid:2"} << "hull:solid:3";
        QTest::newRow("shared") << QStringList{"hull", "hull", "top"} << "hull:solid";
        QTest::newRow("shared and taken")
            << QStringList{"hull", "hull", "hull:solid"} << "hull:solid:2";
        QTest::newRow("nameless") << QStringList{"", "top", ""} << "face_%1:solid";
        QTest::newRow("nameless and taken")
            << QStringList{"", "face_%1:solid", ""} << "face_%1:solid:2";
        QTest::newRow("nameless, beside names alike")
            << QStringList{"", "face_%1", "face_%1"} << "face_%1:solid";
    }

    void namesStayUnique()
    {
        QFETCH(QStringList, names);
        GridMesh grid(plan({"12"}, {{1, "fluid"}, {2, "solid"}}));
        QFETCH(QString, copy);
        const QString id = QString::number(grid.face(1, 2)->id());
        grid.face(1, 2)->setName(names.at(0));
        grid.face(0, 1)->setName(QString(names.at(1)).replace("%1", id));
        grid.face(0, 2)->setName(QString(names.at(2)).replace("%1", id));
        QCOMPARE(prepareAll(*grid.database()).refusal, QString());
        QCOMPARE(linked(grid, grid.face(1, 2), T::SolidFace)->name(), copy.replace("%1", id));
    }

    void copiesOfNamelessOnesAreCalledByKindAndId()
    {
        for (const bool isPlanar : {false, true}) {
            const GridSpec spec = plan({"111", "131"}, {{1, "fluid"}, {3, "solid"}});
            GridMesh grid(isPlanar ? planar(spec) : spec);
            const QString faceKind = isPlanar ? "edge" : "face";
            const QString regionKind = isPlanar ? "face" : "region";
            for (auto all = grid.model()->orderedIterator(grid.regionDimension()); all.hasNext();) {
                all.next()->setName(QString());
            }
            ModelEntity* const moving = grid.region(3);
            ModelEntity* const hull = grid.face(1, 3);
            hull->setName(QString());
            setAttribute(moving, T::MotionType, 1);
            QCOMPARE(prepareAll(*grid.database()).refusal, QString());
            const ModelEntity* const replica = linked(grid, moving, T::NewMotionRegion);
            QCOMPARE(replica->name(), QString("%1_3:replica").arg(regionKind));
            QStringList names;
            for (int i = 0; i < replica->adjacencyCount(grid.faceDimension()); ++i) {
                names.append(replica->adjacencyAt(grid.faceDimension(), i)->name());
            }
            QVERIFY2(names.contains(QString("%1_%2:replica").arg(faceKind).arg(hull->id())),
                     qPrintable(names.join(' ')));
            QVERIFY(hull->name().isEmpty() && moving->name().isEmpty());
        }
    }

    // The names stand behind the numbers of a surface, and nowhere else.
    void namesOfCopiesOfNamelessOnesOnlyEndLines()
    {
        GridMesh grid(plan({"12"}, {{1, "fluid"}, {2, "solid"}}));
        grid.face(1, 2)->setName(QString());
        QCOMPARE(prepareAll(*grid.database()).refusal, QString());
        ModelEntity* const copy = linked(grid, grid.face(1, 2), T::SolidFace);
        const QString name = copy->name();
        QString text = solverInput(grid);
        copy->setName(QString());
        QCOMPARE(text.count(' ' + name + '\n'), 1);
        QCOMPARE(text.replace(' ' + name + '\n', " \n"), solverInput(grid));
    }

    void copiesOfFacesThatShareANameShareTheirs()
    {
        GridMesh grid(plan({"12", "13"}, {{1, "fluid"}, {2, "solid"}, {3, "solid"}}));
        for (const int solid : {2, 3}) {
            grid.face(1, solid)->setName(QStringLiteral("walls"));
        }
        QCOMPARE(prepareAll(*grid.database()).refusal, QString());
        for (const int solid : {2, 3}) {
            QCOMPARE(linked(grid, grid.face(1, solid), T::SolidFace)->name(),
                     QString("walls:solid"));
        }
    }

    // A face from which nothing is to be seen across a shell has copies that see as little.
    void doubledFacesLookAcrossShellsLikeTheirOriginals()
    {
        for (const bool isShell : {true, false}) {
            GridMesh grid(plan({"12"}, {{1, "fluid"}, {2, "solid"}}));
            if (isShell) {
                setAttribute(grid.face(1, 2), T::IsShell, true);
            }
            QCOMPARE(prepareAll(*grid.database()).refusal, QString());
            const ModelEntity* const copy = linked(grid, grid.face(1, 2), T::SolidFace);
            QCOMPARE(copy->attributes().contains(T::IsShell), isShell);
            QCOMPARE(copy->attributes().types().size(), isShell ? 2 : 1);
        }
    }
};

QTEST_APPLESS_MAIN(TestPreparedNames)
#include "tst_PreparedNames.moc"
