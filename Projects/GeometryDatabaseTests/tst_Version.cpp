#include "ValueForms.h"
#include "Version.h"

#include <limits>
#include <type_traits>

using namespace Ovra::Geo;
using namespace ValueForms;

static_assert(sizeof(Version) == 12);
static_assert(std::is_trivially_copyable_v<Version>);

class TestVersion : public QObject
{
    Q_OBJECT

private slots:
    void isZeroByDefault()
    {
        const Version version;
        QCOMPARE(version.major(), 0);
        QCOMPARE(version.minor(), 0);
        QCOMPARE(version.build(), 0);
    }

    void defaultsTrailingParts()
    {
        QCOMPARE(Version(14), Version(14, 0, 0));
        QCOMPARE(Version(14, 1), Version(14, 1, 0));
    }

    void keepsItsParts()
    {
        Version version(1, 2, 3);
        QCOMPARE(version.major(), 1);
        QCOMPARE(version.minor(), 2);
        QCOMPARE(version.build(), 3);
        version.setVersion(4, 5, 6);
        QCOMPARE(version, Version(4, 5, 6));
    }

    void isValidWithAnyPart()
    {
        QVERIFY(!Version().isValid());
        QVERIFY(Version(1, 0, 0).isValid());
        QVERIFY(Version(0, 1, 0).isValid());
        QVERIFY(Version(0, 0, 1).isValid());
        QVERIFY(Version(0, 0, -1).isValid());
    }

    void orders_data()
    {
        QTest::addColumn<Version>("a");
        QTest::addColumn<Version>("b");
        QTest::addColumn<int>("order");
        QTest::newRow("major first") << Version(14, 0, 0) << Version(13, 9, 9) << 1;
        QTest::newRow("then minor") << Version(1, 2, 0) << Version(1, 1, 9) << 1;
        QTest::newRow("then build") << Version(1, 1, 2) << Version(1, 1, 1) << 1;
        QTest::newRow("equal") << Version(1, 2, 3) << Version(1, 2, 3) << 0;
        QTest::newRow("signed") << Version(-1, 0, 0) << Version(0, 0, 0) << -1;
        QTest::newRow("extremes") << Version(std::numeric_limits<int>::min(), 0, 0)
                                  << Version(std::numeric_limits<int>::max(), 0, 0) << -1;
    }

    void orders()
    {
        QFETCH(Version, a);
        QFETCH(Version, b);
        QFETCH(int, order);
        QCOMPARE(a == b, order == 0);
        QCOMPARE(a != b, order != 0);
        QCOMPARE(a < b, order < 0);
        QCOMPARE(a <= b, order <= 0);
        QCOMPARE(a > b, order > 0);
        QCOMPARE(a >= b, order >= 0);
        QCOMPARE(b<a, order> 0);
    }

    void prints()
    {
        QCOMPARE(Version(14, 0, 123456).toString(), "14.0.123456");
        QCOMPARE(Version(-1, 2, -3).toString(), "-1.2.-3");
        QCOMPARE(text(Version(1, 2, 3)), "1.2.3");
    }

    void printsAlikeInAnyLocale()
    {
        const GermanLocale german;
        QCOMPARE(Version(14, 0, 123456).toString(), "14.0.123456");
        QCOMPARE(text(Version(14, 0, 123456)), "14.0.123456");
    }

    void streamsThreeIntegers()
    {
        const QByteArray bytes = QByteArray::fromHex("0000000e 00000102 ffffffff");
        QCOMPARE(binary(Version(14, 258, -1)), bytes);
        Version version;
        QCOMPARE(readBinary(bytes, version), QDataStream::Ok);
        QCOMPARE(version, Version(14, 258, -1));
    }

    void tellsOfAShortStream()
    {
        Version version(7, 8, 9);
        QCOMPARE(readBinary(QByteArray::fromHex("00000001 00000002 00"), version),
                 QDataStream::ReadPastEnd);
        QCOMPARE(version, Version(1, 2, 0));
    }

    void hasOneMetaTypeUnderTwoNames()
    {
        compareMetaType<Version>("Ovra::Geo::Version", "geo::Version",
                                 {.equality = true, .lessThan = true});
    }

    void travelsInAVariant()
    {
        const QVariant variant = Version(1, 2, 3);
        QCOMPARE(variant.metaType(), QMetaType::fromType<Version>());
        QCOMPARE(variant.value<Version>(), Version(1, 2, 3));
        QCOMPARE(QVariant::compare(variant, Version(1, 2, 4)), QPartialOrdering::Less);
        compareVariantForms(Version(1, 2, 3), "Ovra::Geo::Version", "geo::Version");
    }
};

QTEST_APPLESS_MAIN(TestVersion)
#include "tst_Version.moc"
