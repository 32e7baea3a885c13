#include "LargePages.h"

#include <QFile>
#include <QTest>

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>

using Ovra::GeoTool::useLargePages;

namespace
{

constexpr std::size_t blockSize = 8U << 20U;

std::optional<QByteArray> contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? std::optional(file.readAll()) : std::nullopt;
}

/// What the kernel has noted of the piece of memory that a place lies in: "hg" for large pages.
QByteArrayList flagsOf(const void* place)
{
    const auto address = reinterpret_cast<std::uintptr_t>(place);
    bool isWithin = false;
    for (const QByteArray& line : contentOf("/proc/self/smaps").value_or("").split('\n')) {
        const QByteArrayList ends = line.left(line.indexOf(' ')).split('-');
        if (ends.size() == 2) {
            isWithin = ends[0].toULongLong(nullptr, 16) <= address &&
                       address < ends[1].toULongLong(nullptr, 16);
        } else if (isWithin && line.startsWith("VmFlags:")) {
            return line.split(' ');
        }
    }
    return {};
}

bool isHeapOfSanitizer()
{
#ifdef __SANITIZE_ADDRESS__
    return true;
#else
    return false;
#endif
}

} // namespace

class TestLargePages : public QObject
{
    Q_OBJECT

private slots:
    void takesWhatNobodyGrants_data()
    {
        QTest::addColumn<qint64>("bytes");
        QTest::newRow("none") << qint64(0);
        QTest::newRow("negative") << std::numeric_limits<qint64>::min();
        QTest::newRow("one") << qint64(1);
        QTest::newRow("all there are") << std::numeric_limits<qint64>::max();
    }

    void takesWhatNobodyGrants()
    {
        QFETCH(qint64, bytes);
        useLargePages(bytes);
        const auto block = std::make_unique<char[]>(blockSize);
        QCOMPARE(block[blockSize - 1], '\0');
    }

    void arraysLieInLargePages()
    {
        if (isHeapOfSanitizer() || !contentOf("/sys/kernel/mm/transparent_hugepage/enabled")) {
            QSKIP("no large pages here");
        }
        useLargePages(4 * blockSize);
        const auto block = std::make_unique<char[]>(blockSize);
        QVERIFY(flagsOf(&block[blockSize / 2]).contains("hg"));
    }

    void whatIsFreedIsTakenAgain()
    {
        if (isHeapOfSanitizer()) {
            QSKIP("its heap keeps what is freed for a while");
        }
        useLargePages(4 * blockSize);
        auto block = std::make_unique<char[]>(blockSize);
        const auto place = reinterpret_cast<std::uintptr_t>(block.get());
        block.reset();
        block = std::make_unique<char[]>(blockSize);
        QCOMPARE(reinterpret_cast<std::uintptr_t>(block.get()), place);
    }
};

QTEST_APPLESS_MAIN(TestLargePages)
#include "tst_LargePages.moc"
