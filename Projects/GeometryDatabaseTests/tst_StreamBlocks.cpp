#include "InputBlock.h"
#include "MeshStreamCase.h"
#include "OutputBlock.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <functional>
#include <limits>

using namespace Ovra::Geo;
using namespace StreamTesting;

// Numbers go to and come from streams in blocks. Nobody may be able to tell that from their going
// one by one: not by the bytes, the values, the status, or where the device stands afterwards.

namespace
{

using Settings = std::function<void(QDataStream&)>;

/// Not sequential by what it says, without a buffer and without seek().
class OneWayDevice : public SequentialDevice
{
public:
    explicit OneWayDevice(const QByteArray& bytes)
        : SequentialDevice(bytes, QIODevice::ReadOnly | QIODevice::Unbuffered)
        , size_(bytes.size())
    {
    }

    bool isSequential() const override { return false; }
    qint64 size() const override { return size_; }

private:
    qint64 size_;
};

/// What reading left behind.
struct Outcome
{
    QDataStream::Status status;
    QString mesh;
    QByteArray rest; // of the device

    bool operator==(const Outcome& other) const
    {
        return status == other.status && mesh == other.mesh && rest == other.rest;
    }
};

Outcome read(QIODevice& device)
{
    TestMesh mesh;
    addModel(mesh);
    QDataStream stream(&device);
    mesh.mesh().read(stream);
    return {stream.status(), printed(mesh, MeshSerializer::Format2013), device.readAll()};
}

Outcome readInBlocks(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return read(buffer);
}

Outcome readOneByOne(const QByteArray& bytes)
{
    SequentialDevice pipe(bytes);
    return read(pipe);
}

QByteArray sample(MeshSerializer::Format format)
{
    TestMesh mesh;
    fillTetrahedron(mesh);
    return written(mesh, format);
}

void addFormats()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("2013") << sample(MeshSerializer::Format2013);
    QTest::newRow("2014") << sample(MeshSerializer::Format2014);
    QTest::newRow("2014a") << sample(MeshSerializer::Format2014a);
}

void addSettings()
{
    QTest::addColumn<Settings>("set");
    QTest::newRow("as made") << Settings([](QDataStream&) {});
    QTest::newRow("little end first")
        << Settings([](QDataStream& stream) { stream.setByteOrder(QDataStream::LittleEndian); });
    QTest::newRow("single precision") << Settings([](QDataStream& stream) {
        stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
    });
    QTest::newRow("version 12") << Settings(
        [](QDataStream& stream) { stream.setVersion(QDataStream::Qt_4_6); });
    QTest::newRow("version before precision")
        << Settings([](QDataStream& stream) { stream.setVersion(QDataStream::Qt_4_5); });
}

const QList<double> Doubles = {
    0.0, -0.0, 1.5, -1e300, 5e-324, std::numeric_limits<double>::infinity(), 1.0 / 3.0};

// More than a block holds.
constexpr int Many = 20000;

template <typename Stream>
void putNumbers(Stream& stream)
{
    for (int i = 0; i < Many; ++i) {
        stream << static_cast<qint32>(i * 40503) << static_cast<qint16>(i)
               << Doubles.at(i % Doubles.size());
    }
}

} // namespace

Q_DECLARE_METATYPE(Settings)

class TestStreamBlocks : public QObject
{
    Q_OBJECT

private slots:
    void bytesAreThoseOfTheStream_data() { addSettings(); }

    void bytesAreThoseOfTheStream()
    {
        QFETCH(Settings, set);
        const QByteArray expected = binary([&](QDataStream& stream) {
            set(stream);
            putNumbers(stream);
        });
        const QByteArray bytes = binary([&](QDataStream& stream) {
            set(stream);
            OutputBlock block(stream);
            putNumbers(block);
        });
        QVERIFY(bytes == expected);
    }

    void numbersAreThoseOfTheStream_data() { addSettings(); }

    void numbersAreThoseOfTheStream()
    {
        QFETCH(Settings, set);
        const QByteArray bytes = binary([&](QDataStream& stream) {
            set(stream);
            putNumbers(stream);
        });
        QDataStream stream(bytes);
        set(stream);
        QDataStream oneByOne(bytes);
        set(oneByOne);
        InputBlock block(stream);
        for (int i = 0; i < Many; ++i) {
            qint32 whole = 0;
            qint16 shortOne = 0;
            double real = 0.0;
            oneByOne >> whole >> shortOne >> real;
            QCOMPARE(block.read<qint32>(), whole);
            QCOMPARE(block.read<qint16>(), shortOne);
            const auto value = block.read<double>();
            QVERIFY(value == real && std::signbit(value) == std::signbit(real));
        }
        QCOMPARE(stream.status(), QDataStream::Ok);
        QVERIFY(block.stream().atEnd());
    }

