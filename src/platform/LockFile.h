#pragma once

#include <QDateTime>
#include <QString>

/// A file that one process at a time locks, and that says which one. The lock is the kernel's, which a
/// process that dies does not leave behind.
class LockFile
{
public:
    enum class State {
        Taken,
        Held,        ///< by another process
        Unavailable, ///< the file cannot be made, or there are no locks where it is
    };

    /// Who has signed the file.
    struct Owner
    {
        qint64 processId = 0; ///< 0: nobody that is known
        QString machine = {};
        QDateTime since = {};
        bool isElsewhere = false; ///< on another machine, where this one cannot see whether it runs
    };

    explicit LockFile(const QString &path);
    /// Gives up the lock.
    ~LockFile();
    LockFile(const LockFile &) = delete;
    LockFile &operator=(const LockFile &) = delete;

    const QString &path() const { return filePath; }
    State take();
    Owner owner() const;
    /// Writes into the file, which has been taken, that this process is the owner, as far as the disk allows
    /// it.
    void sign();
    /// Gives up the lock, and takes the signature back unless somebody else has signed meanwhile.
    void release();

private:
    QString filePath;
    int descriptor = -1;
    QByteArray signature;
};
