#include "platform/SingleInstance.h"

#include <QDBusMessage>
#include <QDir>
#include <QSysInfo>

#include <cerrno>
#include <csignal>

using namespace Qt::StringLiterals;

namespace {
const QString service = u"example.quorvane.Quorvane"_s;
const QString path = u"/example/quorvane/Quorvane"_s;
const QString interface = u"org.freedesktop.Application"_s;
constexpr int answerMilliseconds = 2000;

/// Whether the program that is named in the lock file may still be running.
bool mayHaveOwner(const QLockFile &lock)
{
    qint64 processId = 0;
    QString host;
    QString program;
    return lock.getLockInfo(&processId, &host, &program) &&
           (host != QSysInfo::machineHostName() || ::kill(pid_t(processId), 0) == 0 || errno != ESRCH);
}

} // namespace

SingleInstance::SingleInstance(const QString &stateFolder, const QDBusConnection &session)
    : folder(stateFolder)
    , lock(stateFolder + u"/quorvane.lock"_s)
    , bus(session)
{
    // The lock of a program that no longer runs is stale, however young; that of a running one never is.
    lock.setStaleLockTime(0);
}

bool SingleInstance::acquire()
{
    QDir().mkpath(folder);
    const auto isFree = [this] {
        return lock.tryLock() || lock.error() != QLockFile::LockFailedError;
    };
    // A lock that was half written when its program died names nobody, and on a full disk the lock file does
    // not remove a stale one by itself.
    if (!isFree() && (mayHaveOwner(lock) || !lock.removeStaleLockFile() || !isFree())) {
        activateOther();
        return false;
    }
    if (bus.isConnected() && bus.registerObject(path, this, QDBusConnection::ExportScriptableSlots))
        bus.registerService(service);
    return true;
}

void SingleInstance::activateOther()
{
    if (!bus.isConnected())
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, u"Activate"_s);
    call << QVariantMap();
    bus.call(call, QDBus::Block, answerMilliseconds);
}

void SingleInstance::Activate(const QVariantMap &)
{
    emit activated();
}
