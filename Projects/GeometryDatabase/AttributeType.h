#pragma once

#include "GeometryDatabaseExport.h"

#include <QList>
#include <QString>

namespace Ovra::Geo
{

/// \brief The name of an attribute: a registered tag, represented by a small integer id.
///
/// The vocabulary is closed: the 77 constants below are all there is, and no caller can add to it.
/// Files carry the tags, never the ids, and tags of older files are understood through aliases. A
/// constant's tag is its name in snake case ("in_bl" for InBL).
///
/// The ids ascend in the order of the constants, and with them the order of the keys of an
/// AttributeMap, in which files list attributes; so the order of the constants must never change.
///
/// The whole vocabulary may be used at any time, in the constructors and destructors of static
/// objects too, wherever these are and however the program is linked. The constants are initialised
/// by the compiler rather than by code that runs at start-up; the tables of tags are filled by the
/// first operation that asks for them, at the latest while the library loads, and are never taken
/// down. They are read-only once filled, and filling them is thread-safe.
class OVRA_GEO_EXPORT AttributeType
{
public:
    /// \brief The invalid type.
    constexpr AttributeType() = default;

    /// \brief Whether this is a type of the vocabulary rather than the invalid one.
    constexpr bool isValid() const { return id_ != InvalidId; }

    /// \brief Whether both are the same type of the vocabulary, or both invalid.
    constexpr bool operator==(const AttributeType& other) const { return id_ == other.id_; }

    /// \brief The negation of operator==().
    constexpr bool operator!=(const AttributeType& other) const { return id_ != other.id_; }

    /// \brief The order of the constants, after the invalid type.
    constexpr bool operator<(const AttributeType& other) const { return id_ < other.id_; }

    /// \brief The tag, never an alias; a null text for the invalid type.
    QString toString() const;

    /// \brief The type with this tag or alias, letter case included; the invalid type if there is
    ///        none.
    static AttributeType fromString(const QString& tag);

    /// \brief All tags without the aliases, sorted case-sensitively.
    ///
    /// This order differs from that of the ids: "ex_type" stands before "extruded_entity_id".
    static QList<QString> tags();

    /// \brief The number of tags, which is 77.
    static int count() { return count_; }

    /// \name The vocabulary
    /// With the type that values have by convention, where the library reads or writes them. Names
    /// of entities in values are ids, 0 or -1 meaning none as the operation that reads them says.
    /// \{
    static const AttributeType AssemblyPartIds;
    static const AttributeType BoardCorners;
    static const AttributeType BoardFaces;
    static const AttributeType CaseCorners;
    static const AttributeType CaseFaces; ///< QVariantList of int: ids of model faces
    static const AttributeType CircleRadius;
    static const AttributeType ColdCorners;
    static const AttributeType ColdFaces;        ///< QVariantList of int: ids of model faces
    static const AttributeType CoordinateSystem; ///< int
    static const AttributeType ExCluster;
    static const AttributeType ExDestinationId;
    static const AttributeType ExEdgeList;
    static const AttributeType ExFactor;
    static const AttributeType ExFlavor;
    static const AttributeType ExHeight;
    static const AttributeType ExMode;
    static const AttributeType ExScheme;
    static const AttributeType ExSourceId;
    static const AttributeType ExtrudedEntityId;   ///< int
    static const AttributeType ExtrudedEntityType; ///< int
    static const AttributeType ExtrudedFace;       ///< int
    static const AttributeType ExtrudedWeights;    ///< QVariantList of double
    static const AttributeType ExType;
    static const AttributeType FluidFace;   ///< int
    static const AttributeType FluidRegion; ///< int
    static const AttributeType GenerateBoundaryLayer;
    static const AttributeType HotCorners;
    static const AttributeType HotFaces; ///< QVariantList of int: ids of model faces
    static const AttributeType InBL;     ///< bool
    static const AttributeType IsResist;
    static const AttributeType IsShell;      ///< bool
    static const AttributeType IsSuppressed; ///< bool
    static const AttributeType IsThermal;
    static const AttributeType Layers;
    static const AttributeType MaterialId;   ///< int
    static const AttributeType MaterialType; ///< QString: a material class name
    static const AttributeType MeshBiasFactor;
    static const AttributeType MeshBiasType;
    static const AttributeType MeshByExtrusion; ///< bool
    static const AttributeType MeshCoordinates;
    static const AttributeType MeshDistribution;
    static const AttributeType MeshLengthScaleDistribution;
    static const AttributeType MeshLengthScaleFactor;
    static const AttributeType MeshOffset;
    static const AttributeType MeshSize; ///< copied with the entity
    static const AttributeType MinMeshSize;
    static const AttributeType MotionType;      ///< its presence counts, whatever the value
    static const AttributeType NewMotionRegion; ///< int
    static const AttributeType NewMotionVertex; ///< int
    static const AttributeType NewShellFace;    ///< int
    static const AttributeType NewShellRegion;
    static const AttributeType NonExtrudedFace;      ///< int
    static const AttributeType OriginalMotionRegion; ///< int
    static const AttributeType OriginalMotionVertex; ///< int
    static const AttributeType OriginalShellFace;    ///< int
    static const AttributeType PartHardnessNumber;
    static const AttributeType PeriodicEntityId;    ///< int
    static const AttributeType PeriodicEntityType;  ///< int
    static const AttributeType PeriodicFace;        ///< int
    static const AttributeType PeriodicMatrix;      ///< Matrix
    static const AttributeType PeriodicOrigin;      ///< Vector
    static const AttributeType PeriodicPairId;      ///< int
    static const AttributeType PeriodicSideId;      ///< int
    static const AttributeType PeriodicTranslation; ///< Vector
    static const AttributeType PeriodicWeights;     ///< QVariantList of double
    static const AttributeType PeriodicXAxis;       ///< Vector
    static const AttributeType PeriodicYAxis;       ///< Vector
    static const AttributeType PeriodicZAxis;       ///< Vector
    static const AttributeType RotorFace;           ///< int
    static const AttributeType RotorVertex;         ///< int
    static const AttributeType ShellVertex;         ///< int
    static const AttributeType Side;
    static const AttributeType SolidFace; ///< int
    static const AttributeType SplitEnergy;
    static const AttributeType StatorFace;        ///< int
    static const AttributeType StatorVertex;      ///< int
    static const AttributeType VisualScaleFactor; ///< double
    /// \}

private:
    struct Vocabulary;

    explicit constexpr AttributeType(int id)
        : id_(id)
    {
    }

    static int idFromTag(const QString& tag);
    static const Vocabulary& vocabulary();
    static bool initAliases();

    static constexpr int InvalidId = 0;
    static const int count_;
    static const bool initAliases_;

    qint32 id_ = InvalidId;
};

} // namespace Ovra::Geo
