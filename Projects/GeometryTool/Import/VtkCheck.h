#pragma once

#include <QByteArray>
#include <QString>

class QFile;

namespace Ovra::GeoTool
{

/// \brief Whether a legacy VTK file has as many types of cells as announced, and whole tables behind
/// them.
///
/// The types of the cells come behind points and cells, and so tell of these too.
class VtkCheck
{
public:
    /// \brief Throws ToolError, InputDamaged, if \p file, open and at its start, is not whole.
    static void check(QFile& file);

    /// \brief What the line DATASET of a legacy file names, "POLYDATA" for instance; empty if none
    /// does.
    static QByteArray dataset(const QString& path);
};

} // namespace Ovra::GeoTool
