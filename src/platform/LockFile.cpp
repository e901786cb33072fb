#include "platform/LockFile.h"

#include "platform/FileDescriptor.h"
#include "platform/WholeFile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSysInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

LockFile::LockFile(const QString &path)
    : filePath(path)
{
}

LockFile::~LockFile()
{
    release();
}

LockFile::State LockFile::take()
{
    constexpr mode_t userOnly = 0600;
    release();
    descriptor = openRegularFile(filePath, O_RDWR | O_CREAT, userOnly);
    if (descriptor < 0)
        descriptor = openRegularFile(filePath, O_RDONLY);
    if (descriptor < 0)
        return State::Unavailable;
    int result = 0;
    do
        result = ::flock(descriptor, LOCK_EX | LOCK_NB);
    while (result != 0 && errno == EINTR);
    if (result == 0)
        return State::Taken;
    const State state = errno == EWOULDBLOCK ? State::Held : State::Unavailable;
    release();
    return state;
}

/// The lines are those of QLockFile: process, program, machine; then what tells machines of one name apart,
/// and one start of the machine from the next.
LockFile::Owner LockFile::owner() const
{
    constexpr qint64 longest = 4096; // bytes
    const QByteArray present = readWholeFile(filePath, longest).value_or(QByteArray());
    const QByteArrayList lines = present.split('\n');
    const qint64 processId = lines[0].toLongLong();
    const QString machine = QString::fromUtf8(lines.value(2));
    if (processId <= 0 || machine.isEmpty() || !present.endsWith('\n')) // the disk was full
        return {};
    const QByteArray machineId = lines.value(3);
    const bool isSameName = machine == QSysInfo::machineHostName() &&
                            (machineId.isEmpty() || machineId == QSysInfo::machineUniqueId());
    const QByteArray start = lines.value(4);
    const bool isSameStart = !start.isEmpty() && start == QSysInfo::bootUniqueId();
    return {.processId = processId,
            .machine = machine,
            .since = QFileInfo(filePath).lastModified(),
            .isElsewhere = !isSameName && !isSameStart};
}

void LockFile::sign()
{
    const QByteArrayList lines{QByteArray::number(QCoreApplication::applicationPid()),
                               QCoreApplication::applicationName().toUtf8(),
                               QSysInfo::machineHostName().toUtf8(),
                               QSysInfo::machineUniqueId(),
                               QSysInfo::bootUniqueId(),
                               {}};
    signature = lines.join('\n');
    if (::ftruncate(descriptor, 0) != 0 || !writeFully(descriptor, signature))
        signature.clear();
}

void LockFile::release()
{
    if (descriptor < 0)
        return;
    if (!signature.isEmpty() && readWholeFile(filePath) == signature && ::ftruncate(descriptor, 0) == 0)
        signature.clear();
    ::close(descriptor);
    descriptor = -1;
}
