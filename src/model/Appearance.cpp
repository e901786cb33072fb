#include "model/Appearance.h"

#include "platform/Preferences.h"

using namespace Qt::StringLiterals;

bool isDarkMode()
{
    return Preferences::standard().text(u"AppleInterfaceStyle"_s) == u"Dark"_s;
}

Color appearanceTextColor()
{
    return isDarkMode() ? Color{1.0, 1.0, 1.0, 1.0} : Color{0.0, 0.0, 0.0, 1.0};
}
