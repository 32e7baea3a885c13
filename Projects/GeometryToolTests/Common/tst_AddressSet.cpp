#include "AddressSet.h"

#include <QTest>

#include <cstdint>
#include <set>
#include <vector>

using Ovra::GeoTool::AddressSet;

namespace
{

const void* at(std::uintptr_t address)
{
    return reinterpret_cast<const void*>(address); // NOLINT(performance-no-int-to-ptr)
}

} // namespace

class TestAddressSet : public QObject
{
    Q_OBJECT

private slots:
    void isEmptyAtFirst()
    {
        const AddressSet set;
        QVERIFY(!set.contains(nullptr));
        QVERIFY(!set.contains(&set));
    }

    /// Neighbours, places on either side of a page of bits, and the ends of the address space.
    void knowsWhatWasInserted()
    {
        const std::vector<std::uintptr_t> places = {
            0,        8,           16,          0x0ffff8,         0x100000,          0x100008,
            0x200000, 0x7f0000000, 0x7f0000018, 0x7fffffffffffe8, 0xfffffffffffffff8};
        AddressSet set;
        std::set<std::uintptr_t> inserted;
        for (std::size_t i = 0; i < places.size(); i += 2) {
            set.insert(at(places[i]));
            inserted.insert(places[i]);
        }
        for (const std::uintptr_t place : places) {
            QCOMPARE(set.contains(at(place)), inserted.count(place) > 0);
        }
    }

    void takesNoPlaceWithinAnObjectForIt()
    {
        AddressSet set;
        set.insert(at(64));
        for (std::uintptr_t place = 57; place < 72; ++place) {
            QCOMPARE(set.contains(at(place)), place == 64);
        }
    }

    /// Also where the page was asked for, and not found, before.
    void learnsOfWhatComesLater()
    {
        AddressSet set;
        QVERIFY(!set.contains(at(4096)));
        set.insert(at(4096));
        QVERIFY(set.contains(at(4096)));
    }
};

QTEST_APPLESS_MAIN(TestAddressSet)
#include "tst_AddressSet.moc"
