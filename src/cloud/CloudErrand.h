#pragma once

#include "cloud/CloudDatabase.h"

#include <functional>
#include <optional>
#include <stop_token>

/// An operation from its first request to its last answer; shared with its handlers, and used on the main
/// thread only.
struct CloudErrand
{
    bool saved = true; ///< nothing has failed so far
    bool hasAccount = true;
    std::optional<CloudError> error = {}; ///< the first
    std::stop_token stop = {};
    std::function<void(const CloudErrand &)> whenOver = {};
    qint64 unanswered = 0;

    void fail(const CloudError &reason)
    {
        saved = false;
        if (!error)
            error = reason;
    }
    /// False when the answer is an error, which it takes note of.
    bool take(const auto &answer)
    {
        const auto *reason = std::get_if<CloudError>(&answer);
        if (reason)
            fail(*reason);
        return !reason;
    }
    void settle()
    {
        if (--unanswered == 0 && whenOver)
            whenOver(*this);
    }
};
