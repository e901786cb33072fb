#pragma once

#include "platform/Calendar.h"

#include <QVariant>

struct task;

/// What an open task's due date says today.
enum class DueMark { None, Today, Overdue };

/// \param today  the present day
DueMark dueMarkOf(const task &entry, const Calendar::Day &today);

/// What the cell of the due date shows of it: the mark, a tool tip, and a text for screen readers; nothing
/// for other roles, and for a task without a mark.
QVariant dueMarkData(const task &entry, const Calendar::Day &today, int role);
