#include "Account.h"
#include "messaging/TextMessage.h"
#include "platform/Diagnostics.h"
#include "support/CapturedOutput.h"
#include "support/TestProgram.h"

#include <QElapsedTimer>

#include <chrono>
#include <thread>

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
        QCOMPARE(head.first().trimmed(), "POST /2010-04-01/Accounts/AC12/SMS/Messages HTTP/1.1");
        QVERIFY(head.contains("Authorization: Basic " + QByteArray("AC12:s3cr:t").toBase64() + '\r'));
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

    void longMessagesAreCut_data()
    {
        QTest::addColumn<QString>("character");
        QTest::newRow("letters") << u"ü"_s;
        QTest::newRow("emoji of several") << u"👩‍👧‍👦"_s;
        QTest::newRow("combining") << u"e\u0301"_s;
        QTest::newRow("flags") << u"🇩🇪"_s;
        QTest::newRow("line ends") << u"\r\n"_s;
    }

    void longMessagesAreCut()
    {
        QFETCH(QString, character);
        const HttpsServer server(created);
        const Account account;
        for (const int count : {159, 160, 161}) {
            linesOfMessage(character.repeated(count), account.preferences, addressOf(server));
            QCOMPARE(formField(server.requests().last(), u"Body"_s), character.repeated(qMin(count, 160)));
        }
    }

    void answersAreWrittenDownAndNothingIsRepeated_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("line"); // or how it begins, when it is an error
        const auto response = [](const char *status, const QByteArray &body, const char *headers = "") {
            return HttpsServer::response(status, body, headers);
        };
        QTest::newRow("challenge") << response("401 UNAUTHORIZED", "who?",
                                               "WWW-Authenticate: Basic realm=\"x\"\r\n")
                                   << u"Response: who?"_s;
        QTest::newRow("challenge that Qt would answer")
            << response("401 UNAUTHORIZED", "who?", "WWW-Authenticate: Negotiate\r\n") << u"Response: who?"_s;
        QTest::newRow("proxy's challenge") << response("407 PROXY", "pay") << u"Response: pay"_s;
        QTest::newRow("challenge without a word")
            << response("401 UNAUTHORIZED", "", "WWW-Authenticate: Basic realm=\"x\"\r\n") << u"Error: nil"_s;
        QTest::newRow("redirect") << response("307 MOVED", "elsewhere", "Location: /\r\n")
                                  << u"Response: elsewhere"_s;
        QTest::newRow("refusal") << response("400 BAD REQUEST", "bad number") << u"Response: bad number"_s;
        QTest::newRow("failure") << response("503 UNAVAILABLE", "later", "Retry-After: 0\r\n")
                                 << u"Response: later"_s;
        QTest::newRow("no body") << response("204 NO CONTENT", "") << u"Error: nil"_s;
        QTest::newRow("ends within a character") << response("200 OK", "abc\xc3") << u"Error: nil"_s;
        QTest::newRow("not UTF-8") << response("200 OK", "\xff\xfe") << u"Error: nil"_s;
        QTest::newRow("credentials sent back")
            << response("200 OK", "s3cr:t, Basic " + QByteArray("AC12:s3cr:t").toBase64())
            << u"Response: …, Basic …"_s;
        QTest::newRow("garbage") << QByteArray("\x01\x02 no HTTP\r\n\r\n") << u"Error: Optional("_s;
        QTest::newRow("closed without an answer") << QByteArray() << u"Error: Optional(The gateway closed"_s;
        QTest::newRow("closed within the head") << QByteArray("HTTP/1.1 200 O") << u"Error: Optional("_s;
        QTest::newRow("closed within the body")
            << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf") << u"Error: Optional("_s;
    }

    void answersAreWrittenDownAndNothingIsRepeated()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QString, line);
        const HttpsServer server([&](const auto &) { return HttpsServer::Answer{answer, true}; });
        const Account account;
        const QStringList lines = linesOfMessage(u"x"_s, account.preferences, addressOf(server));
        QCOMPARE(lines.size(), 4);
        QCOMPARE(lines[2], u"Finished"_s);
        QVERIFY2(line.endsWith(u'(') || line.contains(u"Optional") ? lines[3].startsWith(line)
                                                                   : lines[3] == line,
                 qPrintable(lines[3]));
        QCOMPARE(server.requests().size(), 1);
    }

    void gatewaysThatCannotBeTrustedOrReached_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<bool>("isTrusted");
        QTest::addColumn<bool>("isListening");
        QTest::newRow("unknown certificate") << u"127.0.0.1"_s << false << true;
        QTest::newRow("certificate of another host") << u"localhost"_s << true << true;
        QTest::newRow("nobody there") << u"127.0.0.1"_s << true << false;
    }

    void gatewaysThatCannotBeTrustedOrReached()
    {
        QFETCH(QString, host);
        QFETCH(bool, isTrusted);
        QFETCH(bool, isListening);
        auto server = std::make_unique<HttpsServer>(created);
        GatewayAddress address = addressOf(*server);
        address.host = host;
        if (!isTrusted)
            address.trusted.clear();
        if (!isListening)
            server.reset();
        const Account account;
        const QStringList lines = linesOfMessage(u"x"_s, account.preferences, address);
        QCOMPARE(lines.size(), 4);
        QVERIFY2(lines[3].startsWith(u"Error: Optional("), qPrintable(lines[3]));
        QCOMPARE(lines[3].contains(u"certificate"), isListening);
        QVERIFY(!server || server->requests().isEmpty());
    }

    void accountsThatMakeNoAddress_data()
    {
        QTest::addColumn<QString>("accountId");
        QTest::addColumn<QString>("secret");
        QTest::addColumn<bool>("isSent");
        QTest::newRow("blank") << u"AC 12"_s << u"sesame"_s << false;
        QTest::newRow("slash") << u"../12"_s << u"sesame"_s << false;
        QTest::newRow("folder above") << u".."_s << u"sesame"_s << false;
        QTest::newRow("colon") << u"AC:12"_s << u"sesame"_s << false;
        QTest::newRow("line feed in the secret") << u"AC"_s << u"s\r\nX: y"_s << false;
        QTest::newRow("at sign in the secret") << u"AC"_s << u"s@evil"_s << false;
        QTest::newRow("letters of other scripts") << u"AC"_s << u"sécret"_s << false;
        QTest::newRow("percent sign") << u"AC"_s << u"a%41"_s << false;
        QTest::newRow("empty") << u""_s << u""_s << true;
        QTest::newRow("signs") << u"A-._~!$&'()*+,;="_s << u"-._~!$&'()*+,;=:"_s << true;
    }

    void accountsThatMakeNoAddress()
    {
        QFETCH(QString, accountId);
        QFETCH(QString, secret);
        QFETCH(bool, isSent);
        const HttpsServer server(created);
        Account account;
        account.preferences.setText(messagingKey::accountId, accountId);
        account.preferences.setText(messagingKey::secret, secret);
        const QStringList lines = linesOfMessage(u"x"_s, account.preferences, addressOf(server));
        QCOMPARE(server.requests().size(), qsizetype(isSent));
        if (isSent) {
            QVERIFY(server.requests().first().head.startsWith("POST /2010-04-01/Accounts/" +
                                                              accountId.toLatin1() + "/SMS/Messages HTTP"));
        } else {
            QCOMPARE(lines.size(), 2);
            QVERIFY(lines[1].startsWith(u"Message refused"));
            QVERIFY(!lines[1].contains(secret));
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
        GatewayClient gateway(addressOf(server));
        for (const int count : {1, 2, 3, 4, 5}) {
            if (count == 5)
                QTest::qWait(2100); // by then the gateway might be about to close it
            sendTextMessage(QString::number(count), u"1"_s, account.preferences, gateway);
            qsizetype finished = 0;
            QTRY_COMPARE_WITH_TIMEOUT(finished += output.takeLines().count(u"Finished"_s), 1, 20'000);
        }
        QVERIFY(gateway.finish(20s));
        QStringList bodies;
        QList<quint16> ports;
        for (const HttpsServer::Request &request : server.requests()) {
            bodies.append(formField(request, u"Body"_s));
            ports.append(request.clientPort);
        }
        QCOMPARE(bodies.join(u' '),
                 u"1 2 3 4 5"_s); // the second met a broken connection and was not repeated
        QVERIFY(ports[3] == ports[2] && ports[4] != ports[3]);
    }

    void requestsOverlapUpToALimit()
    {
        std::atomic<int> received = 0;
        const HttpsServer server([&received](const auto &request) {
            HttpsServer::Answer answer = created(request);
            answer.delay = ++received <= 6 ? 1s : 0s;
            return answer;
        });
        Account account;
        account.preferences.setInteger(messagingKey::delay, -5);
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
        Account account;
        account.preferences.setInteger(messagingKey::delay, 10'000'000'000); // counts as more than an hour
        CapturedOutput output;
        GatewayClient gateway(addressOf(server));
        QElapsedTimer time;
        time.start();
        bool isStarted = false;
        std::thread sender(
            [&] { isStarted = sendTextMessage(u"x"_s, u"1"_s, account.preferences, gateway); });
        const bool isReceived = QTest::qWaitFor([&server] { return !server.requests().isEmpty(); }, 20'000);
        gateway.close();
        sender.join();
        QVERIFY(isReceived && isStarted);
        QVERIFY(!sendTextMessage(u"y"_s, u"1"_s, account.preferences, gateway));
        QVERIFY(!gateway.finish(100ms));
        QVERIFY(time.elapsed() < 60'000);
        const QStringList lines = output.takeLines();
        QCOMPARE(lines.filter(u"Error: Optional(The program ended"_s).size(), 1);
        QCOMPARE(server.requests().size(), 1);
    }
};

static const TestClass<GatewayTest> registered;

#include "GatewayTest.moc"
