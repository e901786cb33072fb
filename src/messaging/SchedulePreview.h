#pragma once

#include "gateway/MessageParts.h"
#include "messaging/RunSnapshot.h"

/// A message as it would go out.
struct PreviewedMessage
{
    explicit PreviewedMessage(const QString &composed);

    QString text;
    QString cutOff; ///< the end of what was composed, which is not sent
    MessageParts parts;
};

/// What one person would be sent.
struct PreviewedPerson
{
    QString name;
    QString number; ///< to which the messages go; empty for none
    std::vector<PreviewedMessage> messages = {};
};

/// What a run would send, without sending anything.
class SchedulePreview
{
public:
    /// \param preferences  title, footer and the number that receives all messages instead
    SchedulePreview(const RunSnapshot &snapshot, const Preferences &preferences);

    const std::vector<PreviewedPerson> &people() const { return previewed; }
    /// In one sentence how much goes to how many, and who gets nothing; empty for nobody.
    QString summary() const;

private:
    std::vector<PreviewedPerson> previewed;
};
