// Reads a case, as all that a process does: geometry-read BASE. It is linked to nothing but what that takes, since to
// load a library counts as well, and leaves the case to the end of the process, as commands of ovrageo do.

#include "Database.h"
#include "Mesh.h"
#include "StoredCase.h"

#include <cstdlib>

int main(int argc, char** argv)
{
    if (argc != 2) {
        return EXIT_FAILURE;
    }
    const auto* const database =
        Benchmarks::StoredCase::read(QString::fromLocal8Bit(argv[1])).release();
    std::_Exit(database->mesh()->count(0) > 0 ? EXIT_SUCCESS : EXIT_FAILURE);
}
