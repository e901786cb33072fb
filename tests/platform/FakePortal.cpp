#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QSocketNotifier>

#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// The desktop's settings portal, as far as the appearance needs it. Each digit on standard input is the
/// colour scheme from then on; "ready" on standard output says that the portal can be asked.
class FakePortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    void change(uint scheme)
    {
        colorScheme = scheme;
        QDBusMessage signal =
            QDBusMessage::createSignal(path, u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << u"org.freedesktop.appearance"_s << u"color-scheme"_s
               << QVariant::fromValue(QDBusVariant(scheme));
        QDBusConnection::sessionBus().send(signal);
    }

    const QString path = u"/org/freedesktop/portal/desktop"_s;

public slots:
    Q_SCRIPTABLE QDBusVariant Read(const QString &group, const QString &key)
    {
        const bool known = group == u"org.freedesktop.appearance" && key == u"color-scheme";
        return QDBusVariant(known ? QVariant::fromValue(QDBusVariant(colorScheme)) : QVariant());
    }

private:
    uint colorScheme = 1;
};

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    FakePortal portal;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(portal.path, &portal, QDBusConnection::ExportScriptableSlots) ||
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
