#pragma once

#include "platform/Calendar.h"

#include <QStringList>

struct task;

/// The views of the task list; a value is the view's position in the view chooser.
enum class TaskView {
    All,
    Open,
    Closed,
    Hidden,
    HiddenOpen,
    HiddenClosed,
    GlobalAll,
    GlobalOpen,
    GlobalClosed,
    DueToday
};

/// The views' titles, by position.
const QStringList &taskViewTitles();

/// True when the view's ordinary rule takes the task: not hidden, and of the view's status if the view has
/// one.
bool isShownUnhidden(const task &entry, int view);

/// True when the rule of the views beyond the first three takes the task, hidden or not.
/// \param today  the day on which the view is built
bool isShownBesides(const task &entry, int view, const Calendar::Day &today);
