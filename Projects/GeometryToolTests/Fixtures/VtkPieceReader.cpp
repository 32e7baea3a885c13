// Reads a .pvtu as any program under MPI does: each process takes the piece of its rank. The first one
// prints how many cells and points there are that are no ghosts, the volume of those cells, and how
// many cells are ghosts.
#include <array>
#include <cstdio>
#include <mpi.h>
#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLPUnstructuredGridReader.h>

namespace
{

/// Own cells, own points, volume of own cells, ghost cells.
std::array<double, 4> countPiece(const char* path, int piece, int count)
{
    vtkNew<vtkXMLPUnstructuredGridReader> reader;
    reader->SetFileName(path);
    reader->UpdateInformation();
    reader->UpdatePiece(piece, count, 1);
    vtkUnstructuredGrid* const grid = reader->GetOutput();
    vtkDataArray* const ghostCells = grid->GetCellData()->GetArray("vtkGhostType");
    vtkDataArray* const ghostPoints = grid->GetPointData()->GetArray("vtkGhostType");
    vtkDataArray* const volumes = grid->GetCellData()->GetArray("volume");
    std::array<double, 4> counts = {};
    for (vtkIdType cell = 0; cell < grid->GetNumberOfCells(); ++cell) {
        const bool isOwn = ghostCells->GetTuple1(cell) == 0.0;
        counts[0] += isOwn ? 1 : 0;
        counts[2] += isOwn ? volumes->GetTuple1(cell) : 0;
        counts[3] += isOwn ? 0 : 1;
    }
    for (vtkIdType point = 0; point < grid->GetNumberOfPoints(); ++point) {
        counts[1] += ghostPoints->GetTuple1(point) == 0.0 ? 1 : 0;
    }
    return counts;
}

} // namespace

int main(int argc, char** argv)
{
    MPI_Init(&argc, &argv);
    int rank = 0;
    int size = 0;
    MPI_Comm_rank(MPI_COMM_WORLD, &rank);
    MPI_Comm_size(MPI_COMM_WORLD, &size);
    const std::array<double, 4> own = countPiece(argv[1], rank, size);
    std::array<double, 4> all = {};
    MPI_Reduce(own.data(), all.data(), 4, MPI_DOUBLE, MPI_SUM, 0, MPI_COMM_WORLD);
    if (rank == 0) {
        std::printf("%g cells, %g points, volume %g, %g ghosts\n", all[0], all[1], all[2], all[3]);
    }
    MPI_Finalize();
    return 0;
}
