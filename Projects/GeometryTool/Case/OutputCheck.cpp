#include "OutputCheck.h"

#include "CaseFiles.h"
#include "OutputFiles.h"
#include "ToolError.h"

#include <QFileInfo>

#include <algorithm>

namespace Ovra::GeoTool
{

namespace
{

void requireName(bool named, const QString& output, const QString& kind)
{
    if (!named) {
        throw ToolError(ExitCode::Usage,
                        QStringLiteral("the output \"%1\" names no %2").arg(output, kind));
    }
}

bool namesFile(const QString& path)
{
    const QString name = QFileInfo(path).fileName();
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..");
}

/// Standard output is a device by name even where it has been led into a file.
bool isDevice(const QString& path)
{
    const QString directory = QFileInfo(path).absolutePath();
    return OutputFiles::isStandardOutput(path) || OutputFiles::isDeviceOrPipe(path) ||
           directory == QLatin1String("/dev") || directory == QLatin1String("/dev/fd");
}

void requireCaseName(const CaseFiles& output)
{
    requireName(namesFile(output.name()), output.name(), QStringLiteral("case"));
    if (isDevice(output.name())) {
        throw ToolError(ExitCode::Usage, QStringLiteral("cannot write a case to %1: a case is two "
                                                        "files, not a device")
                                             .arg(output.name()));
    }
}

void requireSpared(const QStringList& outputs, const QStringList& inputs)
{
    for (const QString& output : outputs) {
        for (const QString& input : inputs) {
            if (OutputFiles::replaces(output, input)) {
                throw ToolError(ExitCode::Usage,
                                QStringLiteral("the output %1 is the input %2; give another name")
                                    .arg(output, input));
            }
        }
    }
}

bool replacesAsAWhole(const CaseFiles& output, const CaseFiles& input)
{
    return OutputFiles::replaces(output.modelPath(), input.modelPath()) &&
           OutputFiles::replaces(output.meshPath(), input.meshPath());
}

} // namespace

void OutputCheck::requireFile(const QString& output, const QStringList& inputs)
{
    requireName(namesFile(output), output, QStringLiteral("file"));
    requireSpared({output}, inputs);
    if (!OutputFiles::isStandardOutput(output)) {
        OutputFiles::requireReplaceable(output);
    }
}

void OutputCheck::requireSuffix(const QString& output, const QStringList& suffixes)
{
    const bool fits = std::any_of(suffixes.begin(), suffixes.end(), [&](const QString& suffix) {
        return output.endsWith(suffix, Qt::CaseInsensitive);
    });
    if (!fits && !isDevice(output)) {
        throw ToolError(ExitCode::Usage, QStringLiteral("the output %1 must have the suffix %2")
                                             .arg(output, suffixes.join(QStringLiteral(" or "))));
    }
}

void OutputCheck::requireNoTerminal(const QString& output)
{
    if (OutputFiles::isTerminal(output)) {
        throw ToolError(ExitCode::Usage,
                        QStringLiteral("cannot write to %1: it is a terminal, and the file is no "
                                       "text; name a file to write")
                            .arg(output));
    }
}

void OutputCheck::requireCase(const CaseFiles& output, const QStringList& inputs)
{
    requireCaseName(output);
    requireSpared(output.paths(), inputs);
    for (const QString& path : output.paths()) {
        OutputFiles::requireReplaceable(path);
    }
}

void OutputCheck::requireCase(const CaseFiles& output, const CaseFiles& input)
{
    requireCase(output, replacesAsAWhole(output, input) ? QStringList() : input.paths());
}

void OutputCheck::requireDirectory(const QString& output, const QStringList& files,
                                   const QStringList& inputs)
{
    requireName(!output.isEmpty(), output, QStringLiteral("directory"));
    requireSpared(files, inputs);
}

} // namespace Ovra::GeoTool
