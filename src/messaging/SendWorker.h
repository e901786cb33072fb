#pragma once

#include "messaging/RunSnapshot.h"

class GatewayClient;

/// Walks through the recipients of a run and their tasks, composes the messages and hands them to the
/// gateway. Its work is to be done on a thread of its own, since there is a pause after every message.
class SendWorker
{
public:
    SendWorker(const RunSnapshot &snapshot, RunCounters &counters, const Preferences &preferences,
               GatewayClient &gateway);

    /// Returns when everything has been handed over, or soon after the client was closed. A diagnostic line
    /// tells how many messages were not sent, if any.
    void run();

private:
    bool sendSchedule(qint64 position, const Recipient &recipient);
    void beginRecipient();
    void sendTask(const task &entry);
    void send(const QString &message);
    void countUnsent(const std::optional<QString> &name, size_t firstTask);

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
};
