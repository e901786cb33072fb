#include "platform/FileDescriptor.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

bool writeFully(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), size_t(bytes.size()));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        bytes = bytes.sliced(count);
    }
    return true;
}

FileDescriptor::FileDescriptor(const QString &path, int flags, mode_t mode)
    : descriptor(::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC, mode))
{
}

FileDescriptor::~FileDescriptor()
{
    close();
}

bool FileDescriptor::reserve(qsizetype size)
{
    return size == 0 || ::fallocate(descriptor, FALLOC_FL_KEEP_SIZE, 0, size) == 0 || errno == EOPNOTSUPP ||
           errno == ENOSYS;
}

bool FileDescriptor::write(QByteArrayView bytes)
{
    return writeFully(descriptor, bytes);
}

bool FileDescriptor::truncate(qsizetype size)
{
    return ::ftruncate(descriptor, size) == 0;
}

bool FileDescriptor::sync() const
{
    return ::fsync(descriptor) == 0;
}

bool FileDescriptor::close()
{
    const bool closed = descriptor < 0 || ::close(descriptor) == 0;
    descriptor = -1;
    return closed;
}
