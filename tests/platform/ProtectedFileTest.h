#pragma once

#include <QObject>

class ProtectedFileTest : public QObject
{
    Q_OBJECT

private slots:
    void interruptedWriteLosesNothing_data();
    void interruptedWriteLosesNothing();
    void laterWriteKeepsTheOnlyGoodCopy();
    void keepsLinksAndMode();
    void copiesAsideOnceBeforeOverwriting();
    void refusesToOverwriteWhatCannotBeCopied();
    void foreignChangeIsCopiedBeforeReplay();
    void readsFromRedoWhereTheFileCannotBeWritten();
    void incompleteRedoIsDropped();
    void textMustBeUtf8();
};
