#include "Office.h"
#include "journal/JournalStore.h"
#include "messaging/RunReport.h"
#include "support/TestProgram.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QDir>
#include <QGuiApplication>

namespace {

HttpsServer::Answer answerOf(const QByteArray &status, const QByteArray &json)
{
    return {HttpsServer::response(status, json)};
}

/// Takes what goes to +1, refuses what goes to +3 and to nobody, and keeps silent towards +5. Of what it has
/// taken, only the first message has come to the phone.
HttpsServer::Answer gateway(const HttpsServer::Request &request)
{
    if (request.head.startsWith("GET "))
        return request.head.contains("/Messages/SM1 ")
                   ? answerOf("200 OK", R"({"sid": "SM1", "status": "delivered"})")
                   : answerOf("200 OK", R"({"sid": "SM2", "status": "failed", "error_code": 30006})");
    const QString number = request.field(u"To"_s);
    if (number == u"+5")
        return {{}, true};
    if (number == u"+3")
        return answerOf("400 BAD REQUEST", R"({"code": 21610, "message": "s3cr:t"})");
    if (number.isEmpty())
        return answerOf("400 BAD REQUEST", R"({"code": 21211})");
    const QByteArray identifier = request.body.contains("Late") ? "SM2" : "SM1";
    return answerOf("201 CREATED", R"({"status": "queued", "sid": ")" + identifier + "\"}");
}

} // namespace

class ReportTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QApplication::setDoubleClickInterval(0); }

    void everyMessageIsReportedAndKept()
    {
        Office office(gateway);
        const auto sum = [&office] {
            return office.child<QLabel>("reportSum").text();
        };
        office.select("clientsTable", {0, 1, 2});
        office.press("sendMsgClients");
        const QAbstractItemModelTester tester(office.runs.report());
        QTRY_COMPARE(sum(), u"3 accepted, 5 refused"_s);
        office.press("askForDelivery");
        QTRY_COMPARE(office.child<QLabel>("reportNews").text(), u"The gateway was asked about 3 messages."_s);
        QTRY_COMPARE(sum(), u"2 delivered, 5 refused, 1 not delivered"_s);
        office.child<QCheckBox>("problemsOnly").click();
        auto &table = office.child<QTableView>("reportTable");
        QCOMPARE(table.model()->rowCount(), 6);
        office.press("copyReport");
        QCOMPARE(
            QGuiApplication::clipboard()->text().split(u'\n').first(),
            u"Ann\t+1\tLate\tNot delivered: The number is a landline, or its network cannot be reached"_s);
        const QByteArray csv = office.runs.report()->csv();
        QVERIFY(csv.startsWith("\"To\",\"Number\",\"Message\",\"State\"\r\n\"Ann\",\"+1\",\"Late\","));
        QVERIFY(!csv.contains("s3cr:t"));

        JournalStore journal(office.folder.path());
        const auto kept = [&journal] {
            QStringList states;
            for (const SentMessage &message : journal.messages(journal.find({})))
                states.append(message.person + message.number + u' ' + message.taskName + u' ' +
                              stateText(message).section(u':', 0, 0));
            states.sort();
            return states.join(u'|');
        };
        QTRY_COMPARE(kept(), u"Ann+1  Delivered|Ann+1 Early Delivered|Ann+1 Late Not delivered|"
                             "ZOË  Refused|ZOË Other Refused|ann+3  Refused|ann+3 Early Refused|"
                             "ann+3 Late Refused"_s);
    }

    void refusedOnesGoOutOnceMore()
    {
        std::atomic<bool> isAccepting = false;
        Office office([&isAccepting](const HttpsServer::Request &request) {
            return isAccepting ? answerOf("201 CREATED", R"({"sid": "SM3"})") : gateway(request);
        });
        const auto sendAgain = [&office](const QString &answer) {
            const AlertAnswer alert(answer);
            office.press("sendAgain");
            return alert.text + u'|' + alert.informativeText;
        };
        office.select("clientsTable", {0, 2});
        office.press("sendMsgClients");
        QTRY_VERIFY(office.child<QPushButton>("sendAgain").isEnabled());
        QCOMPARE(sendAgain(u"No"_s), u"Send 3 messages again, exactly as they were?|ann (+3)"_s);
        isAccepting = true;
        setTasks(office.manager, {});
        sendAgain(u"Yes"_s);
        QTRY_COMPARE(office.child<QLabel>("reportSum").text(), u"3 accepted"_s);
        QTRY_VERIFY(!office.runs.current());
        QVERIFY(!office.child<QPushButton>("sendAgain").isEnabled());

        isAccepting = false;
        setTasks(office.manager, {job(u"Late"_s, 8, u""_s, u"Bob"_s)});
        office.select("teamMembers", {0});
        office.press("sendMsgTeamMembers");
        QTRY_COMPARE(office.child<QLabel>("reportSum").text(), u"2 without an answer"_s);
        QTRY_VERIFY(!office.runs.current());
        QVERIFY(!office.child<QPushButton>("sendAgain").isEnabled()); // unless one by one
        office.child<QTableView>("reportTable").selectRow(1);
        QCOMPARE(sendAgain(u"No"_s),
                 u"Send one message again, exactly as it was? One of them had no answer and "
                 "may have arrived.|Bob (+5)"_s);
        const QStringList sent = office.received().filter(u"+3: "_s);
        QVERIFY(sent.size() == 6 && sent[0] == sent[1] && sent[2] == sent[3] && sent[4] == sent[5]);
    }

    void thoseWhoSaidNoAreLeftOut()
    {
        Office office(gateway);
        office.select("clientsTable", {2});
        office.press("sendMsgClients");
        auto &table = office.child<QTableView>("clientsTable");
        QTRY_COMPARE(office.child<QLabel>("reportSum").text(), u"3 refused"_s);
        auto &all = office.child<QCheckBox>("allClients");
        const auto selected = [&] {
            all.setChecked(false);
            all.click();
            return table.selectionModel()->selectedRows().size();
        };
        QTRY_COMPARE(selected(), 3);
        QVERIFY(all.isChecked() && !table.selectionModel()->isRowSelected(2));
        table.setCurrentIndex(table.model()->index(2, 0));
        QTRY_VERIFY(office.child<QLabel>("contactRemark").text().contains(u"asked for no more messages"));
        choose(*office.screen, u"Try Again"_s);
        QTRY_COMPARE(selected(), 4);
    }

    void changesSinceTheLastTimeAreSeen()
    {
        Office office(gateway);
        office.select("clientsTable", {0, 1});
        office.press("sendMsgClients");
        auto &table = office.child<QTableView>("clientsTable");
        const auto lastSent = [&table](int row) {
            return table.model()->index(row, 2).data(Qt::ToolTipRole).toString().section(u"; "_s, 1);
        };
        QTRY_COMPARE(lastSent(0), u"nothing has changed since."_s);
        QTRY_COMPARE(lastSent(1), QString()); // refused, and so not told
        setTasks(office.manager,
                 {job(u"Late"_s, 7, u"ANN"_s, u"Bob"_s), job(u"New"_s, 6, u"ann"_s, u""_s), late});
        office.openScreen();
        auto &again = office.child<QTableView>("clientsTable");
        const auto lastSentNow = [&again] {
            return again.model()->index(0, 2).data(Qt::ToolTipRole).toString().section(u"; "_s, 1);
        };
        QTRY_COMPARE(lastSentNow(), u"changed: 1 task moved, 1 new, 1 dropped."_s);
        office.press("changedClients");
        QCOMPARE(again.selectionModel()->selectedRows().size(), 1); // not the other of the same name
        office.press("sendMsgClients");
        QTRY_COMPARE(lastSentNow(), u"nothing has changed since."_s);
    }

    void nothingGoesOutUnlessItIsKept()
    {
        Office office(gateway);
        QVERIFY(QDir(office.folder.path()).mkdir(u"Messages.sqlite"_s));
        office.account.preferences.store({{messagingKey::delay, 60'000}});
        office.select("clientsTable", {0});
        office.press("sendMsgClients");
        QCOMPARE(office.received(), QStringList());
        QTRY_COMPARE(office.child<QLabel>("reportSum").text(), u"3 not sent"_s);
        QTRY_VERIFY(toldIn(*office.screen).contains(u"Nothing further is sent."));
        QVERIFY(office.shown().endsWith(u" – messages that were not sent: 3"_s));
    }
};

static const TestClass<ReportTest> registered;
#include "ReportTest.moc"
