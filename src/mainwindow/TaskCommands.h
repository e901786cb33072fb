#pragma once

#include <QList>

class QAction;
class QToolButton;
class QUndoStack;

namespace Ui {
class ViewController;
}

/// The commands on the selected task and on the last step, as buttons, menu entries and keys, and when they
/// can be given.
class TaskCommands
{
public:
    /// Gives the window's buttons their commands and keys.
    explicit TaskCommands(Ui::ViewController &window);

    void disable();
    /// Only enabling reaches the buttons that move a task; they say themselves why they cannot.
    void enable();
    /// Has undo and redo name the steps that they take.
    void follow(const QUndoStack &steps);
    /// Makes the hide button offer the opposite of the task's present state.
    void showHideState(bool hidden);

private:
    Ui::ViewController &ui;
};
