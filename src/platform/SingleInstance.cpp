#include "platform/SingleInstance.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QDir>
#include <QSysInfo>
#include <QThread>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
const QString path = u"/example/quorvane/Quorvane"_s;
const QString interface = u"org.freedesktop.Application"_s;

QString serviceOf(const QString &stateFolder)
{
    const QByteArray mark = QCryptographicHash::hash(stateFolder.toUtf8(), QCryptographicHash::Sha1);
    return u"example.quorvane.Quorvane.S"_s + QString::fromLatin1(mark.toHex());
}

} // namespace

SingleInstance::SingleInstance(const QString &stateFolder, const QDBusConnection &session)
    : lock(stateFolder + u"/quorvane.lock"_s)
    , service(serviceOf(stateFolder))
    , bus(session)
{
    QDir().mkpath(stateFolder);
}

SingleInstance::Outcome SingleInstance::acquire(bool evenIfUncertain)
{
    LockFile::State state = lock.take();
    other = lock.owner();
    if (isHeldHere(state) || !takeName()) {
        if (activateOther())
            return Outcome::Shown;
        state = lock.take(); // it may have been about to end
        other = lock.owner();
        if (identifyOther() || (isHeldHere(state) && other.processId > 0))
            return Outcome::Running;
    }
    if ((state == LockFile::State::Held || other.isElsewhere) && !evenIfUncertain) {
        // Whoever starts while the user is asked is asked as well.
        release();
        return Outcome::Uncertain;
    }
    takeName();
    // From then on there is nothing that could be shown.
    connect(qApp, &QCoreApplication::aboutToQuit, this, &SingleInstance::giveNameBack);
    if (state == LockFile::State::Taken)
        lock.sign();
    return Outcome::Acquired;
}

void SingleInstance::release()
{
    giveNameBack();
    lock.release();
}

/// Whether another program on this machine has the lock. One that has not signed it is taken for such a one.
bool SingleInstance::isHeldHere(LockFile::State state) const
{
    return state == LockFile::State::Held && !other.isElsewhere;
}

/// Takes the name on the bus, where there is one; false when another program has it.
bool SingleInstance::takeName()
{
    if (!bus.isConnected())
        return true;
    bus.registerObject(path, this, QDBusConnection::ExportScriptableSlots);
    return bus.registerService(service) || !bus.interface()->isServiceRegistered(service);
}

void SingleInstance::giveNameBack()
{
    if (!bus.isConnected())
        return;
    bus.unregisterService(service);
    bus.unregisterObject(path);
}

bool SingleInstance::activateOther()
{
    constexpr int answerMilliseconds = 3000;
    constexpr int pauseMilliseconds = 20;
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, u"Activate"_s);
    call << QVariantMap();
    const QDeadlineTimer deadline(answerMilliseconds);
    while (bus.isConnected() && !deadline.hasExpired()) {
        const int timeLeft = std::max(1, int(deadline.remainingTime()));
        if (bus.call(call, QDBus::Block, timeLeft).type() == QDBusMessage::ReplyMessage)
            return true;
        // It may just have started, and have no name yet, or just have ended.
        QThread::msleep(pauseMilliseconds);
        if (lock.take() != LockFile::State::Held && !bus.interface()->isServiceRegistered(service))
            break;
    }
    return false;
}

/// Asks the bus who has the name, which may not be whoever has signed the lock file; false when nobody has.
bool SingleInstance::identifyOther()
{
    if (!bus.isConnected())
        return false;
    const QDBusReply<uint> processId = bus.interface()->servicePid(service);
    if (processId.isValid())
        other = {.processId = processId.value(), .machine = QSysInfo::machineHostName()};
    return processId.isValid();
}

void SingleInstance::Activate(const QVariantMap &)
{
    emit activated();
}
