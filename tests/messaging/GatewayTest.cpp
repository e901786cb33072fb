#include "Account.h"
#include "gateway/GatewayAnswer.h"
#include "gateway/TextMessage.h"
#include "support/CapturedOutput.h"
#include "support/TestProgram.h"

#include <QNetworkProxy>
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
                           const GatewayAddress &address, std::chrono::milliseconds timeLimit = 1min)
{
    CapturedOutput output;
    GatewayClient gateway(address, preferences, timeLimit);
    sendTextMessage(message, u"+49 30 & 1"_s, gateway);
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
        const auto send = [&](const QString &message) {
            const QStringList lines = linesOfMessage(message, account.preferences, addressOf(server));
            return lines.join(u'|') == u"Start Message|Start Message|Finished|Response: queued ü";
        };
        QVERIFY(send(u"Mow & rake, 50% = ü\n😀"_s));
        QCOMPARE(server.requests().size(), 1);
        const HttpsServer::Request request = server.requests().first();
        const QByteArrayList head = request.head.split('\n');
        QCOMPARE(head.first(), "POST /2010-04-01/Accounts/AC12/SMS/Messages HTTP/1.1\r");
        QVERIFY(head.contains("Authorization: Basic " + QByteArray("AC12:s3cr:t").toBase64() + '\r'));
        QVERIFY(head.contains("Content-Type: application/x-www-form-urlencoded\r"));
        QCOMPARE(request.body, "From=%2B1%20555%200100&To=%2B49%2030%20%26%201&Body="
                               "Mow%20%26%20rake%2C%2050%25%20%3D%20%C3%BC%0A%F0%9F%98%80");

        account.preferences.store({{messagingKey::secret, u"SK34:k:y"_s}});
        QVERIFY(send(u"x"_s));
        const QByteArray byKey = server.requests().last().head;
        QVERIFY(byKey.contains("/Accounts/AC12/") &&
                byKey.contains(QByteArray("SK34:k:y").toBase64() + '\r'));

        for (const QString &testNumber : {u""_s, u"+1 99"_s}) {
            account.preferences.store(
                {{messagingKey::overwrite, true}, {messagingKey::testPhoneNo, testNumber}});
            QVERIFY(send(u"x"_s));
            QCOMPARE(server.requests().last().field(u"To"_s), testNumber);
        }
    }

    void messagesAreCutBetweenCharacters()
    {
        QFile file(u"/usr/share/unicode/auxiliary/GraphemeBreakTest.txt"_s);
        QVERIFY2(file.open(QIODevice::ReadOnly), "comes with the package unicode-data");
        QStringList messages;
        QStringList cut;
        for (const QString &four : {u"üe\u0301🇩🇪\r\n"_s, u"ก😀🇩🇪क"_s, u"😀👍ท🇫🇷"_s}) { // as a reader counts
            messages.append(four.repeated(50));
            cut.append(four.repeated(40));
        }
        while (!file.atEnd()) { // lines such as ÷ 0020 × 0308 ÷ 0020 ÷, a remark after them
            const QString line = QString::fromUtf8(file.readLine()).section(u'#', 0, 0).remove(u' ');
            QStringList characters;
            for (const QString &codes : line.split(u'÷', Qt::SkipEmptyParts)) {
                characters.append(QString());
                for (const QString &code : codes.trimmed().split(u'×'))
                    characters.last() += QChar::fromUcs4(code.toUInt(nullptr, 16));
            }
            if (characters.isEmpty())
                continue;
            characters.append(u"\u0001"_s); // stands for itself beside whatever it is
            messages.append(QString());
            for (int count = 0; count < 200; ++count) {
                if (count == 160)
                    cut.append(messages.last());
                messages.last() += characters[count % characters.size()];
            }
        }
        QVERIFY(messages.size() > 600);
        const HttpsServer server(created);
        const Account account;
        CapturedOutput output;
        GatewayClient gateway(addressOf(server), account.preferences);
        for (const QString &message : messages)
            sendTextMessage(message, u"1"_s, gateway);
        QVERIFY(gateway.drain() == 0 && gateway.finish(20s));
        QStringList sent;
        for (const HttpsServer::Request &request : server.requests())
            sent.append(request.field(u"Body"_s));
        QCOMPARE(sent, cut);
    }

    void answersAreUnderstood()
    {
        const auto xml = [](const QByteArray &fields) {
            return "<?xml version='1.0'?><TwilioResponse>" + fields + "</TwilioResponse>";
        };
        const auto refusal = [&](const QByteArray &code) {
            return xml("<RestException><Status>400</Status><Message>Their <b>own</b> words\n s3cr:t</Message>"
                       "<Code>" +
                       code + "</Code></RestException>");
        };
        GatewayRequest request;
        request.password = "s3cr:t";
        const auto stateOf = [&](int status, const QByteArray &body) {
            SentMessage message;
            GatewayAnswer(status, body).noteIn(message, request);
            return stateText(message);
        };
        const QString unknown = u"No answer: may have arrived: The gateway's answer cannot be understood"_s;
        const QByteArray entity = "<!DOCTYPE x [<!ENTITY e SYSTEM 'file:///etc/hostname'>]>"
                                  "<TwilioResponse><SMSMessage><Sid>&e;</Sid></SMSMessage></TwilioResponse>";
        for (const auto &[status, body, expected] :
             std::initializer_list<std::tuple<int, QByteArray, QString>>{
                 {201, xml("<SMSMessage><Sid>SM1</Sid><Status>queued</Status></SMSMessage>"),
                  u"Accepted as SM1"_s},
                 {201, R"({"sid": "SM2", "status": "queued", "error_code": null})", u"Accepted as SM2"_s},
                 {200, R"({"sid": "SM2", "status": "delivered"})", u"Delivered"_s},
                 {200,
                  xml("<SMSMessage><Status>undelivered</Status><ErrorCode>30005</ErrorCode><Sid>SM1</Sid>"
                      "</SMSMessage>"),
                  u"Not delivered: The number is unknown or no longer in use"_s},
                 {400, refusal("21614"), u"Refused: The number cannot receive text messages"_s},
                 {400, R"({"code": 21610, "message": "x", "status": 400})",
                  u"Refused: The person has asked for no more messages"_s},
                 {400, refusal("99999"), u"Refused: Their own words …"_s},
                 {401, "who?", u"Refused: The account identifier or the secret is wrong"_s},
                 {429, "", u"Refused: The gateway was sent too much at once"_s},
                 {403, "<html><body>no</body></html>", u"Refused: The gateway gives no reason (403)"_s},
                 {307, "", u"Refused: The gateway names another address, to which nothing is sent"_s},
                 {502, "<html>", u"No answer: may have arrived: The gateway itself had an error (502)"_s},
                 {200, "<html><body>Sign in to the network</body></html>", unknown},
                 {201, R"({"sid": 7, "status": ["queued"], "code": "x"})", unknown},
                 {201, R"({"sid": "../../x"})", unknown},
                 {201, xml("<SMSMessage><Sid>SM1</Sid>"), unknown},
                 {201, entity, unknown},
                 {201, QByteArray(1 << 20, '<'), unknown},
                 {201, "", unknown}})
            QCOMPARE(stateOf(status, body), expected);
        for (const int code : {20003, 20404, 20429, 21211, 21212, 21214, 21408, 21606, 21608, 21610, 21611,
                               21612, 21614, 30003, 30004, 30005, 30006, 30007, 30008})
            QVERIFY2(!meaningOf(code).isEmpty(), qPrintable(QString::number(code)));
    }

    void answersAreWrittenDownAndNothingIsRepeated()
    {
        const auto response = HttpsServer::response;
        const QString late = u"Error: Optional(The gateway did not answer in time)"_s;
        const Account account;
        for (const auto &[answer, expected] : std::initializer_list<std::pair<QByteArray, QString>>{
                 {response("401 UNAUTHORIZED", "who?", "WWW-Authenticate: Basic realm=\"x\"\r\n"),
                  u"Response: who?"_s},
                 {response("401 UNAUTHORIZED", "who?", "WWW-Authenticate: Negotiate\r\n"),
                  u"Response: who?"_s},
                 {response("407 PROXY", "pay", ""), u"Response: pay"_s},
                 {response("307 MOVED", "elsewhere", "Location: /\r\n"), u"Response: elsewhere"_s},
                 {response("503 UNAVAILABLE", "later", "Retry-After: 0\r\n"), u"Response: later"_s},
                 {response("204 NO CONTENT", "", ""), u"Error: nil"_s},
                 {response("200 OK", "abc\xc3", ""), u"Error: nil"_s}, // ends within a character
                 {response("200 OK", "s3cr:t, Basic " + QByteArray("AC12:s3cr:t").toBase64(), ""),
                  u"Response: …, Basic …"_s},
                 {response("200 OK", "\x1b[2J\xc2\x9b", ""), u"Response: ?x1b?2J?x9b"_s},
                 {"\x01\x02 no HTTP\r\n\r\n", u"Error: Optional(*)"_s},
                 {"HTTP/1.1 200 O", u"Error: Optional(*)"_s},
                 {"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf", u"Error: Optional(*)"_s},
                 {"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf", late}}) {
            const bool closes = expected != late;
            const HttpsServer server([&](const auto &) { return HttpsServer::Answer{answer, closes}; });
            const QStringList lines =
                linesOfMessage(u"x"_s, account.preferences, addressOf(server), closes ? 1min : 100ms);
            QVERIFY(lines.size() == 4 && lines[2] == u"Finished");
            QVERIFY2(QRegularExpression::fromWildcard(expected).match(lines[3]).hasMatch(),
                     qPrintable(lines[3]));
            QCOMPARE(server.requests().size(), 1);
        }
    }

    void gatewaysThatCannotBeTrustedOrReached()
    {
        QCOMPARE(tlsConfiguration({}), QSslConfiguration::defaultConfiguration()); // trusts the system's
        const Account account;
        const auto errorOf = [&account](const GatewayAddress &address) {
            const QString line = linesOfMessage(u"x"_s, account.preferences, address).last();
            return line.startsWith(u"Error: Optional(") ? line : QString();
        };
        std::optional<HttpsServer> server(created);
        const GatewayAddress address = addressOf(*server);
        QVERIFY(errorOf({address.host, address.port, {}}).contains(u"certificate"));
        // Reached without the proxy, where nobody is. Qt asks no proxy for 127.0.0.1, which this is, too.
        QNetworkProxy::setApplicationProxy({QNetworkProxy::HttpProxy, u"127.0.0.1"_s, 1});
        const QString error = errorOf({u"0.0.0.0"_s, address.port, address.trusted});
        QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
        QVERIFY2(error.contains(u"certificate"), qPrintable(error)); // it is not for this name
        QVERIFY(server->requests().isEmpty());
        server.reset();
        QVERIFY(!errorOf(address).isEmpty());
    }

    void accountsThatMakeNoAddress()
    {
        Account account;
        const HttpsServer server(created);
        const auto lastLine = [&](const QString &accountId, const QString &secret) {
            account.preferences.store({{messagingKey::accountId, accountId}, {messagingKey::secret, secret}});
            return linesOfMessage(u"x"_s, account.preferences, addressOf(server)).last();
        };
        for (const QString &wrong :
             {u"AC 12"_s, u"../12"_s, u"s\r\nX: y"_s, u"s@evil"_s, u"sécret"_s, u"a%41"_s})
            for (const QString &line : {lastLine(wrong, u"AC"_s), lastLine(u"AC"_s, wrong)})
                QVERIFY2(line.startsWith(u"Message refused") && !line.contains(wrong), qPrintable(wrong));
        for (const QString &accountId : {u".."_s, u"AC:12"_s})
            QVERIFY(lastLine(accountId, u"x"_s).startsWith(u"Message refused"));
        QVERIFY(server.requests().isEmpty());
        const QString odd = u"A-._~!$&'()*+,;="_s;
        QVERIFY(!lastLine(u""_s, odd + u':').isEmpty() && !lastLine(odd, u""_s).isEmpty());
        QVERIFY(server.requests().last().head.contains("/Accounts/" + odd.toLatin1() + "/SMS/"));
        QCOMPARE(server.requests().size(), 2);
    }

    void connectionsAreUsedWhileTheyAreFresh()
    {
        std::atomic<int> received = 0;
        const HttpsServer server([&received](const auto &request) {
            return ++received == 2 ? HttpsServer::Answer{{}, true} : created(request);
        });
        const Account account;
        CapturedOutput output;
        GatewayClient patient(addressOf(server), account.preferences, 1min, 1h);
        GatewayClient impatient(addressOf(server), account.preferences, 1min,
                                -1ms); // gives up every connection
        for (const int number : {1, 2, 3, 4, 5, 6}) {
            sendTextMessage(QString::number(number), u"1"_s, number < 5 ? patient : impatient);
            qsizetype finished = 0;
            QTRY_COMPARE_WITH_TIMEOUT(finished += output.takeLines().count(u"Finished"_s), 1, 20'000);
        }
        QStringList sent;
        for (const HttpsServer::Request &request : server.requests())
            sent.append(u"%1 on %2"_s.arg(request.field(u"Body"_s)).arg(request.connection));
        // The second one's connection broke, and it went out once.
        QCOMPARE(sent.join(u", "), u"1 on 1, 2 on 1, 3 on 2, 4 on 2, 5 on 3, 6 on 4"_s);
    }

    void inOrderToEachOfSix()
    {
        std::atomic<int> received = 0;
        std::atomic<bool> isTooEarly = false;
        QElapsedTimer sinceFirst;
        GatewayClient *client = nullptr;
        const HttpsServer server([&](const HttpsServer::Request &request) {
            if (++received == 12)
                client->close(); // which ends the wait for an answer to one of six
            if (!sinceFirst.isValid())
                sinceFirst.start();
            const bool isFirst = request.field(u"Body"_s) == u"a";
            isTooEarly = isTooEarly || (!isFirst && sinceFirst.elapsed() < 100);
            if (request.field(u"To"_s).size() > 1)
                return HttpsServer::Answer{{}, false, 1h};
            return HttpsServer::Answer{created(request).bytes, false, isFirst ? 200ms : 0ms};
        });
        const Account account;
        CapturedOutput output;
        GatewayClient gateway(addressOf(server), account.preferences);
        client = &gateway;
        for (const QString &message : {u"a"_s, u"b"_s, u"c"_s})
            for (const QString &number : {u"1"_s, u"2"_s})
                sendTextMessage(message, number, gateway);
        int started = 10;
        while (sendTextMessage(u"a"_s, QString::number(started), gateway))
            ++started;
        QVERIFY(started <= 5016 && gateway.drain() == started - 16); // so many are held in memory
        QVERIFY(!gateway.finish(1ms));
        QStringList errors;
        QTRY_COMPARE_WITH_TIMEOUT((errors += output.takeLines().filter(u"Error:"_s)).size(), 6, 20'000);
        QCOMPARE(errors.filter(u"Optional(The program ended"_s).size(), 6);
        QMap<QString, QString> sent;
        for (const HttpsServer::Request &request : server.requests())
            sent[request.field(u"To"_s)] += request.field(u"Body"_s);
        QCOMPARE(sent[u"1"_s] + sent[u"2"_s], u"abcabc"_s);
        QVERIFY(!isTooEarly);
    }

    void pausesAsLongAsIsSet()
    {
        CapturedOutput output;
        Account account;
        for (const auto &[set, paused] :
             {std::pair(-5, 0), {300, 300}, {4'294'967, 4'294'967}, {4'294'968, 4'294'967}}) {
            account.preferences.store({{messagingKey::delay, set}});
            QCOMPARE(SendSettings(account.preferences).delay.count(), paused);
        }
        account.preferences.store({{messagingKey::delay, 200}});
        QList<std::chrono::steady_clock::time_point> arrivals;
        const HttpsServer server([&arrivals](const HttpsServer::Request &request) {
            arrivals.append(std::chrono::steady_clock::now());
            return HttpsServer::Answer{created(request).bytes, false, 600ms};
        });
        GatewayClient gateway(addressOf(server), account.preferences);
        const auto start = std::chrono::steady_clock::now();
        // The second message's turn comes together with the fourth one's.
        for (const QString &number : {u"A"_s, u"A"_s, u"B"_s, u"C"_s, u"D"_s})
            sendTextMessage(u"x"_s, number, gateway);
        QVERIFY(std::chrono::steady_clock::now() - start >= 1s);
        QVERIFY(gateway.drain() == 0 && gateway.finish(20s));
        QCOMPARE(arrivals.size(), 5);
        for (qsizetype next = 1; next < arrivals.size(); ++next)
            QVERIFY(arrivals[next] - arrivals[next - 1] >= 100ms); // some need a new connection
    }

    void runsAreToldOfTheirOwn()
    {
        const HttpsServer server([](const HttpsServer::Request &request) {
            return HttpsServer::Answer{created(request).bytes, false,
                                       request.body.contains("To=1") ? 1h : 0h};
        });
        Account account;
        GatewayClient gateway(addressOf(server), account.preferences);
        const int one = 0;
        const int other = 0;
        for (int number = 0; number < 20; ++number)
            sendTextMessage(u"x"_s, u"1"_s, gateway, {&one});
        sendTextMessage(u"x"_s, u"2"_s, gateway, {&other});
        QCOMPARE(gateway.drain(&other), 0); // although those of the first have to wait
        account.preferences.store({{messagingKey::notifications, false}});
        sendTextMessage(u"x"_s, u"3"_s, gateway, {&other});
        QVERIFY(gateway.drain(&one) == 19 && gateway.drain(&other) == 1 && gateway.drain(&one) == 0);
    }
};

static const TestClass<GatewayTest> registered;
#include "GatewayTest.moc"
