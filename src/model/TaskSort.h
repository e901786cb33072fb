#pragma once

#include "model/TaskColumn.h"
#include "model/task.h"

/// Sorts the tasks by the column's value; tasks of equal value keep their order in either direction.
///
/// Texts compare by Unicode code points after canonical composition, case-sensitive; times of day as unpadded
/// texts, so that 10:0 comes before 8:30.
void sortTasks(TaskList &tasks, TaskColumn column, bool ascending);
