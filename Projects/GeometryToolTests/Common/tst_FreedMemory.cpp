#include "FreedMemory.h"

#include <QTest>

#include <cstdint>
#include <memory>
#include <sys/mman.h>
#include <unistd.h>

using Ovra::GeoTool::keepFreedMemory;

namespace
{

constexpr std::size_t blockSize = 64U << 20U;

/// Whether the page in the middle of a block that was at this place still is the process's.
bool isStillThere(std::uintptr_t place)
{
    const auto size = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const std::uintptr_t middle = (place + blockSize / 2) / size * size;
    unsigned char isInMemory = 0;
    return mincore(reinterpret_cast<void*>(middle), 1, &isInMemory) == 0;
}

std::uintptr_t placeOfFreed()
{
    const auto block = std::make_unique<char[]>(blockSize);
    return reinterpret_cast<std::uintptr_t>(block.get());
}

} // namespace

class TestFreedMemory : public QObject
{
    Q_OBJECT

private slots:
    void isTakenAgain()
    {
#ifdef __SANITIZE_ADDRESS__
        QSKIP("the sanitizer has a heap of its own");
#endif
        QVERIFY(!isStillThere(placeOfFreed()));
        keepFreedMemory();
        const std::uintptr_t place = placeOfFreed();
        QVERIFY(isStillThere(place));
        QCOMPARE(placeOfFreed(), place);
    }
};

QTEST_APPLESS_MAIN(TestFreedMemory)
#include "tst_FreedMemory.moc"
