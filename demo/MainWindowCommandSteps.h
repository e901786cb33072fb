#pragma once

#include <QString>

class ExpectedList;
class MainWindowHandle;
class QWidget;
class Stage;

/// The steps that give the main window's commands on a selected task.
class MainWindowCommandSteps
{
public:
    MainWindowCommandSteps(Stage &stage, const MainWindowHandle &main, ExpectedList &expected);

    void hideAndUnhide();
    void move();
    void moveInAnotherView();
    void cloneTask();
    void closeTask();

private:
    void expectAlert(QWidget &button, const QString &message, const QString &pictureName);

    Stage &stage;
    const MainWindowHandle &main;
    ExpectedList &expected;
};
