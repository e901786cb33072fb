#pragma once

#include <QString>

class NotificationCenter;
class QWidget;
class Stage;

/// Plays the user's desktop: switches its appearance, as the program hears of it.
class Desktop
{
public:
    /// \param notices  the notification centre on which the desktop is heard
    explicit Desktop(NotificationCenter &notices);

    /// Switches to "Dark" or "Light" and waits until the window has followed.
    void switchTo(const QString &appearance, const QWidget &window);
    /// Takes a picture of the window in light and one in dark appearance; it is light then.
    void picturesOf(QWidget &window, Stage &stage, const QString &name);

private:
    NotificationCenter &notices;
};
