#include "AttributeType.h"

#include <QHash>
#include <QStringList>

namespace Ovra::Geo
{

// The vocabulary in the order of ids, which files depend on: one row, one line.
// clang-format off
#define OVRA_GEO_ATTRIBUTES(row)                                       \
    row(AssemblyPartIds, "assembly_part_ids")                          \
    row(BoardCorners, "board_corners")                                 \
    row(BoardFaces, "board_faces")                                     \
    row(CaseCorners, "case_corners")                                   \
    row(CaseFaces, "case_faces")                                       \
    row(CircleRadius, "circle_radius")                                 \
    row(ColdCorners, "cold_corners")                                   \
    row(ColdFaces, "cold_faces")                                       \
    row(CoordinateSystem, "coordinate_system")                         \
    row(ExCluster, "ex_cluster")                                       \
    row(ExDestinationId, "ex_destination_id")                          \
    row(ExEdgeList, "ex_edge_list")                                    \
    row(ExFactor, "ex_factor")                                         \
    row(ExFlavor, "ex_flavor")                                         \
    row(ExHeight, "ex_height")                                         \
    row(ExMode, "ex_mode")                                             \
    row(ExScheme, "ex_scheme")                                         \
    row(ExSourceId, "ex_source_id")                                    \
    row(ExtrudedEntityId, "extruded_entity_id")                        \
    row(ExtrudedEntityType, "extruded_entity_type")                    \
    row(ExtrudedFace, "extruded_face")                                 \
    row(ExtrudedWeights, "extruded_weights")                           \
    row(ExType, "ex_type")                                             \
    row(FluidFace, "fluid_face")                                       \
    row(FluidRegion, "fluid_region")                                   \
    row(GenerateBoundaryLayer, "generate_boundary_layer")              \
    row(HotCorners, "hot_corners")                                     \
    row(HotFaces, "hot_faces")                                         \
    row(InBL, "in_bl")                                                 \
    row(IsResist, "is_resist")                                         \
    row(IsShell, "is_shell")                                           \
    row(IsSuppressed, "is_suppressed")                                 \
    row(IsThermal, "is_thermal")                                       \
    row(Layers, "layers")                                              \
    row(MaterialId, "material_id")                                     \
    row(MaterialType, "material_type")                                 \
    row(MeshBiasFactor, "mesh_bias_factor")                            \
    row(MeshBiasType, "mesh_bias_type")                                \
    row(MeshByExtrusion, "mesh_by_extrusion")                          \
    row(MeshCoordinates, "mesh_coordinates")                           \
    row(MeshDistribution, "mesh_distribution")                         \
    row(MeshLengthScaleDistribution, "mesh_length_scale_distribution") \
    row(MeshLengthScaleFactor, "mesh_length_scale_factor")             \
    row(MeshOffset, "mesh_offset")                                     \
    row(MeshSize, "mesh_size")                                         \
    row(MinMeshSize, "min_mesh_size")                                  \
    row(MotionType, "motion_type")                                     \
    row(NewMotionRegion, "new_motion_region")                          \
    row(NewMotionVertex, "new_motion_vertex")                          \
    row(NewShellFace, "new_shell_face")                                \
    row(NewShellRegion, "new_shell_region")                            \
    row(NonExtrudedFace, "non_extruded_face")                          \
    row(OriginalMotionRegion, "original_motion_region")                \
    row(OriginalMotionVertex, "original_motion_vertex")                \
    row(OriginalShellFace, "original_shell_face")                      \
    row(PartHardnessNumber, "part_hardness_number")                    \
    row(PeriodicEntityId, "periodic_entity_id")                        \
    row(PeriodicEntityType, "periodic_entity_type")                    \
    row(PeriodicFace, "periodic_face")                                 \
    row(PeriodicMatrix, "periodic_matrix")                             \
    row(PeriodicOrigin, "periodic_origin")                             \
    row(PeriodicPairId, "periodic_pair_id")                            \
    row(PeriodicSideId, "periodic_side_id")                            \
    row(PeriodicTranslation, "periodic_translation")                   \
    row(PeriodicWeights, "periodic_weights")                           \
    row(PeriodicXAxis, "periodic_x_axis")                              \
    row(PeriodicYAxis, "periodic_y_axis")                              \
    row(PeriodicZAxis, "periodic_z_axis")                              \
    row(RotorFace, "rotor_face")                                       \
    row(RotorVertex, "rotor_vertex")                                   \
    row(ShellVertex, "shell_vertex")                                   \
    row(Side, "side")                                                  \
    row(SolidFace, "solid_face")                                       \
    row(SplitEnergy, "split_energy")                                   \
    row(StatorFace, "stator_face")                                     \
    row(StatorVertex, "stator_vertex")                                 \
    row(VisualScaleFactor, "visual_scale_factor")
// clang-format on

namespace
{

#define OVRA_GEO_ID(name, tag) name,
// clang-format off
struct Id
{
    enum : int
    {
        Invalid,
        OVRA_GEO_ATTRIBUTES(OVRA_GEO_ID)
        End
    };
};
// clang-format on
#undef OVRA_GEO_ID

} // namespace

#if !defined(Q_CONSTINIT) // which came with Qt 6.4; without it nothing but the check is missing
#define Q_CONSTINIT
#endif

#define OVRA_GEO_CONSTANT(name, tag) Q_CONSTINIT const AttributeType AttributeType::name(Id::name);
OVRA_GEO_ATTRIBUTES(OVRA_GEO_CONSTANT)
#undef OVRA_GEO_CONSTANT

Q_CONSTINIT const int AttributeType::count_ = Id::End - 1;

namespace
{

struct TagRow
{
    const char* tag;
    int id;
};

constexpr TagRow tagTable[] = {
#define OVRA_GEO_TAG(name, tag) {tag, Id::name},
    OVRA_GEO_ATTRIBUTES(OVRA_GEO_TAG)
#undef OVRA_GEO_TAG
};
#undef OVRA_GEO_ATTRIBUTES

constexpr TagRow aliasTable[] = {
    {"coincidentFaceId", Id::ExtrudedFace},
    {"ex_model", Id::ExMode},
    {"extEntityId", Id::ExtrudedEntityId},
    {"extEntityType", Id::ExtrudedEntityType},
    {"extWeights", Id::ExtrudedWeights},
    {"inBL", Id::InBL},
    {"isResist", Id::IsResist},
    {"isShell", Id::IsShell},
    {"isThermal", Id::IsThermal},
    {"materialId", Id::MaterialId},
    {"materialType", Id::MaterialType},
    {"motionType", Id::MotionType},
    {"originalFaceId", Id::NonExtrudedFace},
    {"originalShellFaceId", Id::OriginalShellFace},
    {"perEntityId", Id::PeriodicEntityId},
    {"perEntityType", Id::PeriodicEntityType},
    {"periodic_face_id", Id::PeriodicFace},
    {"peripheralFaceId", Id::StatorFace},
    {"perWeights", Id::PeriodicWeights},
    {"rotorVertex", Id::RotorVertex},
    {"shellFace", Id::NewShellFace},
    {"shellVertex", Id::ShellVertex},
    {"statorVertex", Id::StatorVertex},
    {"visualScaleFactor", Id::VisualScaleFactor},
};

} // namespace

struct AttributeType::Vocabulary
{
    Vocabulary();

