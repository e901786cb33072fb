#pragma once

#include "gateway/GatewayClient.h"
#include "messaging/RunSnapshot.h"

/// Walks through the recipients of a run and their tasks, composes the messages and hands them to the
/// gateway. Its work is to be done on a thread of its own, since there is a pause after every message.
class SendWorker
{
public:
    /// \param feed  learns what becomes of each message; null for nobody
    SendWorker(const RunSnapshot &snapshot, RunCounters &counters, const Preferences &preferences,
               GatewayClient &gateway, std::shared_ptr<MessageFeed> feed = {});

    /// Returns when everything has been handed over, or soon after it was stopped or the client closed. A
    /// diagnostic line tells how many messages were not sent, if any.
    void run();
    /// Sends nothing further. May be called from any thread.
    void stop();
    /// How many messages were not sent since it was stopped, once it has run.
    qint64 unsentMessages() const { return stopped.stop_requested() ? unsent : 0; }

private:
    bool isOver() const { return gateway.isClosed() || stopped.stop_requested(); }
    bool sendSchedule(qint64 position, const Recipient &recipient);
    void beginRecipient();
    void sendTask(const task &entry);
    MessageOrigin originFor(const task *entry);
    void send(const QString &message, const task *entry = nullptr);
    void sendAgain();
    void tellUnsent(const std::optional<QString> &name, size_t firstTask);
    void tellUnsent(const QString &message, const task *entry = nullptr, const QString &reason = {});

    const RunSnapshot &snapshot;
    RunCounters &counters;
    const Preferences &preferences;
    GatewayClient &gateway;

    // The recipient whose schedule is being composed, in the one of the run's kind; the other stays empty.
    Recipient sendingClientTask;
    Recipient sendingTeamMemberTask;
    Recipient &sendingTask;
    bool hasMatched = false; ///< the recipient has been sent a task
    qint64 unsent = 0;
    qint64 began = QDateTime::currentMSecsSinceEpoch(); ///< by which the journal tells runs apart
    qsizetype place = 0;                                ///< of the next message in the run
    std::stop_source stopped;
    std::shared_ptr<MessageFeed> feed;
};
