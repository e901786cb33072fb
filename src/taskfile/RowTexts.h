#pragma once

#include "model/task.h"

#include <QByteArray>
#include <QHash>

/// The rows as they were last written, so that those of tasks that have not changed since need not be made
/// anew.
class RowTexts
{
public:
    /// Forgets them unless they were made in the same circumstances: what a row's text depends on besides its
    /// task.
    void useOnlyFor(const QByteArray &circumstances);
    /// The row of this very task with its end; empty when it is not known.
    QByteArrayView find(const SharedTask &entry);
    /// \param rowEnds  where the row of each task ends in the text
    void keep(const TaskList &tasks, const QByteArray &text, QList<qsizetype> rowEnds);

private:
    QByteArrayView row(qsizetype index) const;

    QByteArray madeFor;
    TaskList tasks; ///< keeps them from being changed: whoever does gets a copy
    QByteArray text;
    QList<qsizetype> ends;
    QHash<const task *, qsizetype> places; ///< filled when many tasks are not where they were
    qsizetype next = 0;
    qsizetype missed = 0;
};
