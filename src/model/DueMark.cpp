#include "model/DueMark.h"

#include "model/TaskColumn.h"
#include "model/task.h"
#include "widgets/TaskRowDelegate.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

DueMark dueMarkOf(const task &entry, const Calendar::Day &today)
{
    if (entry.status != taskStatus::open || entry.due >= today.end)
        return DueMark::None;
    return entry.due < today.begin ? DueMark::Overdue : DueMark::Today;
}

QVariant dueMarkData(const task &entry, const Calendar::Day &today, int role)
{
    if (role != cellMarkRole && role != Qt::ToolTipRole && role != Qt::AccessibleTextRole)
        return {};
    const DueMark mark = dueMarkOf(entry, today);
    if (mark == DueMark::None)
        return {};
    if (role == cellMarkRole)
        return int(mark == DueMark::Overdue ? CellMark::Warning : CellMark::Dot);
    const QString text = mark == DueMark::Overdue ? QCoreApplication::translate("DueMark", "Overdue")
                                                  : QCoreApplication::translate("DueMark", "Due today");
    if (role == Qt::ToolTipRole)
        return text;
    return u"%1, %2"_s.arg(infoOf(TaskColumn::Due).cellText(entry), text);
}
