#pragma once

#include "ExitCode.h"

#include <QByteArray>
#include <QString>

#include <exception>

namespace Ovra::GeoTool
{

/// \brief Ends a subcommand: main() prints the text as the one line on standard error and exits
/// with the code.
///
/// The text says what is wrong, in which file, and where in it, without a full stop or a line feed.
class ToolError : public std::exception
{
public:
    ToolError(ExitCode exitCode, const QString& text)
        : exitCode_(exitCode)
        , text_(text)
        , bytes_(text.toUtf8())
    {
    }

    ExitCode exitCode() const { return exitCode_; }
    QString text() const { return text_; }
    const char* what() const noexcept override { return bytes_.constData(); }

private:
    ExitCode exitCode_;
    QString text_;
    QByteArray bytes_;
};

} // namespace Ovra::GeoTool
