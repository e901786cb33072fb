#pragma once

#include "model/TaskView.h"

#include <QMainWindow>

class ExpectedList;
class QComboBox;
class QLineEdit;
class QTableView;
class QToolButton;
class Stage;

/// The main window as its user has it: the widgets at hand, the texts in sight.
class MainWindowHandle
{
public:
    explicit MainWindowHandle(QMainWindow &window);

    QMainWindow &window;
    QTableView &table;
    QComboBox &viewChooser;
    QLineEdit &searchField;
    QToolButton &editButton;
    QToolButton &deleteButton;
    QToolButton &hideButton;
    QToolButton &cloneButton;
    QToolButton &closeButton;
    QToolButton &upperButton;
    QToolButton &downerButton;
    QToolButton &shareButton;

    /// The column under this title.
    int column(const QString &title) const;
    /// The column's texts from the first row to the last.
    QStringList texts(const QString &columnTitle) const;
    QString text(int row, const QString &columnTitle) const;
    QStringList taskNames() const;
    /// The row of the first task of this name.
    int rowOf(const QString &taskName) const;
    /// The row that is selected, or −1.
    int selectedRow() const;
    /// What the row is painted with beside its texts.
    QColor paintedColor(int row) const;

    void selectTask(const QString &name) const;
    /// Picks the view by its keyboard shortcut.
    void showView(TaskView view) const;

    /// Checks that the table shows the tasks that the view should hold.
    void checkView(Stage &stage, const ExpectedList &expected, TaskView view) const;
    /// Checks whether the commands on a selected task can be given.
    void checkTaskButtons(Stage &stage, bool enabled) const;
};
