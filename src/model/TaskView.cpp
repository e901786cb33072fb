#include "model/TaskView.h"

#include "model/task.h"
#include "platform/Diagnostics.h"

using namespace Qt::StringLiterals;

const QStringList &taskViewTitles()
{
    static const QStringList titles = {
        u"All"_s,           u"Open"_s,       u"Closed"_s,      u"Hidden"_s,        u"Hidden Open"_s,
        u"Hidden Closed"_s, u"Global-All"_s, u"Global-Open"_s, u"Global-Closed"_s, u"Due Today"_s,
    };
    return titles;
}

static bool isDueToday(const task &entry, const Calendar::Day &today)
{
    const bool isToday = today.contains(entry.due);
    diagnostics::line(isToday ? "SAME" : entry.due < today.begin ? "DESCENDING" : "ASCENDING");
    return isToday;
}

bool isShownUnhidden(const task &entry, int view)
{
    return !entry.hidden && (view == int(TaskView::All) || entry.status == qint64{view} - 1);
}

bool isShownBesides(const task &entry, int view, const Calendar::Day &today)
{
    switch (TaskView(view)) {
    case TaskView::Hidden:
        return entry.hidden;
    case TaskView::HiddenOpen:
        return entry.hidden && entry.status == taskStatus::open;
    case TaskView::HiddenClosed:
        return entry.hidden && entry.status == taskStatus::closed;
    case TaskView::GlobalAll:
        return true;
    case TaskView::GlobalOpen:
        return entry.status == taskStatus::open;
    case TaskView::GlobalClosed:
        return entry.status == taskStatus::closed;
    case TaskView::DueToday:
        return isDueToday(entry, today);
    default:
        return false;
    }
}
