#include "platform/DesktopAppearance.h"

#include "platform/AppearanceSetting.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace {

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString interface = u"org.freedesktop.portal.Settings"_s;
const QString group = u"org.freedesktop.appearance"_s;
const QString key = u"color-scheme"_s;
constexpr int firstAnswerMilliseconds = 250;
constexpr uint darkScheme = 1;

QDBusMessage readCall()
{
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, u"Read"_s);
    call << group << key;
    return call;
}

} // namespace

DesktopAppearance::DesktopAppearance(Preferences &store, NotificationCenter &centre,
                                     const QDBusConnection &session)
    : preferences(store)
    , systemNotices(centre)
    , bus(session)
{
}

void DesktopAppearance::follow()
{
    if (!bus.isConnected())
        return;
    // From anybody: Qt would wait to learn who the service is now.
    bus.connect(QString(), path, interface, u"SettingChanged"_s, this, SLOT(settingChanged(QDBusMessage)));
    const QDBusMessage answer = bus.call(readCall(), QDBus::Block, firstAnswerMilliseconds);
    if (answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty())
        apply(answer.arguments().constFirst());
    else if (answer.errorName() == QDBusError::errorString(QDBusError::NoReply))
        askLater();
}

void DesktopAppearance::askLater()
{
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(readCall()), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid())
            apply(QVariant::fromValue(reply.value()));
        watcher->deleteLater();
    });
}

void DesktopAppearance::settingChanged(const QDBusMessage &signal)
{
    const QVariantList arguments = signal.arguments();
    if (arguments.size() == 3 && arguments[0] == group && arguments[1] == key)
        apply(arguments[2]);
}

void DesktopAppearance::apply(const QVariant &colorScheme)
{
    // The portal wraps the number once or twice.
    QVariant value = colorScheme;
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    const bool isDark = value.toUInt() == darkScheme;
    if (isDark == dark)
        return;
    dark = isDark;
    preferences.setGlobalText(appearanceSetting::key,
                              dark ? std::optional(appearanceSetting::dark) : std::nullopt);
    systemNotices.post(notice::appearanceChanged);
}
