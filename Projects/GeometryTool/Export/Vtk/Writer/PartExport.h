#pragma once

#include "CaseGrid.h"
#include "Partition.h"
#include "PieceFolder.h"

#include <QString>
#include <QStringList>

#include <vtkSmartPointer.h>

class vtkUnstructuredGrid;

namespace Ovra::GeoTool
{

struct ExportJob;

/// \brief Writes the elements in parts: an index, and for each part a file with its elements and its
/// ghosts.
class PartExport
{
public:
    /// \param job whose path is that of the index
    explicit PartExport(const ExportJob& job);

    void write();

private:
    vtkSmartPointer<vtkUnstructuredGrid> pieceOf(int part);
    void addPart(vtkUnstructuredGrid& piece, int part, const CaseGrid::Selection& cells);
    void writeIndex(vtkUnstructuredGrid& piece, const QStringList& files) const;

    const ExportJob& job_;
    Partition partition_;
    PieceFolder folder_;
    CaseGrid grid_;
};

} // namespace Ovra::GeoTool
