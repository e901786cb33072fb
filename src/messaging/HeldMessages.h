#pragma once

#include "messaging/GatewayRequest.h"

#include <QHash>
#include <QList>
#include <QStringList>

/// The messages that wait for their turn, in the order in which they were added. The preferences decide about
/// each when its turn comes, so that a change holds for those that wait. Used under its owner's lock.
class HeldMessages
{
public:
    explicit HeldMessages(const Preferences &preferences);

    void append(const GatewayMessage &message) { messages.append(message); }
    /// The first message for a recipient who is not among those under way; nothing when there is none. All
    /// are dropped when messages are not to be sent any more, or not on this account.
    std::optional<GatewayRequest> takeNext(const QStringList &underWay);
    void dropAll();
    void dropUnwanted();

    bool isFull() const;
    bool isAnyOf(const void *run) const;
    /// How many of the run's messages were dropped since this was asked last.
    qsizetype takeDropped(const void *run) { return dropped.take(run); }

private:
    const Preferences &preferences;
    QList<GatewayMessage> messages;
    QHash<const void *, qsizetype> dropped; ///< by run
};
