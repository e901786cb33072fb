#pragma once

#include <QString>

class Desktop;
class ExpectedList;
class MainWindowHandle;
class Stage;

/// The step in which the desktop switches to dark appearance and back.
class MainWindowAppearanceSteps
{
public:
    /// \param taskListPath  the file that the program writes
    MainWindowAppearanceSteps(Stage &stage, const MainWindowHandle &main, const ExpectedList &expected,
                              const QString &taskListPath, Desktop &desktop);

    void switchToDarkAndBack();

private:
    void checkColors(bool dark);
    /// What is written in the dark must be found in the file as if it had been light.
    void checkFile();

    Stage &stage;
    const MainWindowHandle &main;
    const ExpectedList &expected;
    QString taskListPath;
    Desktop &desktop;
};
