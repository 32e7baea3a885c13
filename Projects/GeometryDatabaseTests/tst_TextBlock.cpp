#include "StreamTesting.h"
#include "TextBlock.h"

#include <QBuffer>
#include <QLocale>
#include <QTest>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <random>

using namespace Ovra::Geo;

namespace
{

using Setting = void (*)(QTextStream&);

double fromBits(quint64 bits)
{
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

template <typename Sink>
void writeFields(Sink& sink)
{
    for (const int value :
         {0, 1, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        sink << value << ' ';
    }
    for (const double value :
         {0.0, -0.0, 1.0, -1.5, 1e-5, 123456789.0, 1e15, 1e300,
          std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        sink << value << '\n';
    }
}

QString textOfBlock(Setting set)
{
    QString text;
    QTextStream stream(&text);
    set(stream);
    {
        TextBlock block(stream);
        writeFields(block);
    }
    stream.flush();
    return text;
}

QString textOfStream(Setting set)
{
    QString text;
    QTextStream stream(&text);
    set(stream);
    writeFields(stream);
    stream.flush();
    return text;
}

template <typename Sink>
void writeManyFields(Sink& sink)
{
    for (int i = 0; i < 2000; ++i) { // several blocks
        writeFields(sink);
    }
}

QByteArray bytesOfBlock(QIODevice::OpenMode mode, Setting set)
{
    QByteArray bytes;
    QBuffer device(&bytes);
    device.open(mode);
    QTextStream stream(&device);
    set(stream);
    stream << "ahead ";
    {
        TextBlock block(stream);
        writeManyFields(block);
    }
    stream << " behind";
    stream.flush();
    return bytes;
}

QByteArray bytesOfStream(QIODevice::OpenMode mode, Setting set)
{
    QByteArray bytes;
    QBuffer device(&bytes);
    device.open(mode);
    QTextStream stream(&device);
    set(stream);
    stream << "ahead ";
    writeManyFields(stream);
    stream << " behind";
    stream.flush();
    return bytes;
}

/// Whether \p write puts the same text through a block and through its stream.
template <typename Write>
bool isTextOfStream(int precision, Write write)
{
    QString expected;
    QString actual;
    QTextStream expectedStream(&expected);
    QTextStream actualStream(&actual);
    expectedStream.setRealNumberPrecision(precision);
    actualStream.setRealNumberPrecision(precision);
    write(expectedStream);
    {
        TextBlock block(actualStream);
        write(block);
    }
    actualStream.flush();
    expectedStream.flush();
    return actual == expected;
}

// Every exponent, denormals included, with mantissas at random; a longer run on request.
qint64 mantissasForEachExponent()
{
    return std::max(120, qEnvironmentVariableIntValue("OVRA_TEST_MANTISSAS"));
}

} // namespace

Q_DECLARE_METATYPE(Setting)

class TestTextBlock : public QObject
{
    Q_OBJECT

private slots:
    void writesWhatTheStreamWrites_data()
    {
        QTest::addColumn<Setting>("set");
        QTest::newRow("as made") << Setting([](QTextStream&) {});
        QTest::newRow("precision 15")
            << Setting([](QTextStream& s) { s.setRealNumberPrecision(15); });
        QTest::newRow("precision 0")
            << Setting([](QTextStream& s) { s.setRealNumberPrecision(0); });
        QTest::newRow("precision 40")
            << Setting([](QTextStream& s) { s.setRealNumberPrecision(40); });
        QTest::newRow("scientific") << Setting(
            [](QTextStream& s) { s.setRealNumberNotation(QTextStream::ScientificNotation); });
        QTest::newRow("fixed") << Setting(
            [](QTextStream& s) { s.setRealNumberNotation(QTextStream::FixedNotation); });
        QTest::newRow("base 16") << Setting([](QTextStream& s) { s.setIntegerBase(16); });
        QTest::newRow("base 10") << Setting([](QTextStream& s) { s.setIntegerBase(10); });
        QTest::newRow("forced sign")
            << Setting([](QTextStream& s) { s.setNumberFlags(QTextStream::ForceSign); });
        QTest::newRow("field width") << Setting([](QTextStream& s) { s.setFieldWidth(12); });
        QTest::newRow("German") << Setting(
            [](QTextStream& s) { s.setLocale(QLocale(QLocale::German)); });
    }

    void writesWhatTheStreamWrites()
    {
        QFETCH(Setting, set);
        QCOMPARE(textOfBlock(set), textOfStream(set));
    }

    void formatsEveryDoubleAsTheStream_data()
    {
        QTest::addColumn<int>("precision");
        QTest::newRow("coordinates") << 15;
        QTest::newRow("weights") << 6;
        QTest::newRow("one digit") << 1;
        QTest::newRow("all digits") << 17;
    }

    void formatsEveryDoubleAsTheStream()
    {
        QFETCH(int, precision);
        const qint64 mantissas = mantissasForEachExponent();
        std::mt19937_64 random(static_cast<std::mt19937_64::result_type>(precision));
        for (quint64 signAndExponent = 0; signAndExponent < 4096; ++signAndExponent) {
            QList<double> values;
            for (qint64 i = 0; i < mantissas; ++i) {
                const quint64 mantissa = i == 0 ? 0 : random() >> 12;
                values.append(fromBits(signAndExponent << 52 | mantissa));
            }
            QVERIFY2(isTextOfStream(precision,
                                    [&values](auto& sink) {
                                        for (const double value : std::as_const(values)) {
                                            sink << value << ' ';
                                        }
                                    }),
                     QByteArray::number(signAndExponent).constData());
        }
    }

    void formatsShortDecimalsAsTheStream()
    {
        QVERIFY(isTextOfStream(6, [](auto& sink) {
            for (int i = -20000; i < 20000; ++i) {
                sink << i / 1000.0 << ' ' << i * 0.1 << ' ' << i * 1e5 << '\n';
            }
        }));
    }

    // Halfway between two decimals of so many digits the stream rounds away from zero.
    void roundsHalvesAsTheStream_data()
    {
        QTest::addColumn<int>("precision");
        for (int precision = 1; precision <= 17; ++precision) {
            QTest::addRow("%d digits", precision) << precision;
        }
    }

    void roundsHalvesAsTheStream()
    {
        QFETCH(int, precision);
        // An odd multiple of two to the power of -n has n digits behind the point, the last a 5.
        QVERIFY(isTextOfStream(precision, [precision](auto& sink) {
            for (int behindPoint = 1; behindPoint <= precision + 1; ++behindPoint) {
                const double whole = std::pow(10.0, precision - behindPoint);
                for (int i = -999; i < 1000; i += 2) {
                    const double fraction = std::ldexp(i, -behindPoint);
                    sink << whole + fraction << ' ' << fraction << ' ';
                }
            }
        }));
    }

    void noNumberBreaksABlock_data()
    {
        QTest::addColumn<double>("value");
        QTest::newRow("halfway between two decimals") << 32769 * std::ldexp(1.0, -16);
        QTest::newRow("infinity") << std::numeric_limits<double>::infinity();
        QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN();
    }

    void noNumberBreaksABlock()
    {
        QFETCH(double, value);
        const auto device = [](double field) {
            auto written = std::make_unique<StreamTesting::FullDevice>(10'000'000);
            QTextStream stream(written.get());
            stream.setRealNumberPrecision(15);
            TextBlock block(stream);
            for (int i = 0; i < 20000; ++i) {
                block << field << ' ';
            }
            return written;
        };
        const auto written = device(value);
        QVERIFY(written->taken.size() > 60000);
        QVERIFY2(written->writes <= device(0.123456789012345)->writes,
                 QByteArray::number(written->writes).constData());
    }

    void keepsTheOrderBesideTheStream()
    {
        QByteArray bytes;
        QBuffer device(&bytes);
        QVERIFY(device.open(QIODevice::WriteOnly));
        QTextStream stream(&device);
        stream << "a ";
        {
            TextBlock block(stream);
            block << 1 << ' ';
            block.flush();
            stream << "b ";
            block << 2 << ' ';
        }
        stream << "c";
        stream.flush();
        QCOMPARE(bytes, QByteArray("a 1 b 2 c"));
    }

    void aDeviceHasTheBytesOfTheStream_data()
    {
        QTest::addColumn<QIODevice::OpenMode>("mode");
        QTest::addColumn<Setting>("set");
        const QIODevice::OpenMode write = QIODevice::WriteOnly;
        QTest::newRow("as made") << write << Setting([](QTextStream&) {});
        QTest::newRow("text mode") << (write | QIODevice::Text) << Setting([](QTextStream&) {});
        QTest::newRow("UTF-16") << write << Setting([](QTextStream& s) {
            s.setEncoding(QStringConverter::Utf16);
        });
        QTest::newRow("Latin-1") << write << Setting([](QTextStream& s) {
            s.setEncoding(QStringConverter::Latin1);
        });
        QTest::newRow("byte order mark")
            << write << Setting([](QTextStream& s) { s.setGenerateByteOrderMark(true); });
    }

    void aDeviceHasTheBytesOfTheStream()
    {
        QFETCH(QIODevice::OpenMode, mode);
        QFETCH(Setting, set);
        QVERIFY(bytesOfBlock(mode, set) == bytesOfStream(mode, set));
    }

    void aDeviceThatFillsUp()
    {
        const QByteArray whole = bytesOfStream(QIODevice::WriteOnly, Setting([](QTextStream&) {}));
        for (const qint64 room : {qint64{0}, qint64{10}, qint64{40000}, qint64{whole.size()}}) {
            StreamTesting::FullDevice device(room);
            QTextStream stream(&device);
            stream << "ahead ";
            {
                TextBlock block(stream);
                writeManyFields(block);
            }
            stream << " behind";
            stream.flush();
            QCOMPARE(stream.status(),
                     room < whole.size() ? QTextStream::WriteFailed : QTextStream::Ok);
            QVERIFY(device.taken == whole.left(room));
        }
    }

    void aDeviceThatTakesPartsAtATime_data()
    {
        QTest::addColumn<qint64>("most");
        QTest::newRow("little more than a stream gives it") << qint64{17000};
        QTest::newRow("most of a block") << qint64{30000};
        QTest::newRow("more than a block") << qint64{40000};
    }

    void aDeviceThatTakesPartsAtATime()
    {
        QFETCH(qint64, most);
        StreamTesting::SlowDevice device(most);
        QTextStream stream(&device);
        QByteArray expected;
        {
            TextBlock block(stream);
            writeManyFields(block);
        }
        QTextStream plain(&expected);
        writeManyFields(plain);
        plain.flush();
        QCOMPARE(stream.status(), QTextStream::Ok);
        stream.flush();
        QVERIFY(device.taken == expected);
    }

    void aDeviceThatThrows()
    {
        for (const qint64 room : {0, 100000}) {
            StreamTesting::ThrowingDevice device(room);
            QTextStream stream(&device);
            const auto write = [&stream] {
                TextBlock block(stream);
                for (int i = 0; i < 10; ++i) {
                    writeManyFields(block);
                }
            };
            QVERIFY_THROWS_EXCEPTION(std::runtime_error, write());
            stream.setDevice(nullptr); // who would write the rest
        }
    }

    // A stream whose status is not Ok keeps its text for later.
    void aStreamThatHasReadToTheEnd()
    {
        const auto written = [](bool inBlock) {
            QByteArray bytes;
            QBuffer device(&bytes);
            device.open(QIODevice::ReadWrite);
            QTextStream stream(&device);
            stream.setStatus(QTextStream::ReadPastEnd);
            if (inBlock) {
                TextBlock block(stream);
                writeManyFields(block);
            } else {
                writeManyFields(stream);
            }
            stream << "end";
            stream.resetStatus();
            stream.flush();
            return bytes;
        };
        QVERIFY(written(true) == written(false));
    }

    void settingsBetweenSections()
    {
        const auto written = [](bool inBlock) {
            QByteArray bytes;
            QBuffer device(&bytes);
            device.open(QIODevice::WriteOnly);
            QTextStream stream(&device);
            if (inBlock) {
                TextBlock block(stream);
                writeManyFields(block);
            } else {
                writeManyFields(stream);
            }
            stream.setGenerateByteOrderMark(true);
            stream << "end";
            stream.flush();
            return bytes;
        };
        QVERIFY(written(true) == written(false));
    }

    void addsNothingOfItsOwn()
    {
        QString text;
        QTextStream stream(&text);
        stream.setFieldWidth(5);
        {
            TextBlock block(stream);
        }
        stream.flush();
        QCOMPARE(text, QString());
    }
};

QTEST_APPLESS_MAIN(TestTextBlock)
#include "tst_TextBlock.moc"
