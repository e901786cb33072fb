#include "Account.h"
#include "messaging/TextMessage.h"
#include "support/CapturedOutput.h"
#include "support/TestProgram.h"

#include <QRegularExpression>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

HttpsServer::Answer created(const HttpsServer::Request &)
{
    return {HttpsServer::response("201 CREATED", "queued ü")};
}

/// Sends one message and gives the lines that are written about it.
QStringList linesOfMessage(const QString &message, const Preferences &preferences,
                           const GatewayAddress &address)
{
    CapturedOutput output;
    GatewayClient gateway(address);
    sendTextMessage(message, u"+49 30 & 1"_s, preferences, gateway);
    gateway.finish(20s);
    return output.takeLines();
}

} // namespace

class GatewayTest : public QObject
{
    Q_OBJECT

private slots:
    void requestAsTheGatewaySeesIt()
    {
        const HttpsServer server(created);
        Account account;
        const QStringList lines =
            linesOfMessage(u"Mow & rake, 50% = ü\n😀"_s, account.preferences, addressOf(server));
        QCOMPARE(lines, QStringList({u"Start Message"_s, u"Start Message"_s, u"Finished"_s,
                                     u"Response: queued ü"_s}));
        QCOMPARE(server.requests().size(), 1);
        const HttpsServer::Request request = server.requests().first();
        const QByteArrayList head = request.head.split('\n');
        QVERIFY(head.contains("Content-Type: application/x-www-form-urlencoded\r"));
        QCOMPARE(request.body, "From=%2B1%20555%200100&To=%2B49%2030%20%26%201&Body="
                               "Mow%20%26%20rake%2C%2050%25%20%3D%20%C3%BC%0A%F0%9F%98%80");

        account.preferences.setBoolean(messagingKey::overwrite, true);
        linesOfMessage(u"x"_s, account.preferences, addressOf(server));
        QCOMPARE(formField(server.requests().last(), u"To"_s), QString());
        account.preferences.setText(messagingKey::testPhoneNo, u"+1 99"_s);
        linesOfMessage(u"x"_s, account.preferences, addressOf(server));
        QCOMPARE(formField(server.requests().last(), u"To"_s), u"+1 99"_s);
    }

    void longMessagesAreCut()
    {
        const HttpsServer server(created);
        const Account account;
        const QString letters = u"üe\u0301🇩🇪\r\n"_s.repeated(40).chopped(2); // 159 as a reader counts
        const QString family = u"👩‍👧‍👦"_s;
        for (const auto &[message, sent] : {std::pair(letters, letters),
                                            {letters + family, letters + family},
                                            {letters + family + u"x"_s, letters + family}}) {
            linesOfMessage(message, account.preferences, addressOf(server));
            QCOMPARE(formField(server.requests().last(), u"Body"_s), sent);
        }
    }

    void answersAreWrittenDownAndNothingIsRepeated()
    {
        const auto response = [](const char *status, const QByteArray &body, const char *headers = "") {
            return HttpsServer::response(status, body, headers);
        };
        const Account account;
        for (const auto &[answer, expected] : std::initializer_list<std::pair<QByteArray, QString>>{
                 {response("401 UNAUTHORIZED", "who?", "WWW-Authenticate: Basic realm=\"x\"\r\n"),
                  u"Response: who?"_s},
                 {response("401 UNAUTHORIZED", "who?", "WWW-Authenticate: Negotiate\r\n"),
                  u"Response: who?"_s},
                 {response("407 PROXY", "pay"), u"Response: pay"_s},
                 {response("307 MOVED", "elsewhere", "Location: /\r\n"), u"Response: elsewhere"_s},
                 {response("503 UNAVAILABLE", "later", "Retry-After: 0\r\n"), u"Response: later"_s},
                 {response("204 NO CONTENT", ""), u"Error: nil"_s},
                 {response("200 OK", "abc\xc3"), u"Error: nil"_s}, // ends within a character
                 {response("200 OK", "s3cr:t, Basic " + QByteArray("AC12:s3cr:t").toBase64()),
                  u"Response: …, Basic …"_s},
                 {"\x01\x02 no HTTP\r\n\r\n", u"Error: Optional(*)"_s},
                 {"HTTP/1.1 200 O", u"Error: Optional(*)"_s},
                 {"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf", u"Error: Optional(*)"_s}}) {
            const HttpsServer server([&](const auto &) { return HttpsServer::Answer{answer, true}; });
            const QStringList lines = linesOfMessage(u"x"_s, account.preferences, addressOf(server));
            QCOMPARE(lines.size(), 4);
            QCOMPARE(lines[2], u"Finished"_s);
            QVERIFY2(QRegularExpression::fromWildcard(expected).match(lines[3]).hasMatch(),
                     qPrintable(lines[3]));
            QCOMPARE(server.requests().size(), 1);
        }
    }

    void gatewaysThatCannotBeTrustedOrReached()
    {
        const Account account;
        auto server = std::make_unique<HttpsServer>(created);
        const GatewayAddress address = addressOf(*server);
        GatewayAddress unknown = address;
        unknown.trusted.clear();
        GatewayAddress other = address;
        other.host = u"localhost"_s; // not in the certificate
        for (const GatewayAddress &gateway : {unknown, other}) {
            const QStringList lines = linesOfMessage(u"x"_s, account.preferences, gateway);
            QVERIFY(lines[3].startsWith(u"Error: Optional(") && lines[3].contains(u"certificate"));
        }
        QVERIFY(server->requests().isEmpty());
        server.reset();
        const QStringList lines = linesOfMessage(u"x"_s, account.preferences, address);
        QVERIFY(lines[3].startsWith(u"Error: Optional("));
    }

