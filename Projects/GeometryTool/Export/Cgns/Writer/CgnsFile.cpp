#include "CgnsFile.h"

#include "ToolError.h"

#include <QFile>

#include <array>

namespace Ovra::GeoTool
{

CgnsFile::CgnsFile(const QString& path, const QString& target, int cellDimension,
                   int physicalDimension)
    : path_(QFile::encodeName(path))
    , target_(target)
    , physicalDimension_(physicalDimension)
{
    check(cg_set_file_type(CG_FILE_HDF5));
    check(cg_open(path_.constData(), CG_MODE_WRITE, &number_));
    check(cg_base_write(number_, "Case", cellDimension, physicalDimension, &base_));
}

void CgnsFile::check(int status) const
{
    if (status != CG_OK) {
        throw ToolError(ExitCode::OutputFailed,
                        QStringLiteral("cannot write %1: CGNS: %2")
                            .arg(target_, QString::fromLocal8Bit(cg_get_error())));
    }
}

void CgnsFile::go(std::initializer_list<std::pair<const char*, int>> path) const
{
    check(cg_goto(number_, base_, "end"));
    for (const auto& [label, position] : path) {
        check(cg_gorel(number_, label, position, "end"));
    }
}

void CgnsFile::describe(const char* name, const QString& text) const
{
    check(cg_descriptor_write(name, text.toUtf8().constData()));
}

void CgnsFile::close()
{
    check(cg_close(number_));
    // A file that is shorter than HDF5 has noted does not open; to read it all would take as long
    // as to write it.
    int type = CG_FILE_NONE;
    check(cg_is_cgns(path_.constData(), &type));
}

} // namespace Ovra::GeoTool
