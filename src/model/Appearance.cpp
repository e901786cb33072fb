#include "model/Appearance.h"

#include "platform/Preferences.h"

using namespace Qt::StringLiterals;

bool isDarkMode()
{
    return Preferences::standard().text(u"AppleInterfaceStyle"_s) == u"Dark"_s;
}
