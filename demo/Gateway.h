#pragma once

#include "gateway/GatewayClient.h"
#include "support/HttpsServer.h"

#include <mutex>

/// What the program takes for the gateway that texts people: accepts every message.
class Gateway
{
public:
    /// While it is held, no message is answered, and so no run of several messages can end.
    std::mutex answers;

    GatewayAddress address() const
    {
        return {
            .host = QStringLiteral("127.0.0.1"), .port = server.port(), .trusted = {server.certificate()}};
    }
    QList<HttpsServer::Request> requests() const { return server.requests(); }

private:
    HttpsServer server{[this](const HttpsServer::Request &) {
        const std::lock_guard turn(answers);
        return HttpsServer::Answer{HttpsServer::response("201 CREATED", R"({"status": "queued"})")};
    }};
};
