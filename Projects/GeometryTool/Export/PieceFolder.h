#pragma once

#include <QString>

#include <functional>

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
    /// \brief Throws ToolError where there can be no such folder: Usage if the name of \p output
    /// leaves none for it, as "wing" and ".vtm" do, OutputFailed if a file of that name stands there.
    /// \param suffix of the format, for the message
    static void require(const QString& output, const QString& suffix);

    /// \brief Makes the folder, if it is missing.
    /// \pre require() has let the job's path through.
    explicit PieceFolder(const ExportJob& job);

    /// \brief Writes a new file in the folder; what else stands there stays.
    /// \param fill called once with the file, open for writing
    void write(const QString& fileName, const std::function<void(QFile&)>& fill) const;

    /// \brief The path of a file in the folder, as the output names it: "wing/region_2.vtu".
    QString reference(const QString& fileName) const;

private:
    void outdatePieces() const;

    const ExportJob& job_;
    QString name_;
    QString path_;
};

} // namespace Ovra::GeoTool
