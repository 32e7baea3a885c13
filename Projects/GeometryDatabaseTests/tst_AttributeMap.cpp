#include "AttributeMap.h"

#include <QTest>

#include <cstdlib>
#include <new>

using namespace Ovra::Geo;

// Meshes hold a map in each of millions of entities.
static_assert(sizeof(AttributeMap) == sizeof(void*));

namespace
{

QStringList tags(const AttributeMap& map)
{
    QStringList result;
    for (const AttributeType& type : map.types()) {
        result.append(type.toString());
    }
    return result;
}

int allocations = 0;

} // namespace

void* operator new(std::size_t size)
{
    ++allocations;
    if (void* block = std::malloc(size)) {
        return block;
    }
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}

class TestAttributeMap : public QObject
{
    Q_OBJECT

private slots:
    void isEmptyAtFirst()
    {
        const AttributeMap map;
        QVERIFY(map.isEmpty());
        QCOMPARE(map.count(), 0);
        QVERIFY(map.types().isEmpty());
        QVERIFY(!map.contains(AttributeType::MaterialId));
        QCOMPARE(map.value(AttributeType::MaterialId, QVariant(-1)), QVariant(-1));
    }

    void allocatesNothingBeforeTheFirstValue()
    {
        const int before = allocations;
        AttributeMap map;
        AttributeMap copy(map);
        copy.clear();
        copy.remove(AttributeType::Side);
        map = copy;
        const bool absent = map.isEmpty() && !map.contains(AttributeType::Side) &&
                            map.types().isEmpty() && map.value(AttributeType::Side, 7) == 7;
        QCOMPARE(allocations, before);
        QVERIFY(absent);
        map.insert(AttributeType::Side, 1);
        QVERIFY(allocations > before);
    }

    void keepsValues()
    {
        AttributeMap map;
        map.insert(AttributeType::MaterialType, QString("fluid"));
        QVERIFY(!map.isEmpty());
        QCOMPARE(map.count(), 1);
        QVERIFY(map.contains(AttributeType::MaterialType));
        QCOMPARE(map.value(AttributeType::MaterialType, QVariant()), QVariant("fluid"));
    }

    void replacesAValue()
    {
        AttributeMap map;
        map.insert(AttributeType::MaterialId, 1);
        map.insert(AttributeType::MaterialId, QString("two"));
        QCOMPARE(map.count(), 1);
        QCOMPARE(map.value(AttributeType::MaterialId, QVariant()), QVariant("two"));
    }

    void countsAnInvalidValueAsPresent()
    {
        AttributeMap map;
        map.insert(AttributeType::MotionType, QVariant());
        QVERIFY(map.contains(AttributeType::MotionType));
        QCOMPARE(map.count(), 1);
        QVERIFY(!map.value(AttributeType::MotionType, QVariant(7)).isValid());
    }

    void walksInTheOrderOfIds()
    {
        AttributeMap map;
        map.insert(AttributeType::Side, 1);
        map.insert(AttributeType::ExtrudedFace, 2);
        map.insert(AttributeType::ExType, 3);
        map.insert(AttributeType::AssemblyPartIds, 4);
        QCOMPARE(tags(map), QStringList({"assembly_part_ids", "extruded_face", "ex_type", "side"}));
    }

    void storesTheInvalidTypeLikeAnyOther()
    {
        AttributeMap map;
        map.insert(AttributeType::AssemblyPartIds, 1);
        map.insert(AttributeType(), 2);
        map.insert(AttributeType::fromString("unknown"), 3);
        QCOMPARE(map.count(), 2);
        QVERIFY(!map.types().first().isValid());
        QCOMPARE(map.value(AttributeType(), QVariant()), QVariant(3));
    }

    void removes()
    {
        AttributeMap map;
        map.insert(AttributeType::Side, 1);
        map.insert(AttributeType::InBL, true);
        map.remove(AttributeType::Side);
        QCOMPARE(tags(map), QStringList({"in_bl"}));
        map.remove(AttributeType::InBL);
        QVERIFY(map.isEmpty());
        QCOMPARE(map.count(), 0);
    }

    void ignoresRemovalOfAnAbsentKey()
    {
        AttributeMap map;
        map.remove(AttributeType::Side);
        QVERIFY(map.isEmpty());
        map.insert(AttributeType::InBL, true);
        map.remove(AttributeType::Side);
        QCOMPARE(map.count(), 1);
    }

    void clears()
    {
        AttributeMap map;
        map.clear();
        QVERIFY(map.isEmpty());
        map.insert(AttributeType::Side, 1);
        map.clear();
        QVERIFY(map.isEmpty());
        QVERIFY(map.types().isEmpty());
    }

    void copiesAreIndependent()
    {
        AttributeMap map;
        map.insert(AttributeType::Side, 1);
        AttributeMap copy(map);
        copy.insert(AttributeType::Side, 2);
        copy.insert(AttributeType::InBL, true);
        QCOMPARE(map.count(), 1);
        QCOMPARE(map.value(AttributeType::Side, QVariant()), QVariant(1));
        copy = map;
        copy.clear();
        QCOMPARE(map.count(), 1);
        copy = map;
        copy.remove(AttributeType::Side);
        QCOMPARE(map.count(), 1);
    }
};

QTEST_APPLESS_MAIN(TestAttributeMap)
#include "tst_AttributeMap.moc"
