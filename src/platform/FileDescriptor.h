#pragma once

#include <QByteArrayView>
#include <QString>

#include <sys/stat.h>
#include <sys/types.h>

/// Writes all of the bytes to the descriptor; false when that failed, with the reason in errno.
bool writeFully(int descriptor, QByteArrayView bytes);

/// Opens a regular file with the flags and mode of open(2), without ever waiting for what else may be under
/// the path, such as a pipe or a device; −1 when that failed, with the reason in errno.
int openRegularFile(const QString &path, int flags, mode_t mode = 0);

/// Makes a change of the folder's entries last; false when that failed, with the reason in errno.
bool syncFolder(const QString &path);

/// An open file of the operating system, for what QFile does not promise: every step tells whether it took
/// effect, with the reason in errno, and goes on after a signal.
class FileDescriptor
{
public:
    /// Opens a regular file as `openRegularFile` does, or with O_DIRECTORY a folder.
    FileDescriptor(const QString &path, int flags, mode_t mode = 0);
    ~FileDescriptor();
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;

    bool isOpen() const { return descriptor >= 0; }
    /// Takes room on the disk for a content of this many bytes, without changing the file; EOPNOTSUPP where
    /// the file system has no such operation.
    bool reserve(qsizetype size);
    /// Reads up to so many bytes at the current position; 0 at the end, −1 when that failed.
    qsizetype read(char *bytes, qsizetype most);
    /// Writes all of the bytes at the current position.
    bool write(QByteArrayView bytes);
    bool truncate(qsizetype size);
    /// Takes the lock that one process at a time has of a file, until it closes it; false when another one
    /// has it. Where there are no locks, everybody gets it. To be opened for writing.
    bool lock() const;
    bool stat(struct stat &entry) const;
    /// Waits until the content is on the disk.
    bool sync() const;
    bool close();

private:
    int descriptor;
};
