#pragma once

#include "AbaqusPart.h"

#include <functional>
#include <optional>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Which sets of an Abaqus model are made of which others.
///
/// A name means a set beside the one that holds it, or one of the instance that INSTANCE names, or
/// with the name of an instance and a full stop in front one of that instance; it may be defined
/// further down in the file.
class AbaqusSetGraph
{
public:
    /// \brief Finds all sets that are named as members.
    ///
    /// Throws ToolError InputDamaged for a name that is none and for sets that contain themselves.
    /// \param bodies what stands outside of parts, and the instances; outlives this object
    /// \param kind elementSets or nodeSets
    AbaqusSetGraph(const std::vector<AbaqusPart>& bodies, AbaqusSets AbaqusPart::*kind);

    /// \brief Calls \p action with body and numbers for all that is in a set, directly or by way of
    /// other sets; numbers that several of them hold come several times.
    /// \param set position in the sets of the body
    void visit(int body, int set,
               const std::function<void(int, const AbaqusSets::Range&)>& action) const;

    /// \brief Position of the set that \p reference means in a body; throws ToolError InputDamaged
    /// if there is none.
    int sectionSet(int body, const AbaqusSets::Reference& reference) const;

private:
    struct Numbers
    {
        int body = 0;
        AbaqusSets::Range range;
    };

    struct Node
    {
        const AbaqusSets::Set* set = nullptr;
        std::vector<int> parts; ///< nodes of the sets that it is made of
        std::vector<Numbers> numbers;
    };

    int nodeOf(int body, int set) const { return firstNode_[static_cast<std::size_t>(body)] + set; }
    const AbaqusSets& setsOf(int body) const
    {
        return bodies_[static_cast<std::size_t>(body)].*kind_;
    }
    int bodyOf(const AbaqusSets::Block& block, int body) const;
    void resolve(int body, const AbaqusSets::Block& block, Node& node) const;
    std::optional<int> find(int body, const QByteArray& written) const;
    bool resolveOfInstance(const QByteArray& written, Node& node) const;
    void requireNoCycle() const;
    void requireNoCycleFrom(int start, std::vector<char>& state) const;

    const std::vector<AbaqusPart>& bodies_;
    AbaqusSets AbaqusPart::*kind_;
    QHash<QByteArray, int> bodyByKey_;
    std::vector<int> firstNode_; ///< by body
    std::vector<Node> nodes_;
};

} // namespace Ovra::GeoTool
