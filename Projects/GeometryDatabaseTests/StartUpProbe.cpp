#include "StartUpProbe.h"

#include "ValueForms.h"

#include <cstdio>
#include <cstdlib>

using namespace Ovra::Geo;

StartUpProbe::StartUpProbe()
{
    checkVocabulary();
    checkAliasedMetaTypes();
    checkStoredVariant();
}

StartUpProbe::~StartUpProbe()
{
    if (AttributeType::fromString("shellFace") != AttributeType::NewShellFace ||
        AttributeType::NewShellFace.toString() != "new_shell_face") {
        std::fputs("The vocabulary was taken down before a static object that uses it.\n", stderr);
        std::_Exit(EXIT_FAILURE);
    }
}

void StartUpProbe::check(bool good, const char* what)
{
    if (!good) {
        faults_.append(what);
    }
}

void StartUpProbe::checkVocabulary()
{
    check(AttributeType::AssemblyPartIds.isValid(), "first constant");
    check(AttributeType::SplitEnergy < AttributeType::VisualScaleFactor, "order of constants");
    check(AttributeType::VisualScaleFactor.toString() == "visual_scale_factor", "text");
    check(AttributeType::fromString("material_id") == AttributeType::MaterialId, "tag");
    check(AttributeType::fromString("coincidentFaceId") == AttributeType::ExtrudedFace, "alias");
    check(!AttributeType::fromString("unknown").isValid(), "unknown tag");
    check(AttributeType::count() == 77 && AttributeType::tags().size() == 77, "count");
    AttributeMap map;
    map.insert(AttributeType::Side, 1);
    map.insert(AttributeType::AssemblyPartIds, 2);
    check(map.types().first() == AttributeType::AssemblyPartIds, "order of a map");
}

void StartUpProbe::checkAliasedMetaTypes()
{
    check(QMetaType::fromName("geo::Box") == QMetaType::fromType<Box>(), "geo::Box");
    check(QMetaType::fromName("geo::Matrix") == QMetaType::fromType<Matrix>(), "geo::Matrix");
    check(QMetaType::fromName("geo::RefinementRegion") == QMetaType::fromType<RefinementRegion>(),
          "geo::RefinementRegion");
    check(QMetaType::fromName("geo::Vector") == QMetaType::fromType<Vector>(), "geo::Vector");
    check(QMetaType::fromName("geo::Version") == QMetaType::fromType<Version>(), "geo::Version");
    check(QMetaType::fromName("Ovra::Geo::Vector") == QMetaType::fromType<Vector>(), "full name");
}

void StartUpProbe::checkStoredVariant()
{
    for (const char* name : {"Ovra::Geo::Vector", "geo::Vector"}) {
        QVariant stored;
        ValueForms::readBinary(ValueForms::variantBytes(name, ValueForms::binary(Vector(1, 2, 3))),
                               stored);
        check(stored.value<Vector>() == Vector(1, 2, 3), name);
    }
    // Made here or in the library, a variant makes the same bytes.
    const QByteArray madeHere = ValueForms::binary(QVariant::fromValue(Vector(1, 2, 3)));
    check(madeHere == ValueForms::binary(QVariant(Vector(1, 2, 3))), "bytes of a variant");
}
