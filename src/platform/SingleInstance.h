#pragma once

#include <QDBusConnection>
#include <QLockFile>
#include <QObject>
#include <QVariantMap>

/// Lets one program run per user: a lock file always, and on the session bus a name under which a second
/// start asks the first one to show itself.
class SingleInstance : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// \param stateFolder  the folder of the lock file; made when missing
    SingleInstance(const QString &stateFolder, const QDBusConnection &bus);

    /// True when this is the only running program. Otherwise the other one has been asked to show itself,
    /// where there is a bus.
    bool acquire();

signals:
    /// Another start asked this program to show itself.
    void activated();

public slots:
    /// Desktop Entry Specification 1.5, "D-Bus Activation".
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData);

private:
    void activateOther();

    QString folder;
    QLockFile lock;
    QDBusConnection bus;
};
