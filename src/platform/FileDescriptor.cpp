#include "platform/FileDescriptor.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

/// Calls until no signal comes in between.
static auto uninterrupted(const auto &call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

bool writeFully(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t count =
            uninterrupted([&] { return ::write(descriptor, bytes.data(), size_t(bytes.size())); });
        if (count <= 0)
            return false;
        bytes = bytes.sliced(count);
    }
    return true;
}

static int openAny(const QString &path, int flags, mode_t mode)
{
    return uninterrupted([name = QFile::encodeName(path), flags, mode] {
        return ::open(name.constData(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, mode);
    });
}

int openRegularFile(const QString &path, int flags, mode_t mode)
{
    const int file = openAny(path, flags, mode);
    struct stat entry = {};
    if (file < 0 || (::fstat(file, &entry) == 0 && S_ISREG(entry.st_mode)))
        return file;
    ::close(file);
    errno = S_ISDIR(entry.st_mode) ? EISDIR : ENOTSUP;
    return -1;
}

FileDescriptor::FileDescriptor(const QString &path, int flags, mode_t mode)
    : descriptor(flags & O_DIRECTORY ? openAny(path, flags, mode) : openRegularFile(path, flags, mode))
{
}

FileDescriptor::~FileDescriptor()
{
    const int reason = errno; // of what went wrong before
    close();
    errno = reason;
}

qsizetype FileDescriptor::read(char *bytes, qsizetype most)
{
    return uninterrupted([&] { return ::read(descriptor, bytes, size_t(most)); });
}

bool FileDescriptor::reserve(qsizetype size)
{
    // Reserving takes no notice of how large the process may make a file.
    struct rlimit largest = {};
    if (::getrlimit(RLIMIT_FSIZE, &largest) == 0 && rlim_t(size) > largest.rlim_cur) {
        errno = EFBIG;
        return false;
    }
    const auto allocate = [this, size] {
        return ::fallocate(descriptor, FALLOC_FL_KEEP_SIZE, 0, size);
    };
    return size == 0 || uninterrupted(allocate) == 0;
}

bool FileDescriptor::write(QByteArrayView bytes)
{
    return writeFully(descriptor, bytes);
}

bool FileDescriptor::truncate(qsizetype size)
{
    return uninterrupted([&] { return ::ftruncate(descriptor, size); }) == 0;
}

bool FileDescriptor::lock() const
{
    return uninterrupted([this] { return ::flock(descriptor, LOCK_EX | LOCK_NB); }) == 0 ||
           errno != EWOULDBLOCK;
}

bool FileDescriptor::stat(struct stat &entry) const
{
    return ::fstat(descriptor, &entry) == 0;
}

bool FileDescriptor::sync() const
{
    return uninterrupted([this] { return ::fsync(descriptor); }) == 0;
}

bool FileDescriptor::close()
{
    // Not repeated: after a signal the descriptor is closed all the same.
    const bool closed = descriptor < 0 || ::close(descriptor) == 0 || errno == EINTR;
    descriptor = -1;
    return closed;
}

bool syncFolder(const QString &path)
{
    const FileDescriptor folder(path, O_RDONLY | O_DIRECTORY);
    // Some network file systems have no such operation for folders.
    return folder.isOpen() && (folder.sync() || errno == EINVAL || errno == ENOTSUP);
}
