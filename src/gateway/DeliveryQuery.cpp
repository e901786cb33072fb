#include "gateway/DeliveryQuery.h"

#include "gateway/GatewayClient.h"

using namespace Qt::StringLiterals;

DeliveryQuery::DeliveryQuery(std::vector<SentMessage> acceptedMessages, GatewayClient &gatewayClient,
                             std::shared_ptr<MessageFeed> messageFeed)
    : messages(std::move(acceptedMessages))
    , gateway(gatewayClient)
    , feed(std::move(messageFeed))
{
}

void DeliveryQuery::askNext()
{
    if (asked == messages.size()) {
        isOver = true;
        const QString failure =
            u"The gateway has not told of %1 of them: %2."_s.arg(unknown).arg(lastProblem);
        emit progressed((asked == 1 ? u"The gateway was asked about one message."_s
                                    : u"The gateway was asked about %1 messages."_s.arg(asked)) +
                            (unknown == 0 ? QString() : u' ' + failure),
                        true);
        return;
    }
    emit progressed(u"Asking the gateway: %1 of %2…"_s.arg(asked + 1).arg(messages.size()), false);
    const SentMessage &next = messages[asked++];
    gateway.ask({next, {.feed = feed}}, [this](const QString &problem) {
        QMetaObject::invokeMethod(
            this, [this, problem] { takeAnswer(problem); }, Qt::QueuedConnection);
    });
}

void DeliveryQuery::takeAnswer(const QString &problem)
{
    if (!problem.isEmpty()) {
        ++unknown;
        lastProblem = problem;
    }
    askNext();
}
