#pragma once

#include "platform/AppearanceSetting.h"
#include "platform/Preferences.h"

/// The desktop in dark or light appearance while it lives; light again afterwards.
class Appearance
{
public:
    explicit Appearance(bool dark) { set(dark); }
    ~Appearance() { set(false); }
    Appearance(const Appearance &) = delete;
    Appearance &operator=(const Appearance &) = delete;

    void set(bool dark)
    {
        Preferences::standard().setGlobalText(appearanceSetting::key,
                                              dark ? std::optional(appearanceSetting::dark) : std::nullopt);
    }
};
