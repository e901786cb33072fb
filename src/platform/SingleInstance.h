#pragma once

#include "platform/LockFile.h"

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

/// Lets one program run per user: a lock file, and on the session bus a name under which a second start asks
/// the first one to show itself. Where there can be no lock, the name alone decides.
class SingleInstance : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    enum class Outcome {
        Acquired,  ///< No other program is running, as far as can be seen.
        Shown,     ///< Another one is, and has shown itself.
        Running,   ///< Another one is, on this machine, but does not answer.
        Uncertain, ///< Another one may be, on another machine or unnamed.
    };

    /// \param stateFolder  the folder of the lock file, made when missing; those of different folders do not
    ///                     know each other
    /// \param action       what another program is asked to do besides showing itself, as the desktop entry
    ///                     names it; empty for nothing
    SingleInstance(const QString &stateFolder, const QDBusConnection &bus, const QString &action = {});

    /// Waits at most some seconds, for another program's answer.
    /// \param evenIfUncertain  the user wants to start all the same
    Outcome acquire(bool evenIfUncertain = false);
    /// Lets another program start; for the very end of this one.
    void release();
    /// The other program, as far as it is known.
    const LockFile::Owner &otherProgram() const { return other; }
    const QString &lockPath() const { return lock.path(); }

signals:
    /// The desktop or another start asked this program to show itself and to do the action, if any. Where a
    /// window may only come to the front by leave of the desktop, that has been granted to the next one.
    void activated(const QString &action);

public slots:
    /// Desktop Entry Specification 1.5, "D-Bus Activation".
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData);
    Q_SCRIPTABLE void ActivateAction(const QString &action, const QVariantList &parameters,
                                     const QVariantMap &platformData);

private:
    bool isHeldHere(LockFile::State state) const;
    bool takeName();
    void giveNameBack();
    bool activateOther();
    bool identifyOther();

    LockFile lock;
    LockFile::Owner other;
    QString service;
    QString wantedAction;
    QDBusConnection bus;
};
