#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>

/// The desktop's settings portal on the session bus, as far as the appearance needs it. Answers while the
/// event loop runs.
class FakePortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit FakePortal(uint scheme);
    /// Goes when all that it has told is on its way.
    ~FakePortal() override;

    /// Tells of another colour scheme, and of settings that are none of the appearance's.
    void change(uint scheme);

public slots:
    Q_SCRIPTABLE QDBusVariant Read(const QString &group, const QString &key) const;

private:
    void tell(const QString &group, const QString &key, uint value) const;

    QDBusConnection bus;
    uint colorScheme;
};
