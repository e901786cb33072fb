#include "journal/SentMessage.h"

using namespace Qt::StringLiterals;

bool SentMessage::isProblem() const
{
    switch (state) {
    case MessageState::Refused:
    case MessageState::NoAnswer:
    case MessageState::NotSent:
    case MessageState::Undelivered:
        return true;
    default:
        return false;
    }
}

static QString stateName(const SentMessage &message)
{
    switch (message.state) {
    case MessageState::Waiting:
        return u"Waiting"_s;
    case MessageState::HandedOver:
        return u"Sent, no answer yet"_s;
    case MessageState::Accepted:
        return u"Accepted as %1"_s.arg(message.identifier);
    case MessageState::Refused:
        return u"Refused"_s;
    case MessageState::NoAnswer:
        return u"No answer: may have arrived"_s;
    case MessageState::NotSent:
        return u"Not sent"_s;
    case MessageState::Delivered:
        return u"Delivered"_s;
    case MessageState::Undelivered:
        return u"Not delivered"_s;
    }
    return {};
}

QString stateText(const SentMessage &message)
{
    const QString name = stateName(message);
    return message.reason.isEmpty() ? name : name + u": "_s + message.reason;
}
