// Preloaded into the tool by tests: the system calls that bring an output into its place, of which
// one goes wrong.
//
// FAULTY_AT says which one, counted from 1 on: it fails with the error number FAULTY_ERRNO, or the
// process is killed ahead of it if that is "kill". FAULTY_MARK is a file that is made when it does.
// With FAULTY_NO_TMPFILE there are no files without names, with FAULTY_NO_LINKS none with two.

#ifndef _GNU_SOURCE
#define _GNU_SOURCE 1
#endif

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

template <typename Function>
Function next(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

/// So that the test knows that there was such a call.
void leaveMark()
{
    const char* const mark = std::getenv("FAULTY_MARK");
    if (mark) {
        close(next<int (*)(const char*, int, mode_t)>("open")(mark, O_CREAT | O_WRONLY, 0600));
    }
}

/// True if the call that is about to happen has to fail; errno is set.
bool fails()
{
    static int count = 0;
    const char* const at = std::getenv("FAULTY_AT");
    if (!at || ++count != std::atoi(at)) {
        return false;
    }
    leaveMark();
    const char* const error = std::getenv("FAULTY_ERRNO");
    if (error && std::strcmp(error, "kill") == 0) {
        raise(SIGKILL);
    }
    errno = error ? std::atoi(error) : EIO;
    return true;
}

bool isSet(const char* variable)
{
    return std::getenv(variable) != nullptr;
}

int openFile(const char* name, const char* path, int flags, mode_t mode)
{
    if ((flags & O_TMPFILE) == O_TMPFILE && isSet("FAULTY_NO_TMPFILE")) {
        errno = EOPNOTSUPP;
        return -1;
    }
    if ((flags & O_ACCMODE) != O_RDONLY && fails()) {
        return -1;
    }
    return next<int (*)(const char*, int, mode_t)>(name)(path, flags, mode);
}

mode_t modeOf(int flags, va_list arguments)
{
    const bool creates = (flags & (O_CREAT | O_TMPFILE)) != 0;
    return creates ? static_cast<mode_t>(va_arg(arguments, unsigned)) : 0;
}

bool refusesLinks()
{
    if (isSet("FAULTY_NO_LINKS")) {
        errno = EPERM;
        return true;
    }
    return false;
}

} // namespace

extern "C" {

int open(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openFile("open", path, flags, mode);
}

int open64(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openFile("open64", path, flags, mode);
}

ssize_t write(int file, const void* data, size_t size)
{
    const bool isOutput = file > STDERR_FILENO;
    return isOutput && fails()
               ? -1
               : next<ssize_t (*)(int, const void*, size_t)>("write")(file, data, size);
}

int fsync(int file)
{
    return fails() ? -1 : next<int (*)(int)>("fsync")(file);
}

int fchmod(int file, mode_t mode)
{
    return fails() ? -1 : next<int (*)(int, mode_t)>("fchmod")(file, mode);
}

int flock(int file, int operation)
{
    return fails() ? -1 : next<int (*)(int, int)>("flock")(file, operation);
}

int link(const char* from, const char* to)
{
    return refusesLinks() || fails() ? -1
                                     : next<int (*)(const char*, const char*)>("link")(from, to);
}

int linkat(int fromDirectory, const char* from, int toDirectory, const char* to, int flags)
{
    return fails() ? -1
                   : next<int (*)(int, const char*, int, const char*, int)>("linkat")(
                         fromDirectory, from, toDirectory, to, flags);
}

int rename(const char* from, const char* to)
{
    return fails() ? -1 : next<int (*)(const char*, const char*)>("rename")(from, to);
}

int unlink(const char* path)
{
    return fails() ? -1 : next<int (*)(const char*)>("unlink")(path);
}

} // extern "C"
