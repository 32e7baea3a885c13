#pragma once

#include <QStringList>

namespace Ovra::GeoTool
{

class CaseFiles;

/// \brief Refuses outputs that cannot be meant, or cannot be, before anything is read or written.
///
/// An output is refused if it would replace an input, whatever path or link leads there, or if its
/// name names nothing: ToolError Usage. One that has no directory to stand in is ToolError
/// OutputFailed.
class OutputCheck
{
public:
    /// \brief Refuses a single file, which may be a device or a pipe.
    static void requireFile(const QString& output, const QStringList& inputs);

    /// \brief Refuses a file that would tell another format by its suffix than it has; a device, a
    /// pipe and standard output need none.
    /// \param suffixes with their dots, in lower case
    static void requireSuffix(const QString& output, const QStringList& suffixes);

    /// \brief Refuses a terminal, which bytes that are no text leave in disorder.
    static void requireNoTerminal(const QString& output);

    /// \brief Refuses a case, whose two files no device can take, that is made from \p inputs.
    static void requireCase(const CaseFiles& output, const QStringList& inputs);

    /// \brief The same for a case made from \p input, which \p output may replace as a whole.
    static void requireCase(const CaseFiles& output, const CaseFiles& input);

    /// \brief Refuses files within the directory \p output.
    static void requireDirectory(const QString& output, const QStringList& files,
                                 const QStringList& inputs);
};

} // namespace Ovra::GeoTool
