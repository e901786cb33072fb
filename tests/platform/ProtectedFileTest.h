#pragma once

#include <QObject>

class ProtectedFileTest : public QObject
{
    Q_OBJECT

private slots:
    void everyStepReachesTheDisk();
    void interruptedWriteLosesNothing_data();
    void interruptedWriteLosesNothing();
    void laterWriteKeepsTheOnlyGoodCopy();
    void changesByOthersAreCopiedAside();
    void keepsLinksAndMode();
    void copiesAsideOnceBeforeOverwriting();
    void refusesToOverwriteWhatCannotBeCopied();
    void foreignChangeIsCopiedBeforeReplay();
    void readsFromRedoWhereTheFileCannotBeWritten();
    void incompleteRedoIsDropped();
    void textMustBeUtf8();
};
