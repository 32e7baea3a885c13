#include "AttributeType.h"

#include <QTest>

#include <algorithm>
#include <bit>
#include <type_traits>

using namespace Ovra::Geo;

static_assert(sizeof(AttributeType) == sizeof(qint32));
static_assert(std::is_trivially_copyable_v<AttributeType>);
static_assert(!std::is_constructible_v<AttributeType, int>);
static_assert(!std::is_constructible_v<AttributeType, QString>);

namespace
{

struct Row
{
    const AttributeType* type;
    const char* tag;
};

// In the order of ids, from 1.
const Row vocabulary[] = {
    {&AttributeType::AssemblyPartIds, "assembly_part_ids"},
    {&AttributeType::BoardCorners, "board_corners"},
    {&AttributeType::BoardFaces, "board_faces"},
    {&AttributeType::CaseCorners, "case_corners"},
    {&AttributeType::CaseFaces, "case_faces"},
    {&AttributeType::CircleRadius, "circle_radius"},
    {&AttributeType::ColdCorners, "cold_corners"},
    {&AttributeType::ColdFaces, "cold_faces"},
    {&AttributeType::CoordinateSystem, "coordinate_system"},
    {&AttributeType::ExCluster, "ex_cluster"},
    {&AttributeType::ExDestinationId, "ex_destination_id"},
    {&AttributeType::ExEdgeList, "ex_edge_list"},
    {&AttributeType::ExFactor, "ex_factor"},
    {&AttributeType::ExFlavor, "ex_flavor"},
    {&AttributeType::ExHeight, "ex_height"},
    {&AttributeType::ExMode, "ex_mode"},
    {&AttributeType::ExScheme, "ex_scheme"},
    {&AttributeType::ExSourceId, "ex_source_id"},
    {&AttributeType::ExtrudedEntityId, "extruded_entity_id"},
    {&AttributeType::ExtrudedEntityType, "extruded_entity_type"},
    {&AttributeType::ExtrudedFace, "extruded_face"},
    {&AttributeType::ExtrudedWeights, "extruded_weights"},
    {&AttributeType::ExType, "ex_type"},
    {&AttributeType::FluidFace, "fluid_face"},
    {&AttributeType::FluidRegion, "fluid_region"},
    {&AttributeType::GenerateBoundaryLayer, "generate_boundary_layer"},
    {&AttributeType::HotCorners, "hot_corners"},
    {&AttributeType::HotFaces, "hot_faces"},
    {&AttributeType::InBL, "in_bl"},
    {&AttributeType::IsResist, "is_resist"},
    {&AttributeType::IsShell, "is_shell"},
    {&AttributeType::IsSuppressed, "is_suppressed"},
    {&AttributeType::IsThermal, "is_thermal"},
    {&AttributeType::Layers, "layers"},
    {&AttributeType::MaterialId, "material_id"},
    {&AttributeType::MaterialType, "material_type"},
    {&AttributeType::MeshBiasFactor, "mesh_bias_factor"},
    {&AttributeType::MeshBiasType, "mesh_bias_type"},
    {&AttributeType::MeshByExtrusion, "mesh_by_extrusion"},
    {&AttributeType::MeshCoordinates, "mesh_coordinates"},
    {&AttributeType::MeshDistribution, "mesh_distribution"},
    {&AttributeType::MeshLengthScaleDistribution, "mesh_length_scale_distribution"},
    {&AttributeType::MeshLengthScaleFactor, "mesh_length_scale_factor"},
    {&AttributeType::MeshOffset, "mesh_offset"},
    {&AttributeType::MeshSize, "mesh_size"},
    {&AttributeType::MinMeshSize, "min_mesh_size"},
    {&AttributeType::MotionType, "motion_type"},
    {&AttributeType::NewMotionRegion, "new_motion_region"},
    {&AttributeType::NewMotionVertex, "new_motion_vertex"},
    {&AttributeType::NewShellFace, "new_shell_face"},
    {&AttributeType::NewShellRegion, "new_shell_region"},
    {&AttributeType::NonExtrudedFace, "non_extruded_face"},
    {&AttributeType::OriginalMotionRegion, "original_motion_region"},
    {&AttributeType::OriginalMotionVertex, "original_motion_vertex"},
    {&AttributeType::OriginalShellFace, "original_shell_face"},
    {&AttributeType::PartHardnessNumber, "part_hardness_number"},
    {&AttributeType::PeriodicEntityId, "periodic_entity_id"},
    {&AttributeType::PeriodicEntityType, "periodic_entity_type"},
    {&AttributeType::PeriodicFace, "periodic_face"},
    {&AttributeType::PeriodicMatrix, "periodic_matrix"},
    {&AttributeType::PeriodicOrigin, "periodic_origin"},
    {&AttributeType::PeriodicPairId, "periodic_pair_id"},
    {&AttributeType::PeriodicSideId, "periodic_side_id"},
    {&AttributeType::PeriodicTranslation, "periodic_translation"},
    {&AttributeType::PeriodicWeights, "periodic_weights"},
    {&AttributeType::PeriodicXAxis, "periodic_x_axis"},
    {&AttributeType::PeriodicYAxis, "periodic_y_axis"},
    {&AttributeType::PeriodicZAxis, "periodic_z_axis"},
    {&AttributeType::RotorFace, "rotor_face"},
    {&AttributeType::RotorVertex, "rotor_vertex"},
    {&AttributeType::ShellVertex, "shell_vertex"},
    {&AttributeType::Side, "side"},
    {&AttributeType::SolidFace, "solid_face"},
    {&AttributeType::SplitEnergy, "split_energy"},
    {&AttributeType::StatorFace, "stator_face"},
    {&AttributeType::StatorVertex, "stator_vertex"},
    {&AttributeType::VisualScaleFactor, "visual_scale_factor"},
};

const Row aliases[] = {
    {&AttributeType::ExtrudedFace, "coincidentFaceId"},
    {&AttributeType::ExMode, "ex_model"},
    {&AttributeType::ExtrudedEntityId, "extEntityId"},
    {&AttributeType::ExtrudedEntityType, "extEntityType"},
    {&AttributeType::ExtrudedWeights, "extWeights"},
    {&AttributeType::InBL, "inBL"},
    {&AttributeType::IsResist, "isResist"},
    {&AttributeType::IsShell, "isShell"},
    {&AttributeType::IsThermal, "isThermal"},
    {&AttributeType::MaterialId, "materialId"},
    {&AttributeType::MaterialType, "materialType"},
    {&AttributeType::MotionType, "motionType"},
    {&AttributeType::NonExtrudedFace, "originalFaceId"},
    {&AttributeType::OriginalShellFace, "originalShellFaceId"},
    {&AttributeType::PeriodicEntityId, "perEntityId"},
    {&AttributeType::PeriodicEntityType, "perEntityType"},
    {&AttributeType::PeriodicFace, "periodic_face_id"},
    {&AttributeType::StatorFace, "peripheralFaceId"},
    {&AttributeType::PeriodicWeights, "perWeights"},
    {&AttributeType::RotorVertex, "rotorVertex"},
    {&AttributeType::NewShellFace, "shellFace"},
    {&AttributeType::ShellVertex, "shellVertex"},
    {&AttributeType::StatorVertex, "statorVertex"},
    {&AttributeType::VisualScaleFactor, "visualScaleFactor"},
};

QStringList tagsOf(const Row* begin, const Row* end)
{
    QStringList tags;
    std::for_each(begin, end, [&tags](const Row& row) { tags.append(row.tag); });
    return tags;
}

// No operation tells the id, but a type consists of nothing else.
int idOf(const AttributeType& type)
{
    return std::bit_cast<qint32>(type);
}

} // namespace

