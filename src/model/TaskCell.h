#pragma once

#include "model/TaskColumn.h"

#include <QVariant>

struct Color;

/// What a table of tasks shows in one cell: its text, its tool tip, and the task's colour with one that reads
/// well on it; nothing for any other role.
/// \param color  the task's colour for the present appearance
QVariant taskCell(const task &entry, TaskColumn column, const Color &color, int role);
