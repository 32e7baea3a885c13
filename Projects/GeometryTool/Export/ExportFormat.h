#pragma once

#include "ModuleLoading.h"

#include <QString>

#include <vector>

namespace Ovra::GeoTool
{

struct ExportJob;

/// \brief A format that `ovrageo export` writes, chosen by the suffix of the output.
struct ExportFormat
{
    /// Whether a pipe or standard output can take the file: it is text, written in one go.
    enum class Content
    {
        Text,
        Binary
    };

    QString suffix; ///< without the dot, in lower case
    QString description;
    Content content = Content::Binary;
    QString partsSuffix; ///< of the format in which it is written in parts; empty if in none
    ModuleLoading (*require)() =
        nullptr; ///< begins to load what writes it; throws ToolError where this build has none
    void (*write)(const ExportJob& job) = nullptr;
    bool hasAttributes = false; ///< an attributes file stands beside it
    bool hasFolder = false;     ///< it refers to files in a PieceFolder beside it

    /// \brief All formats, in the order in which the help lists them.
    static const std::vector<ExportFormat>& all();

    /// \brief The format of that suffix, in whatever case; throws ToolError Usage, with all that
    /// are known, if there is none.
    static const ExportFormat& ofSuffix(const QString& suffix);

    /// \brief The format of a file by its name; throws as ofSuffix() does.
    static const ExportFormat& ofFile(const QString& path);

    bool hasParts() const { return !partsSuffix.isEmpty(); }

    /// \brief ".vtu, .vtp, ...".
    static QString suffixes();

    /// \brief The same of those that can be written in parts.
    static QString suffixesWithParts();
};

} // namespace Ovra::GeoTool
