#include "model/Appearance.h"

#include "platform/AppearanceSetting.h"
#include "platform/Preferences.h"

bool isDarkMode()
{
    return Preferences::standard().text(appearanceSetting::key) == appearanceSetting::dark;
}

Color appearanceTextColor()
{
    return isDarkMode() ? Color{1.0, 1.0, 1.0, 1.0} : Color{0.0, 0.0, 0.0, 1.0};
}
