#pragma once

#include "model/task.h"

/// The lines that end whatever is shared: where the program is to be had.
QString shareFooter();

/// The task as a labelled text for somebody else, in lines that end with a line feed. Dates are in the short
/// form of the user's locale.
/// \param messageKey  random UUID that identifies the message
QString taskShareText(const task &shared, const QString &messageKey);
