#pragma once

#include "gateway/GatewayRequest.h"

#include <QHash>
#include <QStringList>

#include <list>
#include <vector>

class MessageJournal;

/// The messages that wait for their turn, in the order in which they were added. The preferences decide about
/// each when its turn comes, so that a change holds for those that wait. Used under its owner's lock.
class HeldMessages
{
public:
    /// \param journal  has to have a message before its turn comes; null where none is kept
    HeldMessages(const Preferences &preferences, MessageJournal *journal);

    void append(const GatewayMessage &message) { messages.push_back({message}); }
    /// The first message for a recipient who is not among those under way; nothing when there is none. All
    /// are dropped when messages are not to be sent any more, or not on this account.
    std::optional<GatewayRequest> takeNext(const QStringList &underWay);
    /// What the journal has to have next: up to so many messages, of those whose turn comes first; none while
    /// it has most of them.
    /// \param isAnyUnderWay  there is time until the next one leaves
    std::vector<SentMessage> takeUnrecorded(qsizetype most, bool isAnyUnderWay);
    /// The journal has what was taken last; or it has not, for this reason, and all messages are dropped and
    /// their runs stopped.
    void setRecorded(const QString &problem);
    void dropAll(const QString &reason);
    void dropUnwanted();

    bool isEmpty() const { return messages.empty(); }
    bool isFull() const;
    bool isAnyOf(const void *run) const;
    /// How many of the run's messages were dropped since this was asked last.
    qsizetype takeDropped(const void *run) { return dropped.take(run); }

private:
    enum class Record { Missing, BeingMade, Made };
    struct Held
    {
        GatewayMessage message;
        Record record = Record::Missing;
    };
    bool isRecorded(const Held &held, const SendSettings &settings) const;
    void drop(const Held &held, const QString &reason);
    void setRecord(Held &held, Record record);

    const Preferences &preferences;
    MessageJournal *journal;
    std::list<Held> messages;               ///< large, and taken out of the middle
    qsizetype recorded = 0;                 ///< how many of them the journal has, or is about to have
    QHash<const void *, qsizetype> dropped; ///< by run
};
