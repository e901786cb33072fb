#pragma once

#include <QString>

class ExpectedList;
class MainWindowHandle;
class Program;
class QDialog;
class Stage;

/// The steps in which the list is copied to the cloud and comes back from it.
class CloudSteps
{
public:
    CloudSteps(Stage &stage, const MainWindowHandle &main, ExpectedList &expected, Program &program);

    void copyToCloud();
    /// A local change is overwritten by what the cloud has.
    void updateFromCloud();
    void deleteTask();
    /// The window of the same user on another machine, with an empty list.
    void receiveList(const MainWindowHandle &other);

private:
    void acknowledge(QDialog &dialog, const QString &message);
    void command(const MainWindowHandle &window, const QString &entry, const QString &pictureName);
    void waitForAnswers();
    void update(const MainWindowHandle &window);

    Stage &stage;
    const MainWindowHandle &main;
    ExpectedList &expected;
    Program &program;
};
