#pragma once

#include <QStringList>

struct task;

/// The names of the fields in which the two tasks differ as far as they are filed, but for key and hidden
/// flag. Both are held for the same appearance, whichever that is.
QStringList differingFields(const task &a, const task &b);
/// Whether there are none, and key and hidden flag are the same, too.
bool areFiledAlike(const task &a, const task &b);
