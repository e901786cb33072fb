#pragma once

#include "model/TaskColumn.h"
#include "model/task.h"

/// Sorts the tasks by the column's value; tasks of equal value keep their order in either direction.
void sortTasks(TaskList &tasks, TaskColumn column, bool ascending);