    void theStreamTakesItsTurn()
    {
        const QByteArray expected = binary([](QDataStream& stream) {
            stream << qint32{1} << QStringLiteral("text") << qint32{2} << QStringLiteral("more");
        });
        const QByteArray bytes = binary([](QDataStream& stream) {
            OutputBlock block(stream);
            block << qint32{1};
            block.stream() << QStringLiteral("text");
            block << qint32{2};
            block.stream() << QStringLiteral("more");
        });
        QCOMPARE(bytes, expected);

        QDataStream stream(bytes);
        InputBlock block(stream);
        QString text;
        QCOMPARE(block.read<qint32>(), 1);
        block.stream() >> text;
        QCOMPARE(text, QStringLiteral("text"));
        QCOMPARE(block.read<qint32>(), 2);
        block.stream() >> text;
        QCOMPARE(text, QStringLiteral("more"));
    }

    void anEndAheadOfTheNumber()
    {
        QByteArray bytes = hex("0000000105");
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        QDataStream stream(&buffer);
        InputBlock block(stream);
        QCOMPARE(block.read<qint32>(), 1);
        QCOMPARE(stream.status(), QDataStream::Ok);
        QCOMPARE(block.read<qint32>(), 0);
        QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
    }

    void noDevice()
    {
        QDataStream stream;
        InputBlock input(stream);
        OutputBlock output(stream);
        QLoggingCategory::setFilterRules(QStringLiteral("*.warning=false"));
        output << qint32{1};
        QCOMPARE(input.read<qint32>(), 0);
    }

    void damageActsAsOneByOne_data() { addFormats(); }

    void damageActsAsOneByOne()
    {
        QFETCH(QByteArray, bytes);
        QCOMPARE(readInBlocks(bytes).status, QDataStream::Ok);
        for (qsizetype place = 0; place < bytes.size(); ++place) {
            QVERIFY2(readInBlocks(bytes.left(place)) == readOneByOne(bytes.left(place)),
                     QByteArray::number(place).constData());
            QByteArray damaged = bytes;
            damaged[place] = static_cast<char>(damaged.at(place) ^ (place % 2 == 0 ? 0x01 : 0xFF));
            QVERIFY2(readInBlocks(damaged) == readOneByOne(damaged),
                     QByteArray::number(place).constData());
        }
    }

