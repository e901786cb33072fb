#include "cloud/CloudHome.h"

#include "platform/IniFile.h"

#include <QUrl>
#include <QUrlQuery>

using namespace Qt::StringLiterals;

static CloudHome unusable(const QString &problem)
{
    return {.kind = CloudHome::Kind::Unusable, .problem = problem};
}

static CloudHome homeOnServer(const QUrl &url)
{
    static const QStringList sslModes{u"disable"_s, u"allow"_s,     u"prefer"_s,
                                      u"require"_s, u"verify-ca"_s, u"verify-full"_s};
    static const QStringList localHosts{QString(), u"localhost"_s, u"127.0.0.1"_s, u"::1"_s};
    if (!url.isValid() || (url.scheme() != u"postgresql" && url.scheme() != u"postgres"))
        return unusable(u"the address is neither postgresql://user@host:port/database nor none"_s);
    if (!url.password().isEmpty())
        return unusable(u"the password belongs in libpq's password file, not in the address"_s);
    CloudHome home{.kind = CloudHome::Kind::PostgreSql,
                   .user = url.userName(),
                   .host = url.host(),
                   .port = url.port(),
                   .database = url.path().mid(1)};
    const bool isLocal = localHosts.contains(home.host);
    home.sslMode = isLocal ? u"prefer"_s : u"verify-full"_s;
    for (const auto &[name, value] : QUrlQuery(url).queryItems()) {
        if (name != u"sslmode" || !sslModes.contains(value))
            return unusable(u"the address has an unknown part: "_s + name + u'=' + value);
        home.sslMode = value;
    }
    return home;
}

CloudHome CloudHome::read(const QString &accountFile, const QString &dataFolder)
{
    const IniFile account(accountFile);
    const QString key = u"url"_s;
    if (!account.isWhole() || (account.contains(key) && !account.text(key)))
        return unusable(accountFile + u" cannot be read"_s);
    if (!account.contains(key))
        return {.file = dataFolder + u"/Cloud.sqlite"_s};
    const QString text = account.text(key)->trimmed();
    if (text == u"none")
        return {.kind = Kind::SignedOut};
    return homeOnServer(QUrl(text, QUrl::StrictMode));
}

QString CloudHome::description() const
{
    switch (kind) {
    case Kind::Embedded:
        return u"embedded "_s + file;
    case Kind::PostgreSql:
        return u"postgresql://%1@%2%3/%4?sslmode=%5"_s.arg(
            user, host, port > 0 ? u':' + QString::number(port) : QString(), database, sslMode);
    case Kind::SignedOut:
        return u"none"_s;
    case Kind::Unusable:
        return problem;
    }
    return {};
}
