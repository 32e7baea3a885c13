#pragma once

#include "CaseGrid.h"
#include "PieceFolder.h"

#include <QHash>
#include <QString>

#include <vector>

namespace Ovra::GeoTool
{

struct ExportJob;

/// \brief Writes a case as a multi-block data set: a block of regions and one of faces, and in each
/// one for each model entity, by name.
class BlockExport
{
public:
    explicit BlockExport(const ExportJob& job);

    void write();

private:
    struct Block
    {
        QString name;
        QString file;
    };
    using Blocks = std::vector<Block>;
    using Children = QHash<const Geo::ModelEntity*, CaseGrid::Selection>;

    template <typename WriteOne>
    Blocks writeAll(int dimension, const QString& suffix, WriteOne writeOne);
    Children childrenOf(int dimension) const;
    void tellOfOthers(int dimension, const Children& children) const;
    void writeIndex(const Blocks& regions, const Blocks& faces) const;

    const ExportJob& job_;
    PieceFolder folder_;
    CaseGrid grid_;
};

} // namespace Ovra::GeoTool
