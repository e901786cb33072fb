#pragma once

#include "platform/AppearanceSetting.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"

/// The desktop's choice between light and dark, while a test switches it; light again when it is destroyed.
class Appearance
{
public:
    Appearance() = default;
    ~Appearance() { setDark(false); }
    Appearance(const Appearance &) = delete;
    Appearance &operator=(const Appearance &) = delete;

    void setDark(bool dark)
    {
        Preferences::standard().setGlobalText(appearanceSetting::key,
                                              dark ? std::optional(appearanceSetting::dark) : std::nullopt);
    }
    /// And tells whoever observes these notices.
    void setDark(bool dark, NotificationCenter &systemNotices)
    {
        setDark(dark);
        systemNotices.post(notice::appearanceChanged);
    }
};
