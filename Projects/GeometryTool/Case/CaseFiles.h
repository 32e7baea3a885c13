#pragma once

#include "Database.h"
#include "MeshSerializer.h"
#include "Version.h"

#include <QStringList>

namespace Ovra::GeoTool
{

class Progress;

/// \brief What the header of a model or mesh file says.
struct FileFacts
{
    QString path;
    qint64 size = 0;        ///< bytes
    int format = 0;         ///< as numbered in the file; 1 where an old header has no number
    bool oldHeader = false; ///< the file begins with a version 10 to 14 in place of a format number
    Geo::Version version;
    int headerSize = 0;       ///< bytes in front of the content
    qint64 trailingBytes = 0; ///< bytes behind the end of the content
};

/// \brief A Database that gives its refinement regions back too when it goes.
class CaseDatabase : public Geo::Database
{
public:
    CaseDatabase() = default;
    ~CaseDatabase();
};

/// \brief A case on disk: the pair NAME.geo_model and NAME.geo_mesh.
///
/// The name may carry a directory, and either suffix or none.
class CaseFiles
{
public:
    static constexpr auto LatestMeshFormat = Geo::MeshSerializer::Format2014a;

    /// \brief Whether load() finds what uses a mesh vertex and what lies on both sides of a mesh face,
    /// which takes two fifths of its time.
    ///
    /// A mesh for which it would take time or memory out of all proportion, as no mesher makes one, is
    /// damaged where the lists are made. Without them it is read as it stands; UpwardPositions refuses
    /// it when it is asked.
    enum class UpwardLists
    {
        Made,
        LeftOut
    };

    explicit CaseFiles(const QString& name);

    /// \brief Path of the case without a suffix.
    QString name() const { return name_; }
    QString modelPath() const;
    QString meshPath() const;
    QStringList paths() const { return {modelPath(), meshPath()}; }

    /// \brief Reads model and mesh into \p database, which must be empty.
    ///
    /// Throws ToolError: InputMissing for a file that is missing or cannot be opened, InputDamaged
    /// for one that is truncated, of another kind, or names entities that do not exist; \p database
    /// is then in no defined state. Bytes behind the end of a file's content are a warning, unless
    /// the content is empty: then they are damage. Without upward lists the mesh has no version
    /// either.
    void load(Geo::Database& database, Progress& progress, UpwardLists lists = UpwardLists::Made);

    /// \brief Facts of the files that load() has read.
    const FileFacts& modelFacts() const { return modelFacts_; }
    const FileFacts& meshFacts() const { return meshFacts_; }

    /// \brief Writes model and mesh; either both files are replaced or neither is.
    ///
    /// The formats 2014 and 2014a keep no parent dimension for mesh edges, faces and regions; see
    /// unkeptParentCount(). A mesh that holds such parents is refused with ToolError Unsuitable,
    /// unless \p dropParents: then those entities lose their parent, in \p database too, with a
    /// warning. Throws ToolError OutputFailed when a file cannot be written.
    void save(Geo::Database& database, Progress& progress,
              Geo::MeshSerializer::Format meshFormat = LatestMeshFormat,
              bool dropParents = false) const;

    /// \brief Number of mesh edges, faces and regions classified on a model entity of another
    /// dimension.
    static int unkeptParentCount(const Geo::Database& database);

private:
    QString name_;
    FileFacts modelFacts_;
    FileFacts meshFacts_;
};

} // namespace Ovra::GeoTool
