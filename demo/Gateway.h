#pragma once

#include "gateway/GatewayClient.h"
#include "support/HttpsServer.h"

#include <QHash>

#include <mutex>

/// What the program takes for the gateway that texts people: accepts the messages to most numbers, refuses
/// those to some, and keeps silent about one.
class Gateway
{
public:
    static inline const QString silentNumber = QStringLiteral("+49 151 5550175");
    /// The numbers to which nothing can be sent, and the error codes that say why.
    static inline const QHash<QString, int> refusals{{QStringLiteral("+49 151 5550171"), 21614},
                                                     {QStringLiteral("+49 151 5550172"), 21610},
                                                     {QStringLiteral("+49 151 5550173"), 21408},
                                                     {QStringLiteral("+49 151 5550174"), 21611}};

    /// While it is held, no message is answered, and so no run of several messages can end.
    std::mutex answers;

    GatewayAddress address() const
    {
        return {
            .host = QStringLiteral("127.0.0.1"), .port = server.port(), .trusted = {server.certificate()}};
    }
    QList<HttpsServer::Request> requests() const { return server.requests(); }

private:
    static QByteArray message(const QByteArray &identifier, const QByteArray &status)
    {
        return "<TwilioResponse><SMSMessage><Sid>" + identifier + "</Sid><Status>" + status +
               "</Status></SMSMessage></TwilioResponse>";
    }
    static QByteArray refusal(int code)
    {
        return "<TwilioResponse><RestException><Status>400</Status><Message>See the code</Message><Code>" +
               QByteArray::number(code) + "</Code></RestException></TwilioResponse>";
    }
    HttpsServer::Answer answerTo(const HttpsServer::Request &request)
    {
        const std::lock_guard turn(answers);
        const QByteArray path = request.head.split(' ').at(1);
        if (request.head.startsWith("GET "))
            return {HttpsServer::response("200 OK", message(path.split('/').last(), "delivered"))};
        const QString number = request.field(QStringLiteral("To"));
        if (number == silentNumber)
            return {{}, true};
        if (const int code = refusals.value(number))
            return {HttpsServer::response("400 BAD REQUEST", refusal(code))};
        return {
            HttpsServer::response("201 CREATED", message("SM" + QByteArray::number(++accepted), "queued"))};
    }

    int accepted = 1000;
    HttpsServer server{[this](const HttpsServer::Request &request) {
        return answerTo(request);
    }};
};
