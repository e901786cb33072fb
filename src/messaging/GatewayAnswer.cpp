#include "messaging/GatewayAnswer.h"

#include "messaging/GatewayRequest.h"

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
