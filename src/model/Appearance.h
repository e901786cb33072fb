#pragma once

#include "platform/Color.h"

/// True while the desktop is in dark appearance: the preference "AppleInterfaceStyle" is the text "Dark".
/// Read anew at every call, from any thread.
bool isDarkMode();

/// The colour of text that a screen colours itself: white in dark appearance, black in light.
Color appearanceTextColor();

/// Exchanges the stored form of a task colour, always the light one, and the form held in memory, which is
/// inverted while the list is held for dark appearance.
inline Color storedOrHeld(const Color &color, bool inverted)
{
    return inverted ? color.inverted() : color;
}
