#include "platform/SingleInstance.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QDir>
#include <QGuiApplication>
#include <QSysInfo>
#include <QThread>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
/// The desktop entry's name, by which the desktop starts the program and asks it for things.
const QString desktopName = u"example.quorvane.Quorvane"_s;
const QString path = u"/example/quorvane/Quorvane"_s;
const QString interface = u"org.freedesktop.Application"_s;

QString serviceOf(const QString &stateFolder)
{
    const QByteArray mark = QCryptographicHash::hash(stateFolder.toUtf8(), QCryptographicHash::Sha1);
    return desktopName + u".S"_s + QString::fromLatin1(mark.toHex());
}

// Leave to come to the front: a token of the xdg-activation-v1 protocol, which goes to a program that is
// started in this variable, and which Qt takes from there when a window is activated.
constexpr char tokenVariable[] = "XDG_ACTIVATION_TOKEN";
const QString tokenKey = u"activation-token"_s;
const QString startupKey = u"desktop-startup-id"_s; // the same, from desktops that know of X11 only

QVariantMap ownPlatformData()
{
    QVariantMap data;
    if (const QString token = qEnvironmentVariable(tokenVariable); !token.isEmpty())
        data = {{tokenKey, token}, {startupKey, token}};
    else if (const QString id = qEnvironmentVariable("DESKTOP_STARTUP_ID"); !id.isEmpty())
        data = {{startupKey, id}};
    return data;
}

void takeLeave(const QVariantMap &platformData)
{
    const QString token = platformData.value(tokenKey, platformData.value(startupKey)).toString();
    if (!token.isEmpty() && QGuiApplication::platformName().startsWith(u"wayland"))
        qputenv(tokenVariable, token.toUtf8());
}

} // namespace

SingleInstance::SingleInstance(const QString &stateFolder, const QDBusConnection &session,
                               const QString &action)
    : lock(stateFolder + u"/quorvane.lock"_s)
    , service(serviceOf(stateFolder))
    , wantedAction(action)
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
    if (bus.isConnected()) // one that works in other folders may be there, and is the one that is found then
        bus.registerService(desktopName);
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
    bus.unregisterService(desktopName);
    bus.unregisterService(service);
    bus.unregisterObject(path);
}

bool SingleInstance::activateOther()
{
    constexpr int answerMilliseconds = 3000;
    constexpr int pauseMilliseconds = 20;
    const bool isPlain = wantedAction.isEmpty();
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface,
                                                       isPlain ? u"Activate"_s : u"ActivateAction"_s);
    if (!isPlain)
        call << wantedAction << QVariantList();
    call << ownPlatformData();
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

void SingleInstance::Activate(const QVariantMap &platformData)
{
    ActivateAction({}, {}, platformData);
}

void SingleInstance::ActivateAction(const QString &action, const QVariantList &,
                                    const QVariantMap &platformData)
{
    takeLeave(platformData);
    emit activated(action);
}
