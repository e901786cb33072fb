#pragma once

#include <QPalette>

/// The program's colours in each appearance of the desktop.
namespace palettes {

QPalette light();
QPalette dark();

} // namespace palettes
