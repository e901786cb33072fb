#pragma once

class ExpectedList;
class MainWindowHandle;
class QString;
class Stage;

/// The steps that end the program, look at the file it leaves, and open it again.
class MainWindowFileSteps
{
public:
    MainWindowFileSteps(Stage &stage, const ExpectedList &expected);

    /// Closes the window and reads the task list file it leaves.
    void closeWindow(const MainWindowHandle &main, const QString &filePath);
    void openAgain(const MainWindowHandle &main);

private:
    void checkFile(const QString &filePath);

    Stage &stage;
    const ExpectedList &expected;
};
