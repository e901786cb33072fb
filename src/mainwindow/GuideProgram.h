#pragma once

#include <QProcess>

class NotificationCenter;

/// The guide. It is a program of its own, since the web engine takes longer to load than everything else
/// together, and ends the program in which it fails.
///
/// It is told what to do over its standard input: "dark" or "light", which appearance to have, and "raise",
/// to bring its window to the user. It ends when its window is closed or its standard input is. What it
/// writes are diagnostic lines, and "key" with those that were pressed in its window and are meant for the
/// parent.
class GuideProgram : public QProcess
{
    Q_OBJECT

public:
    static bool isInstalled();

    /// \param systemNotices  tell when the appearance has changed
    /// \param parent         is sent the keys of commands
    GuideProgram(NotificationCenter &systemNotices, QObject *parent);
    ~GuideProgram() override;

    /// Shows the guide's window, which is raised when it is open. Why it cannot be shown is told in an alert.
    void bringToFront();

private:
    void obey(const QByteArray &line);
    void tellAppearance();
    void judgeEnd(int status, ExitStatus howItEnded);
    void tellUser(const QString &whatHappened, const QString &why);
};
