#pragma once

#include "journal/SentMessage.h"

#include <QObject>

#include <memory>
#include <vector>

class GatewayClient;
class MessageFeed;

/// Asks the gateway, for one message after the other, whether it has come to the phone. Lives on the main
/// thread; has to outlive the client's requests.
class DeliveryQuery : public QObject
{
    Q_OBJECT

public:
    /// \param messages  that the gateway has accepted \param feed  learns what has become of them
    DeliveryQuery(std::vector<SentMessage> messages, GatewayClient &gateway,
                  std::shared_ptr<MessageFeed> feed);

    void start() { askNext(); }
    /// Asks for no further message.
    void stop() { messages.resize(asked); }
    bool isDone() const { return isOver; }

signals:
    /// \param sentence  how far it is
    void progressed(const QString &sentence, bool isDone);

private:
    void askNext();
    void takeAnswer(const QString &problem);

    std::vector<SentMessage> messages;
    GatewayClient &gateway;
    std::shared_ptr<MessageFeed> feed;
    size_t asked = 0;
    size_t unknown = 0; ///< for which there was no answer
    QString lastProblem;
    bool isOver = false;
};
