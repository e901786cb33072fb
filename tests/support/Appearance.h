#pragma once

#include "platform/AppearanceSetting.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"

/// The desktop's choice between light and dark while it lives; light again afterwards.
class Appearance
{
public:
    explicit Appearance(bool dark = false) { set(dark); }
    ~Appearance() { set(false); }
    Q_DISABLE_COPY(Appearance)

    void set(bool dark)
    {
        Preferences::standard().setGlobalText(appearanceSetting::key,
                                              dark ? std::optional(appearanceSetting::dark) : std::nullopt);
    }
    /// And tells whoever observes these notices.
    void set(bool dark, NotificationCenter &systemNotices)
    {
        set(dark);
        systemNotices.post(notice::appearanceChanged);
    }
};
