#include "QualityHistogram.h"

#include <QTest>

#include <limits>

using Ovra::GeoTool::QualityHistogram;

class TestQualityHistogram : public QObject
{
    Q_OBJECT

private slots:
    void putsAnAspectIntoItsBin_data()
    {
        QTest::addColumn<double>("aspect");
        QTest::addColumn<int>("bin");
        QTest::newRow("best") << 1.0 << 0;
        QTest::newRow("below the best by rounding") << 0.9999999 << 0;
        QTest::newRow("within") << 1.3 << 1;
        QTest::newRow("where a bin begins") << 2.0 << 3;
        QTest::newRow("just below") << 1.9999999 << 2;
        QTest::newRow("in the last") << 1e9 << 11;
        QTest::newRow("without end") << std::numeric_limits<double>::infinity() << 11;
    }

    void putsAnAspectIntoItsBin()
    {
        QFETCH(double, aspect);
        QFETCH(int, bin);
        QualityHistogram histogram;
        histogram.addAspect(aspect);
        std::array<int, QualityHistogram::AspectBounds.size()> expected = {};
        expected.at(static_cast<std::size_t>(bin)) = 1;
        QCOMPARE(histogram.aspects(), expected);
    }

    void putsAMeasureIntoItsPowerOfTwo()
    {
        QualityHistogram histogram;
        for (const double measure :
             {1.0, 1.9, -1.5, 2.0, 0.25, 0.0, std::numeric_limits<double>::infinity(),
              std::numeric_limits<double>::quiet_NaN()}) {
            histogram.addMeasure(measure);
        }
        QCOMPARE(histogram.measures(), (std::map<int, int>{{-2, 1}, {0, 3}, {1, 1}}));
    }
};

QTEST_GUILESS_MAIN(TestQualityHistogram)
#include "tst_QualityHistogram.moc"