class TestAttributeType : public QObject
{
    Q_OBJECT

private slots:
    void isInvalidByDefault()
    {
        QVERIFY(!AttributeType().isValid());
        QVERIFY(AttributeType().toString().isNull());
    }

    void has77Tags()
    {
        QCOMPARE(AttributeType::count(), 77);
        QCOMPARE(std::size(vocabulary), size_t(77));
    }

    void namesEachConstant_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < AttributeType::count(); ++i) {
            QTest::newRow(vocabulary[i].tag) << i;
        }
    }

    void namesEachConstant()
    {
        QFETCH(int, index);
        const Row& row = vocabulary[index];
        QVERIFY(row.type->isValid());
        QCOMPARE(row.type->toString(), QString(row.tag));
        QVERIFY(AttributeType::fromString(row.tag) == *row.type);
        QVERIFY(!(AttributeType::fromString(row.tag) != *row.type));
        QVERIFY(!AttributeType::fromString(QString(row.tag).toUpper()).isValid());
    }

    // Files list attributes in this order.
    void ascendsInTheOrderOfTheConstants()
    {
        QVERIFY(AttributeType() < *vocabulary[0].type);
        for (size_t i = 1; i < std::size(vocabulary); ++i) {
            QVERIFY2(*vocabulary[i - 1].type < *vocabulary[i].type, vocabulary[i].tag);
            QVERIFY2(!(*vocabulary[i].type < *vocabulary[i - 1].type), vocabulary[i].tag);
        }
    }

    void isRepresentedByItsPlaceInTheTable()
    {
        QCOMPARE(idOf(AttributeType()), 0);
        QCOMPARE(idOf(AttributeType::fromString("assembly_part_ids")), 1);
        QCOMPARE(idOf(AttributeType::fromString("ex_type")), 23);
        QCOMPARE(idOf(AttributeType::fromString("visual_scale_factor")), 77);
        for (size_t i = 0; i < std::size(vocabulary); ++i) {
            QCOMPARE(idOf(*vocabulary[i].type), int(i) + 1);
        }
    }

    void understandsAliases_data()
    {
        QTest::addColumn<int>("index");
        QCOMPARE(std::size(aliases), size_t(24));
        for (int i = 0; i < 24; ++i) {
            QTest::newRow(aliases[i].tag) << i;
        }
    }

    void understandsAliases()
    {
        QFETCH(int, index);
        const Row& row = aliases[index];
        QVERIFY(AttributeType::fromString(row.tag) == *row.type);
        QVERIFY(AttributeType::fromString(row.tag).toString() != row.tag);
        QVERIFY(!AttributeType::fromString(QString(row.tag).toUpper()).isValid());
    }

    void comesOutUnderThePrimaryTag()
    {
        QCOMPARE(AttributeType::fromString("coincidentFaceId").toString(), "extruded_face");
        QCOMPARE(AttributeType::fromString("ex_model").toString(), "ex_mode");
    }

    void rejectsOtherTexts_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::newRow("null") << QString();
        QTest::newRow("empty") << "";
        QTest::newRow("unknown") << "no_such_tag";
        QTest::newRow("a constant's name") << "MaterialId";
        QTest::newRow("blank before") << " side";
        QTest::newRow("blank after") << "side ";
        QTest::newRow("capital") << "Side";
        QTest::newRow("prefix") << "material";
        QTest::newRow("embedded zero") << QString::fromLatin1("side\0", 5);
        QTest::newRow("not Latin") << QString::fromUtf8("s\xc4\xb1"
                                                        "de");
    }

    void rejectsOtherTexts()
    {
        QFETCH(QString, tag);
        QVERIFY(!AttributeType::fromString(tag).isValid());
        QVERIFY(AttributeType::fromString(tag) == AttributeType());
    }

    void listsTagsByName()
    {
        const QList<QString> tags = AttributeType::tags();
        QCOMPARE(tags.size(), 77);
        QCOMPARE(tags.first(), "assembly_part_ids");
        QCOMPARE(tags.last(), "visual_scale_factor");
        QVERIFY(std::is_sorted(tags.begin(), tags.end()));
        QStringList expected = tagsOf(std::begin(vocabulary), std::end(vocabulary));
        std::sort(expected.begin(), expected.end());
        QCOMPARE(tags, expected);
        QVERIFY(tags.indexOf("ex_type") < tags.indexOf("extruded_entity_id"));
    }

    void listsNoAliases()
    {
        const QList<QString> tags = AttributeType::tags();
        for (const Row& row : aliases) {
            QVERIFY2(!tags.contains(row.tag), row.tag);
        }
    }
};

QTEST_APPLESS_MAIN(TestAttributeType)
#include "tst_AttributeType.moc"
