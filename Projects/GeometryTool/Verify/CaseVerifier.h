#pragma once

#include "CaseFindings.h"

#include <QFlags>

namespace Ovra::Geo
{
class Database;
}

namespace Ovra::GeoTool
{

class CaseView;
class Progress;

/// \brief Looks whether a case in memory is sound, and says what is wrong where.
///
/// It goes by the vertex lists of the mesh, whether the upward lists are set or not. Works in n log n
/// for n entities. Documentation/Verify.md has the rules, one for each FindingKind.
class CaseVerifier
{
public:
    enum Topic
    {
        Pointers = 1,       ///< pointers to what is in neither model nor mesh, never followed;
                            ///< where there are any, the other topics are left out
        Elements = 2,       ///< vertices, vertex lists, shape, use of vertices
        Classification = 4, ///< parents
        ModelLinks = 8,     ///< links between model entities
        Surfaces = 16,      ///< which elements lie on which mesh face
        Attributes = 32,    ///< types, values, and the entities they name
        Pairs = 64,         ///< periodic and extruded pairs, replicas, rotors
        ContentTopics = Elements | Classification | ModelLinks | Surfaces | Attributes | Pairs,
        AllTopics = Pointers | ContentTopics ///< a case just read needs ContentTopics only
    };
    Q_DECLARE_FLAGS(Topics, Topic)

    /// \param database not owned; must outlive this object
    explicit CaseVerifier(const Geo::Database& database);

    /// \brief Checks \p topics.
    /// \param limit how many findings of a kind to keep with their text
    CaseFindings verify(Progress& progress, Topics topics = AllTopics,
                        int limit = CaseFindings::DefaultLimit) const;

    /// \brief The same of a case whose view is there already, with what was found out through it.
    static CaseFindings verify(const CaseView& view, Progress& progress, Topics topics,
                               int limit = CaseFindings::DefaultLimit);

private:
    const Geo::Database& database_;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(CaseVerifier::Topics)

} // namespace Ovra::GeoTool
