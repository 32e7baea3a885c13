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
    /// With the type that values have by convention, where the library reads or writes them; what is
    /// "carried only" it just keeps. Names of entities are ids, 0 or -1 for none as the reader says.
    /// \{
    static const AttributeType AssemblyPartIds;       ///< carried only
    static const AttributeType BoardCorners;          ///< carried only
    static const AttributeType BoardFaces;            ///< carried only
    static const AttributeType CaseCorners;           ///< carried only
    static const AttributeType CaseFaces;             ///< QVariantList of int: ids of model faces
    static const AttributeType CircleRadius;          ///< carried only
    static const AttributeType ColdCorners;           ///< carried only
    static const AttributeType ColdFaces;             ///< QVariantList of int: ids of model faces
    static const AttributeType CoordinateSystem;      ///< int
    static const AttributeType ExCluster;             ///< carried only
    static const AttributeType ExDestinationId;       ///< carried only
    static const AttributeType ExEdgeList;            ///< carried only
    static const AttributeType ExFactor;              ///< carried only
    static const AttributeType ExFlavor;              ///< carried only
    static const AttributeType ExHeight;              ///< carried only
    static const AttributeType ExMode;                ///< carried only
    static const AttributeType ExScheme;              ///< carried only
    static const AttributeType ExSourceId;            ///< carried only
    static const AttributeType ExtrudedEntityId;      ///< int
    static const AttributeType ExtrudedEntityType;    ///< int
    static const AttributeType ExtrudedFace;          ///< int
    static const AttributeType ExtrudedWeights;       ///< QVariantList of double
    static const AttributeType ExType;                ///< carried only
    static const AttributeType FluidFace;             ///< int
    static const AttributeType FluidRegion;           ///< int
    static const AttributeType GenerateBoundaryLayer; ///< carried only
    static const AttributeType HotCorners;            ///< carried only
    static const AttributeType HotFaces;              ///< QVariantList of int: ids of model faces
    static const AttributeType InBL;                  ///< bool
    static const AttributeType IsResist;              ///< carried only
    static const AttributeType IsShell;               ///< bool
    static const AttributeType IsSuppressed;          ///< bool
    static const AttributeType IsThermal;             ///< carried only
    static const AttributeType Layers;                ///< carried only
    static const AttributeType MaterialId;            ///< int
    static const AttributeType MaterialType;          ///< QString: a material class name
    static const AttributeType MeshBiasFactor;        ///< carried only
    static const AttributeType MeshBiasType;          ///< carried only
    static const AttributeType MeshByExtrusion;       ///< bool
    static const AttributeType MeshCoordinates;       ///< carried only
    static const AttributeType MeshDistribution;      ///< carried only
    static const AttributeType MeshLengthScaleDistribution; ///< carried only
    static const AttributeType MeshLengthScaleFactor;       ///< carried only
    static const AttributeType MeshOffset;                  ///< carried only
    static const AttributeType MeshSize;                    ///< copied with the entity
    static const AttributeType MinMeshSize;                 ///< carried only
    static const AttributeType MotionType;           ///< its presence counts, whatever the value
    static const AttributeType NewMotionRegion;      ///< int
    static const AttributeType NewMotionVertex;      ///< int
    static const AttributeType NewShellFace;         ///< int
    static const AttributeType NewShellRegion;       ///< carried only
    static const AttributeType NonExtrudedFace;      ///< int
    static const AttributeType OriginalMotionRegion; ///< int
    static const AttributeType OriginalMotionVertex; ///< int
    static const AttributeType OriginalShellFace;    ///< int
    static const AttributeType PartHardnessNumber;   ///< carried only
    static const AttributeType PeriodicEntityId;     ///< int
    static const AttributeType PeriodicEntityType;   ///< int
    static const AttributeType PeriodicFace;         ///< int
    static const AttributeType PeriodicMatrix;       ///< Matrix
    static const AttributeType PeriodicOrigin;       ///< Vector
    static const AttributeType PeriodicPairId;       ///< int
    static const AttributeType PeriodicSideId;       ///< int
    static const AttributeType PeriodicTranslation;  ///< Vector
    static const AttributeType PeriodicWeights;      ///< QVariantList of double
    static const AttributeType PeriodicXAxis;        ///< Vector
    static const AttributeType PeriodicYAxis;        ///< Vector
    static const AttributeType PeriodicZAxis;        ///< Vector
    static const AttributeType RotorFace;            ///< int
    static const AttributeType RotorVertex;          ///< int
    static const AttributeType ShellVertex;          ///< int
    static const AttributeType Side;                 ///< carried only
    static const AttributeType SolidFace;            ///< int
    static const AttributeType SplitEnergy;          ///< carried only
    static const AttributeType StatorFace;           ///< int
    static const AttributeType StatorVertex;         ///< int
    static const AttributeType VisualScaleFactor;    ///< double
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
