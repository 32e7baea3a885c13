#include "StartUpProbe.h"

#include <QTest>

namespace
{

const StartUpProbe ownProbe;

} // namespace

// Static objects may use the library while the program starts and while it ends: those of an
// executable, those of another shared library, and those of a program that has the library's
// objects in itself, whether they are linked before or after.
class TestStartUp : public QObject
{
    Q_OBJECT

private slots:
    void isReadyForStaticObjectsHere() { QCOMPARE(ownProbe.faults(), QStringList()); }

    void isReadyForStaticObjectsElsewhere() { QCOMPARE(faultsSeenElsewhere(), QStringList()); }

    void isAsGoodLater() { QCOMPARE(StartUpProbe().faults(), QStringList()); }
};

QTEST_APPLESS_MAIN(TestStartUp)
#include "tst_StartUp.moc"
