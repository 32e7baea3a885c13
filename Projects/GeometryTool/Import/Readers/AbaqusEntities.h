#pragma once

#include "AbaqusPart.h"
#include "AbaqusSetGraph.h"

#include <QByteArray>
#include <QHash>

#include <map>
#include <set>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Makes nodes, discrete entities and physical groups in Gmsh's current model of the bodies
/// of an Abaqus model.
///
/// The elements of one dimension that are in the same groups become one entity. Groups are, in this
/// order, the sets that a section names, the other sets of *ELSET, those of *ELEMENT, the
/// instances, and the materials of the sections; a set of an instance stands as "INSTANCE.SET". An
/// instance or a material whose name an earlier group has got makes none, nor do the sets that a
/// preprocessor calls internal.
class AbaqusEntities
{
public:
    /// \param bodies what stands outside of parts, and the instances; outlives this object. Nodes
    /// and elements are numbered on from one body to the next
    /// \param sets their sets of elements
    AbaqusEntities(const std::vector<AbaqusPart>& bodies, const AbaqusSetGraph& sets);

    /// \brief Makes all in Gmsh; throws ToolError InputDamaged for a section of a set that is not
    /// there.
    void make();

private:
    /// One more group that an element is in, beside those of another signature.
    struct Signature
    {
        int others = -1;
        int group = -1;
    };

    struct Member
    {
        std::size_t body = 0;
        std::size_t position = 0;
    };

    using Key = std::pair<int, int>; ///< dimension and signature
    using Entity = std::pair<Key, std::vector<Member>>;

    void numberOn();
    void findSectionSets();
    int rankOf(int body, int set) const;
    void addSets(int rank);
    void addInstances();
    void addMaterials();
    int addGroup(const AbaqusLabel& name);
    void enterSet(int group, int body, int set);
    void enter(int group, int body, const AbaqusSets::Range& range);
    void enter(int group, std::size_t element);
    std::vector<Entity> collect() const;
    void addNodes(int dimension, int entity) const;
    void addElements(int entity, const std::vector<Member>& members) const;
    void addPhysicalGroups(const std::vector<Entity>& entities, const std::vector<int>& tags) const;
    std::vector<int> groupsOf(int signature) const;

    const std::vector<AbaqusPart>& bodies_;
    const AbaqusSetGraph& sets_;
    std::set<std::pair<int, int>> sectionSets_; ///< body and set
    std::vector<std::size_t> firstElement_;     ///< by body, in signatureOf_
    std::vector<std::size_t> nodeOffset_;       ///< by body, from its numbers to Gmsh's
    std::vector<std::size_t> elementOffset_;
    std::vector<QByteArray> groupNames_;
    QHash<QByteArray, int> groupByKey_;
    std::vector<Signature> signatures_;
    std::vector<int> signatureOf_;               ///< by element; -1 for none
    std::map<std::pair<int, int>, int> refined_; ///< by signature and one more group
};

} // namespace Ovra::GeoTool
