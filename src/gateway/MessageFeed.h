#pragma once

#include "journal/SentMessage.h"

#include <functional>
#include <mutex>
#include <vector>

class QObject;

/// Carries what becomes of a run's messages from the threads that know it to the main thread, several at a
/// time, until the receiver has gone.
class MessageFeed
{
public:
    using Take = std::function<void(const std::vector<SentMessage> &messages)>;
    /// \param receiver  an object of the main thread \param take  is called there
    MessageFeed(QObject &receiver, Take take);

    void tell(const SentMessage &message);
    /// The receiver goes. To be called on the main thread.
    void detach();

private:
    void handOver();

    std::mutex mutex;
    QObject *receiver;
    Take take;
    std::vector<SentMessage> told; ///< and not handed over yet
};
