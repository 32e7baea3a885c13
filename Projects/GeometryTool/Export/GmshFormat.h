#pragma once

#include <QString>

#include <limits>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief What one of the formats that Gmsh writes can hold of a case.
///
/// Documentation/Export.md has the table of it, which a test holds against what an import makes of
/// each.
struct GmshFormat
{
    /// What becomes of the ids of model entities on the way out and back in.
    enum class Numbers
    {
        Lost,
        Counted, ///< from 1 in each dimension, in their order
        Kept
    };

    /// What becomes of their names.
    enum class Names
    {
        Lost,
        OfBoundaries, ///< only what bounds the elements has names
        Kept
    };

    /// What a name of the format must be like.
    struct NameRule
    {
        QString forbidden; ///< characters that have another meaning there
        int longest = 120; ///< bytes; Gmsh itself takes 127 at most
        bool isCaseless = false;
        bool isShared = false; ///< the dimensions have one set of names among them
        QString reserved = {}; ///< a pattern of names that Gmsh gives itself
    };

    QString suffix;
    QString title;      ///< in messages
    QString gmshSuffix; ///< by which Gmsh tells it
    std::vector<std::pair<const char*, double>> gmshOptions;
    int lowestDimension = 0; ///< of the mesh entities that it holds
    int highestDimension = 3;
    std::vector<int> missingKinds; ///< of solids that Gmsh does not write to it, by their vertices
    bool hasRegions = true;        ///< tells the elements of one region from those of another
    bool hasEmptyRegions = false;
    /// Of nodes, elements and entities: columns of a fixed width have no room for more digits.
    int highestNumber = std::numeric_limits<int>::max();
    Numbers numbers = Numbers::Kept;
    Names names = Names::Kept;
    NameRule nameRule = {};
    bool groupsAll = true;          ///< what has no name has a group too, which holds it together
    bool hasMaterialGroups = false; ///< an element can be in several groups

    /// \brief Whether an import finds the entities again, so that an attributes file can name them.
    bool comesBack() const { return numbers != Numbers::Lost; }

    static const std::vector<GmshFormat>& all();

    /// \pre one of them has that suffix
    static const GmshFormat& ofSuffix(const QString& suffix);
};

} // namespace Ovra::GeoTool
