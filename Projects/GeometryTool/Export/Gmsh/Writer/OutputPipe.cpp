#include "OutputPipe.h"

#include "ToolError.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace Ovra::GeoTool
{

namespace
{

constexpr int blockSize = 1 << 20;

} // namespace

OutputPipe::OutputPipe()
{
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw ToolError(ExitCode::InternalError, QStringLiteral("cannot open a pipe"));
    }
    reading_ = Descriptor(ends[0]);
    writing_ = Descriptor(ends[1]);
    fcntl(writing_.number(), F_SETPIPE_SZ, blockSize); // fewer changes of process; no matter if not
}

QString OutputPipe::path() const
{
    return QStringLiteral("/proc/self/fd/%1").arg(writing_.number());
}

void OutputPipe::drainInto(QFile& file)
{
    writing_ = Descriptor();
    std::vector<char> block(blockSize);
    for (;;) {
        const ssize_t count = read(reading_.number(), block.data(), block.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            throw ToolError(ExitCode::InternalError, QStringLiteral("a pipe breaks"));
        }
        if (count == 0) {
            return;
        }
        file.write(block.data(), count);
        if (count < blockSize / 2) { // let more gather: the writer hands over 4 KiB at a time
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
}

} // namespace Ovra::GeoTool
