#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QSocketNotifier>

#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString group = u"org.freedesktop.appearance"_s;
const QString key = u"color-scheme"_s;
} // namespace

/// The desktop's settings portal, as far as the appearance needs it. Each digit on standard input is the
/// colour scheme from then on; before the first one, the portal does not answer. "ready" on standard output
/// says that it can be asked.
class FakePortal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    void change(uint scheme)
    {
        QDBusConnection bus = QDBusConnection::sessionBus();
        const auto tell = [&bus](const QString &changedGroup, const QString &changedKey, uint value) {
            bus.send(
                QDBusMessage::createSignal(path, u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s)
                << changedGroup << changedKey << QVariant::fromValue(QDBusVariant(value)));
        };
        if (std::exchange(colorScheme, scheme) != 0) {
            tell(group, u"contrast"_s, 3 - scheme); // other settings change as well
            tell(u"org.example.terminal"_s, key, 3 - scheme);
            tell(group, key, scheme);
        }
        for (const QDBusMessage &call : std::exchange(unanswered, {}))
            bus.send(call.createReply(QVariant::fromValue(answer())));
    }

public slots:
    Q_SCRIPTABLE QDBusVariant Read(const QString &wantedGroup, const QString &wantedKey)
    {
        if (wantedGroup != group || wantedKey != key)
            return QDBusVariant(QVariant());
        if (colorScheme == 0) {
            setDelayedReply(true);
            unanswered.append(message());
        }
        return answer();
    }

private:
    QDBusVariant answer() const { return QDBusVariant(QVariant::fromValue(QDBusVariant(colorScheme))); }

    uint colorScheme = 0;
    QList<QDBusMessage> unanswered;
};

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    FakePortal portal;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(path, &portal, QDBusConnection::ExportScriptableSlots) ||
        !bus.registerService(u"org.freedesktop.portal.Desktop"_s))
        return EXIT_FAILURE;
    const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &portal, [&portal] {
        char digit = 0;
        if (::read(STDIN_FILENO, &digit, 1) == 1)
            portal.change(uint(digit - '0'));
        else
            QCoreApplication::quit();
    });
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}

#include "FakePortal.moc"
