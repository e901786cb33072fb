#include "platform/SingleInstance.h"

#include <QDBusMessage>
#include <QDir>

using namespace Qt::StringLiterals;

namespace {
const QString service = u"example.quorvane.Quorvane"_s;
const QString path = u"/example/quorvane/Quorvane"_s;
const QString interface = u"org.freedesktop.Application"_s;
constexpr int answerMilliseconds = 2000;

bool namesItsOwner(const QLockFile &lock)
{
    qint64 processId = 0;
    QString host;
    QString program;
    return lock.getLockInfo(&processId, &host, &program);
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
    bool isFree = lock.tryLock() || lock.error() != QLockFile::LockFailedError;
    if (!isFree && !namesItsOwner(lock))
        isFree = lock.removeStaleLockFile() && lock.tryLock(); // its program died while it wrote the file
    if (!isFree) {
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
