#pragma once

#include <QProcess>

class NotificationCenter;

/// The guide. It is a program of its own, since the web engine takes longer to load than everything else
/// together, and ends the program in which it fails.
///
/// It is told what to do over its standard input: "dark" or "light", which appearance to have, and "raise",
/// to bring its window to the user. It ends when its window is closed or its standard input is.
class GuideProgram : public QProcess
{
    Q_OBJECT

public:
    static bool isInstalled();

    /// \param systemNotices  tell when the appearance has changed
    GuideProgram(NotificationCenter &systemNotices, QObject *parent);
    ~GuideProgram() override;

    /// Shows the guide's window, which is raised when it is open. Why it cannot be shown is told in an alert.
    void bringToFront();

private:
    void tellAppearance();
    void judgeEnd(int status, ExitStatus howItEnded);
    void tellUser(const QString &whatHappened, const QString &why);
};
