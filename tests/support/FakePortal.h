#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>

/// The desktop's settings portal on the session bus, as far as the appearance needs it. Answers while the
/// event loop runs.
class FakePortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit FakePortal(uint scheme)
        : colorScheme(scheme)
    {
        if (!bus.registerObject(path, this, QDBusConnection::ExportScriptableSlots) ||
            !bus.registerService(service))
            qFatal("the portal cannot be offered");
    }
    /// Goes when all that it has told is on its way.
    ~FakePortal() override
    {
        bus.unregisterService(service);
        QDBusConnection::disconnectFromBus(service);
    }

    /// Tells of another colour scheme, and of settings that are none of the appearance's.
    void change(uint scheme)
    {
        colorScheme = scheme;
        tell(appearance, QStringLiteral("contrast"), 3 - scheme);
        tell(QStringLiteral("org.example.terminal"), key, 3 - scheme);
        tell(appearance, key, scheme);
    }

public slots:
    Q_SCRIPTABLE QDBusVariant Read(const QString &group, const QString &wanted) const
    {
        const bool isKnown = group == appearance && wanted == key;
        return QDBusVariant(isKnown ? QVariant::fromValue(QDBusVariant(colorScheme)) : QVariant());
    }

private:
    void tell(const QString &group, const QString &changed, uint value) const
    {
        const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
        bus.send(QDBusMessage::createSignal(path, interface, QStringLiteral("SettingChanged"))
                 << group << changed << QVariant::fromValue(QDBusVariant(value)));
    }

    const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
    const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
    const QString appearance = QStringLiteral("org.freedesktop.appearance");
    const QString key = QStringLiteral("color-scheme");
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, service);
    uint colorScheme;
};
