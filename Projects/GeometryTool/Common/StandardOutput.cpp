#include "StandardOutput.h"

#include "ToolError.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace Ovra::GeoTool
{

void printToStandardOutput(const QByteArray& bytes)
{
    const auto size = static_cast<std::size_t>(bytes.size());
    const bool written =
        std::fwrite(bytes.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0;
    if (!written) {
        throw ToolError(ExitCode::OutputFailed,
                        QStringLiteral("cannot write standard output: %1")
                            .arg(QString::fromLocal8Bit(std::strerror(errno))));
    }
}

} // namespace Ovra::GeoTool
