#pragma once

#include "platform/SingleInstance.h"

/// Whether the program is to start, given the first outcome of `acquire`. Where another one runs that does
/// not come to the front, a window says so, and where one only may run the user decides; a line on standard
/// error says it as well. For the time before the program's own event loop.
bool mayStart(SingleInstance &instance, SingleInstance::Outcome outcome);
