#include "mainwindow/CommandKeys.h"

#include "widgets/Screen.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>

CommandKeys::CommandKeys(QAction &helpCommand, const QList<QAction *> &otherCommands, QObject *parent)
    : QObject(parent)
    , help(helpCommand)
    , commands(otherCommands)
{
    qApp->installEventFilter(this);
}

bool CommandKeys::eventFilter(QObject *, QEvent *event)
{
    const auto *key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent *>(event) : nullptr;
    if (!key || key->isAutoRepeat())
        return false;
    const QWidget *modal = QApplication::activeModalWidget();
    const bool isQuestion =
        (modal && !qobject_cast<const Screen *>(modal)) || QApplication::activePopupWidget();
    for (QAction *command : isQuestion ? QList{&help} : commands + QList{&help})
        if (command->shortcuts().contains(QKeySequence(key->keyCombination()))) {
            command->trigger();
            return true;
        }
    return false;
}
