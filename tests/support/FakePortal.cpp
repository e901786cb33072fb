#include "support/FakePortal.h"

#include <QDBusMessage>

using namespace Qt::StringLiterals;

static const QString service = u"org.freedesktop.portal.Desktop"_s;
static const QString path = u"/org/freedesktop/portal/desktop"_s;
static const QString appearance = u"org.freedesktop.appearance"_s;
static const QString colorSchemeKey = u"color-scheme"_s;

FakePortal::FakePortal(uint scheme)
    : bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, service))
    , colorScheme(scheme)
{
    if (!bus.registerObject(path, this, QDBusConnection::ExportScriptableSlots) ||
        !bus.registerService(service))
        qFatal("the portal cannot be offered");
}

FakePortal::~FakePortal()
{
    bus.unregisterService(service);
    QDBusConnection::disconnectFromBus(service);
}

void FakePortal::change(uint scheme)
{
    colorScheme = scheme;
    tell(appearance, u"contrast"_s, 3 - scheme);
    tell(u"org.example.terminal"_s, colorSchemeKey, 3 - scheme);
    tell(appearance, colorSchemeKey, scheme);
}

void FakePortal::tell(const QString &group, const QString &key, uint value) const
{
    bus.send(QDBusMessage::createSignal(path, u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s)
             << group << key << QVariant::fromValue(QDBusVariant(value)));
}

QDBusVariant FakePortal::Read(const QString &group, const QString &key) const
{
    if (group != appearance || key != colorSchemeKey)
        return QDBusVariant(QVariant());
    return QDBusVariant(QVariant::fromValue(QDBusVariant(colorScheme)));
}
