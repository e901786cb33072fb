#pragma once

#include <QList>
#include <QObject>

class QAction;

/// Has commands of the main window answer to their keys in the program's other windows too, also in modal
/// ones, which no shortcut of the main window reaches. A question that is open is to be answered first: while
/// one is, only the help comes.
class CommandKeys : public QObject
{
    Q_OBJECT

public:
    CommandKeys(QAction &help, const QList<QAction *> &commands, QObject *parent);

protected:
    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    QAction &help;
    QList<QAction *> commands;
};
