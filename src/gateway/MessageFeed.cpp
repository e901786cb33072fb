#include "gateway/MessageFeed.h"

#include <QObject>

#include <utility>

MessageFeed::MessageFeed(QObject &mainThreadObject, Take takeMessages)
    : receiver(&mainThreadObject)
    , take(std::move(takeMessages))
{
}

void MessageFeed::tell(const SentMessage &message)
{
    const std::lock_guard lock(mutex);
    if (!receiver)
        return;
    told.push_back(message);
    if (told.size() == 1) // what is told until it is taken goes with it
        QMetaObject::invokeMethod(
            receiver, [this] { handOver(); }, Qt::QueuedConnection);
}

void MessageFeed::detach()
{
    const std::lock_guard lock(mutex);
    receiver = nullptr;
}

void MessageFeed::handOver()
{
    std::vector<SentMessage> messages;
    {
        const std::lock_guard lock(mutex);
        messages.swap(told);
    }
    take(messages);
}