    QHash<QString, int> tagsToIds_;
    QHash<int, QString> idsToTags_;
    QHash<QString, int> aliases_;
};

AttributeType::Vocabulary::Vocabulary()
{
    for (const TagRow& row : tagTable) {
        tagsToIds_.insert(row.tag, row.id);
        idsToTags_.insert(row.id, row.tag);
    }
    for (const TagRow& row : aliasTable) {
        aliases_.insert(row.tag, row.id);
    }
}

const AttributeType::Vocabulary& AttributeType::vocabulary()
{
    // Never deleted, so that destructors of static objects may still ask.
    static const Vocabulary* const vocabulary = new Vocabulary;
    return *vocabulary;
}

bool AttributeType::initAliases()
{
    vocabulary();
    return true;
}

// Fills the tables while the library loads, for the first lookup to cost no more than any other.
const bool AttributeType::initAliases_ = initAliases();

QString AttributeType::toString() const
{
    return vocabulary().idsToTags_.value(id_);
}

AttributeType AttributeType::fromString(const QString& tag)
{
    return AttributeType(idFromTag(tag));
}

int AttributeType::idFromTag(const QString& tag)
{
    const Vocabulary& known = vocabulary();
    const int id = known.tagsToIds_.value(tag, InvalidId);
    return id != InvalidId ? id : known.aliases_.value(tag, InvalidId);
}

QList<QString> AttributeType::tags()
{
    QStringList tags = vocabulary().tagsToIds_.keys();
    tags.sort(Qt::CaseSensitive);
    return tags;
}

} // namespace Ovra::Geo
