#pragma once

#include <QString>

namespace Ovra::GeoTool
{

class CaseView;
class OutputFiles;
class Progress;
struct ExportFormat;

struct ExportOptions
{
    int parts = 1;               ///< pieces to cut the elements into
    bool keepInterfaces = false; ///< no cut parts a periodic pair or a doubled interface
    bool oneZone = false;        ///< CGNS: all regions in one zone
};

/// \brief One export, for the function that writes its format.
struct ExportJob
{
    const CaseView& view;
    const ExportFormat& format;
    QString path; ///< the file to write, as the user named it
    ExportOptions options;
    OutputFiles& files; ///< takes each file that the format has, \ref path itself last
    Progress& progress;
};

/// \brief The attributes file that stands beside an exported file, for its import.
inline QString attributesPath(const QString& output)
{
    return output + QStringLiteral(".json");
}

} // namespace Ovra::GeoTool
