#include "FaultInjector.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

bool isArmed = false;
int step = 0;
int wrongStep = 0;
faultInjector::Fault fault;
int wrongError = 0;

template <typename Function>
Function *original(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

/// True when the call is to fail.
bool goesWrong(const char *name, const auto &half)
{
    if (!isArmed)
        return false;
    if (wrongStep < 0)
        std::fprintf(stderr, "%s ", name);
    const int present = step++;
    const bool isFull = fault == faultInjector::Fault::Full && present > wrongStep && wrongStep >= 0;
    if (present != wrongStep && !isFull)
        return false;
    if (present == wrongStep && fault != faultInjector::Fault::Once)
        half();
    if (fault == faultInjector::Fault::Kill)
        _exit(faultInjector::killed);
    errno = wrongError;
    return true;
}

constexpr auto nothing = [] {
};

} // namespace

void faultInjector::arm(int atStep, Fault which, int error)
{
    step = 0;
    wrongStep = atStep;
    fault = which;
    wrongError = error;
    isArmed = true;
}

void faultInjector::disarm()
{
    isArmed = false;
}

// Standard output is written by another thread, at any time.
#define REPLACE_WRITE(name, Offset)                                                                          \
    ssize_t name(int file, const void *bytes, size_t size, Offset offset)                                    \
    {                                                                                                        \
        static auto *real = original<ssize_t(int, const void *, size_t, Offset)>(#name);                     \
        const auto half = [&] {                                                                              \
            real(file, bytes, size / 2, offset);                                                             \
        };                                                                                                   \
        return goesWrong(#name, half) ? -1 : real(file, bytes, size, offset);                                \
    }
#define REPLACE_OPEN(name)                                                                                   \
    int name(const char *path, int flags, ...)                                                               \
    {                                                                                                        \
        static auto *real = original<int(const char *, int, ...)>(#name);                                    \
        va_list rest;                                                                                        \
        va_start(rest, flags);                                                                               \
        const mode_t mode = flags & O_CREAT ? va_arg(rest, mode_t) : 0;                                      \
        va_end(rest);                                                                                        \
        const bool changes = (flags & O_ACCMODE) != O_RDONLY;                                                \
        return changes && goesWrong(#name, nothing) ? -1 : real(path, flags, mode);                          \
    }
#define REPLACE(name, Parameters, Arguments, Exceptions)                                                     \
    int name Parameters Exceptions                                                                           \
    {                                                                                                        \
        static auto *real = original<int Parameters>(#name);                                                 \
        return goesWrong(#name, nothing) ? -1 : real Arguments;                                              \
    }

extern "C" {

ssize_t write(int file, const void *bytes, size_t size)
{
    static auto *real = original<ssize_t(int, const void *, size_t)>("write");
    const auto half = [&] {
        real(file, bytes, size / 2);
    };
    return file > STDERR_FILENO && goesWrong("write", half) ? -1 : real(file, bytes, size);
}

ssize_t read(int file, void *bytes, size_t size)
{
    static auto *real = original<ssize_t(int, void *, size_t)>("read");
    const bool mayFail = file > STDERR_FILENO && fault == faultInjector::Fault::Once;
    return mayFail && goesWrong("read", nothing) ? -1 : real(file, bytes, size);
}

REPLACE_WRITE(pwrite, off_t)
REPLACE_WRITE(pwrite64, off64_t)
REPLACE_OPEN(open)
REPLACE_OPEN(open64)
REPLACE(fsync, (int file), (file), )
REPLACE(fdatasync, (int file), (file), )
REPLACE(fallocate, (int file, int mode, off_t start, off_t size), (file, mode, start, size), )
REPLACE(ftruncate, (int file, off_t size), (file, size), noexcept)
REPLACE(ftruncate64, (int file, off64_t size), (file, size), noexcept)
REPLACE(rename, (const char *from, const char *to), (from, to), noexcept)
REPLACE(unlink, (const char *path), (path), noexcept)

} // extern "C"