    void devices_data()
    {
        QTest::addColumn<QIODevice::OpenMode>("mode");
        QTest::newRow("buffered") << QIODevice::OpenMode(QIODevice::ReadOnly);
        QTest::newRow("unbuffered") << (QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    void devices()
    {
        QFETCH(QIODevice::OpenMode, mode);
        const QByteArray mesh = sample(MeshSerializer::Format2014a);
        QTemporaryDir directory;
        QFile file(directory.filePath(QStringLiteral("meshes")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(hex("01020304") + mesh + mesh + hex("05060708"));
        file.close();
        QVERIFY(file.open(mode));
        file.skip(4);
        Outcome outcome = read(file);
        QCOMPARE(outcome.status, QDataStream::Ok);
        QCOMPARE(outcome.mesh, readOneByOne(mesh).mesh);
        QCOMPARE(outcome.rest, mesh + hex("05060708"));
        file.seek(4 + mesh.size());
        outcome = read(file);
        QCOMPARE(outcome.status, QDataStream::Ok);
        QCOMPARE(outcome.rest, hex("05060708"));
    }

    // Whose numbers are read one by one, and who goes back to where it began.
    void aTransaction()
    {
        QByteArray bytes = sample(MeshSerializer::Format2014a);
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        TestMesh mesh;
        QDataStream stream(&buffer);
        stream.startTransaction();
        mesh.mesh().read(stream);
        stream.rollbackTransaction();
        QCOMPARE(mesh.mesh().count(3), 1);
        QCOMPARE(buffer.pos(), 0);
    }

    // The device hands other bytes on than it holds: \r\n becomes \n.
    void aDeviceInTextMode()
    {
        QByteArray bytes = hex("00000D0A 0D0A0D0A 0000");
        const auto readTwo = [&](bool inBlocks) {
            QBuffer buffer(&bytes);
            buffer.open(QIODevice::ReadOnly | QIODevice::Text);
            QDataStream stream(&buffer);
            InputBlock block(stream);
            const auto number = [&] {
                qint32 value = 0;
                inBlocks ? value = block.read<qint32>() : (stream >> value, value);
                return value;
            };
            const qint32 first = number();
            return QPair<qint32, qint32>(first, number());
        };
        QCOMPARE(readTwo(true), readTwo(false));
    }

    void aDeviceThatFillsUp()
    {
        TestMesh mesh;
        fillTetrahedron(mesh);
        const QByteArray whole = sample(MeshSerializer::Format2014a);
        for (qint64 room = 0; room <= whole.size(); ++room) {
            FullDevice device(room);
            QDataStream stream(&device);
            mesh.mesh().write(stream);
            QCOMPARE(stream.status(),
                     room < whole.size() ? QDataStream::WriteFailed : QDataStream::Ok);
            QVERIFY(device.taken == whole.left(device.taken.size()));
        }
    }

    void aDeviceThatTakesPartsAtATime()
    {
        SlowDevice device(4096);
        QDataStream stream(&device);
        {
            OutputBlock block(stream);
            putNumbers(block);
        }
        QCOMPARE(stream.status(), QDataStream::Ok);
        QVERIFY(device.taken == binary([](QDataStream& plain) { putNumbers(plain); }));
    }

    void aDeviceThatThrows()
    {
        for (const qint64 room : {0, 10, 1000, 100000}) {
            ThrowingDevice device(room);
            QDataStream stream(&device);
            const auto write = [&stream] {
                OutputBlock block(stream);
                putNumbers(block);
            };
            QVERIFY_THROWS_EXCEPTION(std::runtime_error, write());
        }
    }

    // What is shown of it is gone, as it neither keeps it nor can go back.
    void aDeviceWithoutBufferAndWayBack()
    {
        const QByteArray mesh = sample(MeshSerializer::Format2014a);
        OneWayDevice device(mesh);
        const Outcome outcome = read(device);
        QCOMPARE(outcome.status, QDataStream::Ok);
        QCOMPARE(outcome.mesh, readOneByOne(mesh).mesh);
    }

    void bitsOfADoubleStay()
    {
        const QByteArray bytes = hex("3FF2BE881DE2F6FF 7FF0000000000001 FFF8000000000123");
        QDataStream stream(bytes);
        InputBlock input(stream);
        QCOMPARE(binary([&](QDataStream& output) {
                     OutputBlock block(output);
                     for (int i = 0; i < 3; ++i) {
                         block << input.read<double>();
                     }
                 }),
                 bytes);
    }

    // As the operators of values may, which a host registers.
    void settingsThatChangeOnTheWay()
    {
        const auto put = [](auto& numbers, auto streamOf) {
            numbers << qint32{1} << 1.5;
            streamOf().setByteOrder(QDataStream::LittleEndian);
            streamOf().setFloatingPointPrecision(QDataStream::SinglePrecision);
            numbers << qint32{1} << 1.5;
            streamOf().setByteOrder(QDataStream::BigEndian);
            streamOf().setFloatingPointPrecision(QDataStream::DoublePrecision);
            numbers << qint32{1} << 1.5;
        };
        const QByteArray expected = binary([&](QDataStream& stream) {
            put(stream, [&stream]() -> QDataStream& { return stream; });
        });
        const QByteArray bytes = binary([&](QDataStream& stream) {
            OutputBlock block(stream);
            put(block, [&block]() -> QDataStream& { return block.stream(); });
        });
        QCOMPARE(bytes, expected);

        QDataStream stream(bytes);
        InputBlock block(stream);
        for (const bool isPlain : {true, false, true}) {
            block.stream().setByteOrder(isPlain ? QDataStream::BigEndian
                                                : QDataStream::LittleEndian);
            block.stream().setFloatingPointPrecision(isPlain ? QDataStream::DoublePrecision
                                                             : QDataStream::SinglePrecision);
            QCOMPARE(block.read<qint32>(), 1);
            QCOMPARE(block.read<double>(), 1.5);
        }
    }

    void manyEntities()
    {
        TestMesh mesh;
        addModel(mesh);
        TestMesh::Vertices row;
        for (int i = 0; i < Many; ++i) {
            row.append(mesh.addVertex({0.1 * i, 1.0 / (i + 1), -1.0 * i}, 2 * i + 1));
        }
        for (int i = 0; i + 1 < Many; ++i) {
            mesh.addElement(1, {row.at(i + 1), row.at(i)}, mesh.model().entity(1, 12), 3 * i + 1);
        }
        const QByteArray bytes = written(mesh, MeshSerializer::Format2014a);
        QVERIFY(readInBlocks(bytes) == readOneByOne(bytes));

        const QByteArray vertices = binary([&](QDataStream& stream) {
            stream << qint32{Many};
            for (int i = 0; i < Many; ++i) {
                stream << qint32{2 * i + 1} << qint32{-1} << qint32{0} << 0.1 * i << 1.0 / (i + 1)
                       << -1.0 * i;
            }
            stream << qint32{-1};
        });
        const QByteArray edges = binary([&](QDataStream& stream) {
            stream << qint32{Many - 1};
            for (int i = 0; i + 1 < Many; ++i) {
                stream << qint32{3 * i + 1} << qint32{12} << qint32{2} << qint32{2 * i + 3}
                       << qint32{2 * i + 1};
            }
            stream << qint32{-1};
        });
        QVERIFY(bytes.endsWith(vertices + edges + hex("00000000 FFFFFFFF 00000000 FFFFFFFF")));
    }
};

QTEST_APPLESS_MAIN(TestStreamBlocks)

#include "tst_StreamBlocks.moc"
