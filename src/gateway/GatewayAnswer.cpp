#include "gateway/GatewayAnswer.h"

#include "gateway/GatewayRequest.h"

#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>

#include <algorithm>

using namespace Qt::StringLiterals;

static QString withVisibleControls(const QString &text)
{
    QString visible;
    for (const QChar unit : text)
        if (unit.category() == QChar::Other_Control)
            visible += u"\\x%1"_s.arg(unit.unicode(), 2, 16, QLatin1Char('0'));
        else
            visible += unit;
    return visible;
}

static QString withoutCredentials(QString text, const GatewayRequest &request)
{
    const QByteArray credentials = request.userName + ':' + request.password;
    const QString secret = QString::fromLatin1(request.password);
    for (const QString &hidden : {QString::fromLatin1(credentials.toBase64()), secret, secret.toHtmlEscaped(),
                                  secret.toHtmlEscaped().replace(u'\'', u"&apos;"_s),
                                  QString::fromLatin1(request.password.toPercentEncoding())})
        if (!hidden.isEmpty())
            text.replace(hidden, u"…"_s);
    return text;
}

QString lineText(const QString &answer, const GatewayRequest &request)
{
    return withVisibleControls(withoutCredentials(answer, request));
}

QString meaningOf(int code)
{
    static const QHash<int, QString> meanings{
        {20003, u"The account identifier or the secret is wrong"_s},
        {20404, u"The gateway does not know this account"_s},
        {20429, u"The gateway was sent too much at once"_s},
        {21211, u"The number is not a phone number"_s},
        {21212, u"The sending number is not a phone number"_s},
        {21214, u"The number cannot be reached"_s},
        {21408, u"The account may not send to this country"_s},
        {21606, u"The sending number is not one of the account's, or cannot send text messages"_s},
        {21608, u"A trial account sends to confirmed numbers only, and this one is not confirmed"_s},
        {21610, u"The person has asked for no more messages"_s},
        {21611, u"Too many messages wait at the sending number"_s},
        {21612, u"This number cannot be reached from the sending number"_s},
        {21614, u"The number cannot receive text messages"_s},
        {30003, u"The phone is switched off or out of reach"_s},
        {30004, u"The phone's owner or its network blocks the message"_s},
        {30005, u"The number is unknown or no longer in use"_s},
        {30006, u"The number is a landline, or its network cannot be reached"_s},
        {30007, u"The network took the message for unwanted advertising"_s},
        {30008, u"The network gives no reason"_s},
    };
    return meanings.value(code);
}

namespace {

/// The fields of an answer, under the names that both of its forms share.
struct AnswerFields
{
    bool isUnderstood = false;
    bool isRefusal = false;
    QString identifier = {};
    QString status = {};
    int code = 0;
    QString message = {};
};

AnswerFields fieldsOfXml(const QByteArray &body)
{
    AnswerFields fields;
    QXmlStreamReader xml(body); // does not resolve external entities
    if (!xml.readNextStartElement() || xml.name() != u"TwilioResponse" || !xml.readNextStartElement())
        return fields;
    fields.isRefusal = xml.name() == u"RestException";
    while (xml.readNextStartElement()) {
        const QString name = xml.name().toString();
        const QString text = xml.readElementText(QXmlStreamReader::IncludeChildElements);
        if (name == u"Sid")
            fields.identifier = text;
        else if (name == u"Status")
            fields.status = text;
        else if (name == u"Code" || name == u"ErrorCode")
            fields.code = text.toInt();
        else if (name == u"Message" || name == u"ErrorMessage")
            fields.message = text;
    }
    fields.isUnderstood = !xml.hasError();
    return fields;
}

AnswerFields fieldsOfJson(const QByteArray &body)
{
    const QJsonDocument document = QJsonDocument::fromJson(body);
    const QJsonObject object = document.object();
    const bool isRefusal = object.value(u"code"_s).isDouble();
    return {.isUnderstood = document.isObject(),
            .isRefusal = isRefusal,
            .identifier = object.value(u"sid"_s).toString(),
            .status = object.value(u"status"_s).toString(),
            .code = object.value(isRefusal ? u"code"_s : u"error_code"_s).toInt(),
            .message = object.value(isRefusal ? u"message"_s : u"error_message"_s).toString()};
}

bool isIdentifier(const QString &text)
{
    constexpr qsizetype longest = 64;
    return !text.isEmpty() && text.size() <= longest &&
           std::ranges::all_of(text, [](QChar unit) { return unit < u'\u0080' && unit.isLetterOrNumber(); });
}

QString reasonFor(const AnswerFields &fields)
{
    const QString meaning = meaningOf(fields.code);
    return meaning.isEmpty() ? fields.message.simplified() : meaning;
}

/// Some refusals come without a code, before the gateway has looked at the message.
int codeOf(int status)
{
    static const QHash<int, int> codes{{401, 20003}, {404, 20404}, {429, 20429}};
    return codes.value(status);
}

} // namespace

GatewayAnswer::GatewayAnswer(int status, const QByteArray &body)
{
    constexpr int redirection = 300;
    constexpr int refusal = 400;
    constexpr int serverError = 500;
    AnswerFields fields = body.trimmed().startsWith('{') ? fieldsOfJson(body) : fieldsOfXml(body);
    if (!fields.isUnderstood)
        fields = {};
    if (status >= serverError) { // it may have taken the message before
        reason = u"The gateway itself had an error (%1)"_s.arg(status);
    } else if (fields.isRefusal || status >= refusal) {
        state = MessageState::Refused;
        fields.code = fields.code == 0 ? codeOf(status) : fields.code;
        code = fields.code;
        reason = reasonFor(fields);
        if (reason.isEmpty())
            reason = u"The gateway gives no reason (%1)"_s.arg(fields.code == 0 ? status : fields.code);
    } else if (status >= redirection) {
        state = MessageState::Refused;
        reason = u"The gateway names another address, to which nothing is sent"_s;
    } else if (!isIdentifier(fields.identifier)) {
        reason = u"The gateway's answer cannot be understood"_s;
    } else {
        identifier = fields.identifier;
        const bool isLost = fields.status == u"failed" || fields.status == u"undelivered";
        state = isLost                          ? MessageState::Undelivered
                : fields.status == u"delivered" ? MessageState::Delivered
                                                : MessageState::Accepted;
        code = isLost ? fields.code : 0;
        reason = isLost ? reasonFor(fields) : QString();
    }
}

void GatewayAnswer::noteIn(SentMessage &message, const GatewayRequest &request) const
{
    message.state = state;
    message.code = code;
    message.reason = reason.isEmpty() ? QString() : lineText(reason, request);
    if (!identifier.isEmpty())
        message.identifier = lineText(identifier, request);
}
