#pragma once

class ExpectedList;
class MainWindowHandle;
class Stage;

/// The steps that look at the task list and change nothing in it.
class MainWindowListSteps
{
public:
    MainWindowListSteps(Stage &stage, const MainWindowHandle &main, const ExpectedList &expected);

    void openWindow();
    void pickEveryView();
    void search();
    void sortByName();
    void selectTask();

private:
    void typeSearch(const char16_t *text);

    Stage &stage;
    const MainWindowHandle &main;
    const ExpectedList &expected;
};