    void accountsThatMakeNoAddress()
    {
        Account account;
        const HttpsServer server(created);
        for (const auto &[accountId, secret] : {std::pair(u"AC 12"_s, u"sesame"_s),
                                                {u"../12"_s, u"sesame"_s},
                                                {u".."_s, u"sesame"_s},
                                                {u"AC:12"_s, u"sesame"_s},
                                                {u"AC"_s, u"s\r\nX: y"_s},
                                                {u"AC"_s, u"s@evil"_s},
                                                {u"AC"_s, u"sécret"_s},
                                                {u"AC"_s, u"a%41"_s}}) {
            account.preferences.setText(messagingKey::accountId, accountId);
            account.preferences.setText(messagingKey::secret, secret);
            const QStringList lines = linesOfMessage(u"x"_s, account.preferences, addressOf(server));
            QCOMPARE(lines.size(), 2);
            QVERIFY(lines[1].startsWith(u"Message refused") && !lines[1].contains(secret));
        }
        QVERIFY(server.requests().isEmpty());
        for (const QString &accountId : {u""_s, u"A-._~!$&'()*+,;="_s}) {
            account.preferences.setText(messagingKey::accountId, accountId);
            account.preferences.setText(messagingKey::secret, accountId + u':');
            linesOfMessage(u"x"_s, account.preferences, addressOf(server));
            QVERIFY(server.requests().last().head.startsWith("POST /2010-04-01/Accounts/" +
                                                             accountId.toLatin1() + "/SMS/Messages HTTP"));
        }
    }

    void systemsCertificatesAreTrusted()
    {
        QCOMPARE(tlsConfiguration({}), QSslConfiguration::defaultConfiguration());
    }

    void slowAnswersEnd()
    {
        const HttpsServer server([](const auto &) {
            return HttpsServer::Answer{"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf"};
        });
        const Account account;
        CapturedOutput output;
        GatewayClient gateway(addressOf(server), 1s);
        sendTextMessage(u"x"_s, u"1"_s, account.preferences, gateway);
        QVERIFY(gateway.finish(20s));
        QCOMPARE(output.takeLines().last(), u"Error: Optional(The gateway did not answer in time)"_s);
    }

    void connectionsAreUsedWhileTheyAreFresh()
    {
        std::atomic<int> received = 0;
        const HttpsServer server([&received](const auto &request) {
            return ++received == 2 ? HttpsServer::Answer{{}, true} : created(request);
        });
        const Account account;
        CapturedOutput output;
        const auto send = [&](GatewayClient &gateway, int number) {
            sendTextMessage(QString::number(number), u"1"_s, account.preferences, gateway);
            qsizetype finished = 0;
            QTRY_COMPARE_WITH_TIMEOUT(finished += output.takeLines().count(u"Finished"_s), 1, 20'000);
        };
        GatewayClient patient(addressOf(server), 1min, 1h);
        for (const int number : {1, 2, 3, 4})
            send(patient, number);
        GatewayClient impatient(addressOf(server), 1min, -1ms); // gives up every connection
        for (const int number : {5, 6})
            send(impatient, number);
        QStringList bodies;
        QList<quint16> ports;
        for (const HttpsServer::Request &request : server.requests()) {
            bodies.append(formField(request, u"Body"_s));
            ports.append(request.clientPort);
        }
        QCOMPARE(bodies.join(u' '),
                 u"1 2 3 4 5 6"_s); // the second met a broken connection, and went out once
        QVERIFY(ports[3] == ports[2] && ports[5] != ports[4]);
    }

    void requestsOverlapUpToALimit()
    {
        std::atomic<int> received = 0;
        const HttpsServer server([&received](const auto &request) {
            HttpsServer::Answer answer = created(request);
            answer.delay = ++received <= 6 ? 1s : 0s;
            return answer;
        });
        const Account account;
        CapturedOutput output;
        GatewayClient gateway(addressOf(server));
        constexpr int count = 20;
        for (int i = 0; i < count; ++i)
            QVERIFY(sendTextMessage(QString::number(i), u"1"_s, account.preferences, gateway));
        QVERIFY(gateway.finish(20s));
        QCOMPARE(server.requests().size(), count);
        QVERIFY2(server.mostAtOnce() > 1 && server.mostAtOnce() <= 6,
                 qPrintable(QString::number(server.mostAtOnce())));
        const QStringList lines = output.takeLines();
        QCOMPARE(lines.first(4), QStringList(4, u"Start Message"_s));
        QCOMPARE(lines.count(u"Response: queued ü"_s), count);
    }

    void closing()
    {
        const HttpsServer server([](const auto &) { return HttpsServer::Answer{{}, false, 1h}; });
        const Account account;
        CapturedOutput output;
        GatewayClient gateway(addressOf(server));
        QVERIFY(sendTextMessage(u"x"_s, u"1"_s, account.preferences, gateway));
        QTRY_VERIFY_WITH_TIMEOUT(!server.requests().isEmpty(), 20'000);
        QVERIFY(!gateway.finish(100ms));
        QVERIFY(!sendTextMessage(u"y"_s, u"1"_s, account.preferences, gateway));
        QCOMPARE(output.takeLines().filter(u"Error: Optional(The program ended"_s).size(), 1);
        QCOMPARE(server.requests().size(), 1);
    }
};

static const TestClass<GatewayTest> registered;

#include "GatewayTest.moc"
