#pragma once

#include "Box.h"
#include "CaseFiles.h"
#include "MeshQuality.h"

#include <QMap>
#include <QString>

#include <array>
#include <map>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief How many ids of a list either form shows.
inline constexpr std::size_t shownIdCount = 10;

/// \brief Number of entities of one dimension and how their ids lie.
struct IdSummary
{
    int count = 0;
    int largestId = 0;
    int gaps = 0; ///< ids from 1 to largestId that no entity has
};

/// \brief Model regions of one material (faces in a case without), and the mesh elements in them.
struct MaterialSummary
{
    QString type; ///< material_type; empty if the region has none
    int id = 0;   ///< material_id; only if hasId
    bool hasId = false;
    int modelEntityCount = 0;
    int elementCount = 0;
};

/// \brief Model entities of one name.
struct NameSummary
{
    int dimension = 0;
    QString name;
    std::vector<int> ids; ///< ascending
};

/// \brief On how many entities an attribute stands.
struct AttributeSummary
{
    int model = 0; ///< 1 if the model itself has it
    int mesh = 0;
    std::array<int, 4> modelEntities = {};
    std::array<int, 4> meshEntities = {};
};

/// \brief A pair of twins as twinsOf() finds them, by number and name.
struct TwinSummary
{
    QString relation;
    int dimension = 0;
    int originalId = 0;
    QString originalName;
    int copyId = 0;
    QString copyName;
};

/// \brief What a colleague would ask of a case, gathered once; InfoCommand prints it in two forms.
struct CaseSummary
{
    /// \param files those that \p database has been loaded from
    CaseSummary(const CaseFiles& files, const Geo::Database& database, Progress& progress);

    /// \brief The same by a view of that database, which others use too.
    CaseSummary(const CaseFiles& files, const CaseView& view, Progress& progress);

    QString name;
    FileFacts modelFile;
    FileFacts meshFile;
    bool is3d = false;
    bool isPlanar = false; ///< the mesh vertices lie in one plane, of whatever direction
    int coordinateSystem = 0;
    int refinementRegionCount = 0;
    Geo::Box modelBox; ///< as stored in the model file
    Geo::Box meshBox;  ///< of all mesh vertices
    std::array<IdSummary, 4> model;
    std::array<IdSummary, 4> mesh;
    std::array<int, 4> unclassified = {}; ///< mesh entities without a parent
    std::array<int, 4> onOtherDimension =
        {}; ///< mesh entities on a model entity of another dimension
    std::array<std::map<QString, int>, 4> kinds; ///< plural of an element kind, or "unknown"
    std::vector<MaterialSummary> materials;      ///< by type, then id
    std::vector<NameSummary> names; ///< of regions and faces (faces and edges in a case without
                                    ///< regions), by
                                    ///< name; an entity stands under its name and under its tag
    std::vector<TwinSummary> twins;
    QMap<QString, AttributeSummary> attributes; ///< by tag; tags that nobody knows as "(unknown)"
    std::vector<std::pair<int, MeshQuality>>
        quality; ///< of each dimension from 1 that has elements

private:
    void countModel(Geo::Model& ofCase);
    void countMesh(const CaseView& view, Progress& progress);
    void countMeshEntity(Geo::MeshEntity& entity);
    void countMaterials(const CaseView& view);
    void listNames(const CaseView& view);
    void listTwins(const Geo::Model& ofCase);
};

/// \brief The name of a mesh format from its number: "2013", "2014" or "2014a".
QString meshFormatName(int format);

} // namespace Ovra::GeoTool
