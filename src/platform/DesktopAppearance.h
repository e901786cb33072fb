#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

class NotificationCenter;
class Preferences;

/// Follows the desktop's light or dark appearance and tells the program of it: as the global setting
/// `AppleInterfaceStyle`, which is "Dark" or absent, and as a notice on the system-wide centre at every
/// change.
///
/// Source: the settings portal, `org.freedesktop.portal.Settings`, key `color-scheme` of
/// `org.freedesktop.appearance` (1 is dark, anything else light). Without bus or portal the appearance is
/// light.
class DesktopAppearance : public QObject
{
    Q_OBJECT

public:
    DesktopAppearance(Preferences &preferences, NotificationCenter &systemNotices,
                      const QDBusConnection &bus);

    /// Asks for the present appearance and follows it from now on. Waits a moment for the first answer, so
    /// that the first window already shows it; a later answer counts as a change.
    void follow();

private slots:
    void settingChanged(const QDBusMessage &signal);

private:
    void askLater();
    void apply(const QVariant &colorScheme);

    Preferences &preferences;
    NotificationCenter &systemNotices;
    QDBusConnection bus;
    bool dark = false;
};
