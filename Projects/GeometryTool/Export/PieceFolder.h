#pragma once

#include <QString>

class QFile;

namespace Ovra::GeoTool
{

struct ExportJob;

/// \brief The folder beside an output that is made of several files: "wing" beside "wing.vtm".
///
/// Those files in it to which an output of the same name refers that stands there already, and to
/// which the new one does not, go when that is in place.
class PieceFolder
{
public:
    /// \brief Makes the folder, if it is missing.
    explicit PieceFolder(const ExportJob& job);

    /// \brief A new file in the folder; what else stands there stays.
    QFile& add(const QString& fileName) const;

    /// \brief The path of a file in the folder, as the output names it: "wing/region_2.vtu".
    QString reference(const QString& fileName) const;

private:
    void outdatePieces() const;

    const ExportJob& job_;
    QString name_;
    QString path_;
};

} // namespace Ovra::GeoTool
