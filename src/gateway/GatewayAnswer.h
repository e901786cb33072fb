#pragma once

#include "journal/SentMessage.h"

#include <QByteArray>
#include <QString>

struct GatewayRequest;

/// What the gateway has answered, or why there is no answer, as it may be shown and kept: without the
/// authorisation and the secret, which a gateway may send back, and with its control characters written
/// out, which a terminal would obey. A short secret is taken out even where it stands by chance.
QString lineText(const QString &answer, const GatewayRequest &request);

/// What an answer of the gateway says about a message.
///
/// Source: the REST interface of the Twilio SMS gateway, version 2010-04-01, in its XML and JSON forms, and
/// its dictionary of error codes.
struct GatewayAnswer
{
    /// \param status  of HTTP
    /// \param body    XML or JSON; any other content says nothing about the message
    GatewayAnswer(int status, const QByteArray &body);

    /// Writes into the message what has become of it.
    void noteIn(SentMessage &message, const GatewayRequest &request) const;

    MessageState state = MessageState::NoAnswer;
    QString identifier = {}; ///< of the message; ASCII letters and digits
    int code = 0;
    QString reason = {}; ///< in plain words; empty where all is well
};

/// What an error code of the gateway means, in plain words; empty for one that is not known here.
QString meaningOf(int code);
