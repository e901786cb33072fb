#pragma once

#include <QString>

class ExpectedList;
class MainWindowHandle;
class NotificationCenter;
class Stage;

/// The step in which the desktop switches to dark appearance and back.
class MainWindowAppearanceSteps
{
public:
    /// \param taskListPath    the file that the program writes
    /// \param desktopNotices  the notification centre on which the desktop is heard
    MainWindowAppearanceSteps(Stage &stage, const MainWindowHandle &main, const ExpectedList &expected,
                              const QString &taskListPath, NotificationCenter &desktopNotices);

    void switchToDarkAndBack();

private:
    void switchTo(const QString &appearance);
    void checkColors(bool dark);
    /// What is written in the dark must be found in the file as if it had been light.
    void checkFile();

    Stage &stage;
    const MainWindowHandle &main;
    const ExpectedList &expected;
    QString taskListPath;
    NotificationCenter &desktopNotices;
};
