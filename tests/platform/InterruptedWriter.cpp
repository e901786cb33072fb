#include "platform/ProtectedFile.h"
#include "platform/WholeFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

// Writes a file as the program does and is interrupted at the step it is told: `interrupted_writer FILE STATE
// TEXT STEP kill|fail`. Without STATE, the file is replaced. The system calls that change a file are replaced
// by ones that count; at the given count, half of the work is done and then the process dies or, from then
// on, every call fails. Ends with 0 when the write succeeded, 1 when it failed, 9 when it was killed. With
// STEP -1 it names the calls on standard output instead.

namespace {

int step = 0;
int lastStep = 0;
bool isWriting = false;
bool killed = false;

template <typename Function>
Function *original(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

/// True when the call is to fail with a full disk.
bool interrupt(const char *name)
{
    if (!isWriting)
        return false;
    if (lastStep < 0)
        std::fprintf(stderr, "%s ", name);
    if (lastStep < 0 || step++ < lastStep)
        return false;
    if (killed)
        _exit(9);
    errno = ENOSPC;
    return true;
}

} // namespace

extern "C" {

ssize_t write(int file, const void *bytes, size_t size)
{
    static auto *real = original<ssize_t(int, const void *, size_t)>("write");
    if (isWriting && step == lastStep)
        real(file, bytes, size / 2);
    return interrupt("write") ? -1 : real(file, bytes, size);
}

int fsync(int file)
{
    static auto *real = original<int(int)>("fsync");
    return interrupt("fsync") ? -1 : real(file);
}

int ftruncate(int file, off_t size) noexcept
{
    static auto *real = original<int(int, off_t)>("ftruncate");
    return interrupt("ftruncate") ? -1 : real(file, size);
}

int fallocate(int file, int mode, off_t start, off_t size)
{
    static auto *real = original<int(int, int, off_t, off_t)>("fallocate");
    return interrupt("fallocate") ? -1 : real(file, mode, start, size);
}

int rename(const char *from, const char *to) noexcept
{
    static auto *real = original<int(const char *, const char *)>("rename");
    return interrupt("rename") ? -1 : real(from, to);
}

} // extern "C"

int main(int argc, char **argv)
{
    if (argc != 6)
        return EXIT_FAILURE;
    ProtectedFile file(QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argv[2]));
    file.read();
    lastStep = std::atoi(argv[4]);
    killed = std::strcmp(argv[5], "kill") == 0;
    isWriting = true;
    const bool written = *argv[2] ? file.write(argv[3]) : replaceWholeFile(file.path(), argv[3]);
    isWriting = false;
    return written ? EXIT_SUCCESS : EXIT_FAILURE;
}
