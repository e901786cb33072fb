#include "mainwindow/TaskCommands.h"

#include "ui_ViewController.h"

#include <QUndoStack>

using namespace Qt::StringLiterals;

TaskCommands::TaskCommands(Ui::ViewController &window)
    : ui(window)
{
    ui.editButton->setDefaultAction(ui.actionEdit);
    ui.deleteButton->setDefaultAction(ui.actionDelete);
    ui.hideButton->setDefaultAction(ui.actionHide);
    ui.upperButton->setDefaultAction(ui.actionUp);
    ui.downerButton->setDefaultAction(ui.actionDown);
    ui.cloneButton->setDefaultAction(ui.actionClone);
    ui.closeButton->setDefaultAction(ui.actionClose);
    ui.actionAdd->setShortcuts(QKeySequence::New);
    ui.actionDelete->setShortcut(Qt::Key_Delete); // the standard one takes Ctrl+D as well
    ui.actionFind->setShortcuts(QKeySequence::Find);
}

void TaskCommands::disable()
{
    for (QAction *action :
         {ui.actionEdit, ui.actionDelete, ui.actionHide, ui.actionShare, ui.actionClose, ui.actionClone})
        action->setEnabled(false);
    ui.shareButton->setEnabled(false);
}

void TaskCommands::enable()
{
    for (QAction *action :
         {ui.actionEdit, ui.actionDelete, ui.actionHide, ui.actionShare, ui.actionClose, ui.actionClone})
        action->setEnabled(true);
    ui.shareButton->setEnabled(true);
}

void TaskCommands::follow(const QUndoStack &steps)
{
    const auto show = [](QAction &command, const QString &verb, bool isPossible, QString step) {
        command.setEnabled(isPossible);
        command.setText(isPossible ? verb + u' ' + step.replace(u'&', u"&&"_s) : verb);
    };
    const auto showSteps = [this, show, &steps] {
        show(*ui.actionUndo, u"&Undo"_s, steps.canUndo(), steps.undoText());
        show(*ui.actionRedo, u"&Redo"_s, steps.canRedo(), steps.redoText());
    };
    QObject::connect(&steps, &QUndoStack::indexChanged, ui.actionUndo, showSteps);
    showSteps();
}

void TaskCommands::showHideState(bool hidden)
{
    ui.actionHide->setText(hidden ? u"Un&hide"_s : u"&Hide"_s);
    ui.actionHide->setToolTip(hidden ? u"UNHIDE"_s : u"HIDE"_s);
    ui.actionHide->setIcon(QIcon(hidden ? u":/icons/AppHideIcon.svg"_s : u":/icons/AppShowIcon.svg"_s));
}
