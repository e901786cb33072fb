#pragma once

#include "ExpectedList.h"
#include "Hand.h"
#include "Stage.h"

#include <QLineEdit>
#include <QMainWindow>
#include <QTableView>
#include <QToolButton>

class NotificationCenter;
class Program;

/// A client or a team member.
struct Person
{
    QString name;
    QString phoneNo;
};

/// What every step has at hand: the stage, the list as it should be, and a program's main window with what
/// its user does there and sees there.
class Tour
{
public:
    /// \param systemNotices  on which the program hears the desktop, which the tour plays
    Tour(Stage &stage, ExpectedList &expected, Program &program, NotificationCenter &systemNotices);

    Stage &stage;
    ExpectedList &expected;
    Program &program;
    QMainWindow &window;
    QTableView &table;
    QLineEdit &searchField;

    QToolButton &button(const QString &name) const;
    QString chosenView() const;
    /// The column under this title.
    int column(const QString &title) const;
    QModelIndex cell(int row, const QString &columnTitle) const;
    /// The column's texts from the first row to the last.
    QStringList texts(const QString &columnTitle) const;
    QStringList taskNames() const { return texts(QStringLiteral("Task")); }
    /// What stands in the row of the first task of this name.
    QString text(const QString &taskName, const QString &columnTitle) const;
    int rowOf(const QString &taskName) const;
    /// The row that is selected, or −1.
    int selectedRow() const;
    void selectTask(const QString &name) const;
    /// Picks the view by its keyboard shortcut.
    void showView(TaskView view) const;

    /// Checks that the table shows the tasks that the view should hold.
    void checkView(TaskView view);
    /// Checks whether the commands on a selected task can be given.
    void checkTaskButtons(bool enabled);
    void takePicture(const QString &name) { stage.picture(window, name); }

    /// Does what brings an alert up, checks that it tells this, takes its picture and presses the button.
    /// \param pictureName  empty for no picture
    void throughAlert(const std::function<void()> &open, const QString &message, const QString &button,
                      const QString &pictureName = {});

    /// Switches the desktop between light and dark, and waits until the widget has followed.
    void setDark(bool dark, const QWidget &widget);
    /// Takes a picture of the window in light and one in dark appearance; it is light then.
    void takePicturesOf(QWidget &screen, const QString &name);

private:
    NotificationCenter &systemNotices;
};
