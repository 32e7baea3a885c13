#include "QuietStreams.h"

#include <cstdio>
#include <fcntl.h>
#include <iostream>
#include <unistd.h>

namespace Ovra::GeoTool
{

namespace
{

void flushAll()
{
    std::cout.flush();
    std::cerr.flush();
    std::fflush(stdout);
    std::fflush(stderr);
}

void restore(int saved, int stream)
{
    if (saved < 0) {
        return;
    }
    dup2(saved, stream);
    close(saved);
}

} // namespace

QuietStreams::QuietStreams()
{
    flushAll();
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0) {
        return;
    }
    output_ = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    error_ = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
    if (output_ >= 0) {
        dup2(nowhere, STDOUT_FILENO);
    }
    if (error_ >= 0) {
        dup2(nowhere, STDERR_FILENO);
    }
    close(nowhere);
}

QuietStreams::~QuietStreams()
{
    flushAll();
    restore(output_, STDOUT_FILENO);
    restore(error_, STDERR_FILENO);
}

} // namespace Ovra::GeoTool
