#include "Account.h"
#include "contacts/Contact.h"
#include "messaging/ScheduleRuns.h"
#include "messaging/ViewControllerSending.h"
#include "model/TaskManager.h"
#include "support/CapturedOutput.h"
#include "support/Tasks.h"
#include "support/TestProgram.h"
#include "widgets/DatePicker.h"
#include "widgets/ProgressIndicator.h"

#include <QCheckBox>
#include <QDeadlineTimer>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTableView>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

Instant onDay(int day)
{
    return Calendar::instantOf(QDateTime(QDate(2026, 11, day), QTime(12, 0)));
}

task job(const QString &name, int day, const QString &client, const QString &teamMember)
{
    return {.date = onDay(day),
            .name = name,
            .client = client,
            .teamMember = teamMember,
            .due = onDay(day),
            .startHour = 9,
            .endHour = 17,
            .endMin = 30};
}

/// A gateway, an account with it, three clients, two team members and some tasks of theirs.
struct Office
{
    /// \param onRequest  is called on the gateway's thread
    explicit Office(std::function<void(Office &)> onRequest = {})
        : server([this, onRequest](const HttpsServer::Request &) {
            if (onRequest)
                onRequest(*this);
            return HttpsServer::Answer{HttpsServer::response("201 CREATED", "ok")};
        })
    {
        PersistentContainer store(contactModel(), folder.path());
        store.loadPersistentStores();
        addContact<Clients>(store, u"Ann"_s, u"+1"_s);
        addContact<Clients>(store, u"ZOË"_s, {});
        addContact<Clients>(store, u"ann"_s, u"+3"_s);
        addContact<Clients>(store, {}, u"+4"_s);
        addContact<TeamMembers>(store, u"Bob"_s, u"+5"_s);
        store.viewContext().save();
        setTasks(manager, {job(u"Late"_s, 8, u"ANN"_s, u"Bob"_s), job(u"Early"_s, 6, u"ann"_s, u""_s),
                           job(u"Other"_s, 7, u"zoë"_s, u"bob"_s), job(u"After"_s, 9, u"Ann"_s, u"Bob"_s)});
        screen = std::make_unique<ViewControllerSending>(services());
        screen->show();
        child<DatePicker>("startSendDate").setMoment(onDay(6));
        child<DatePicker>("endSendDate").setMoment(onDay(8));
    }

    ViewControllerSending::Services services() { return {manager, runs, folder.path()}; }

    template <typename Record>
    static void addContact(PersistentContainer &store, const std::optional<QString> &name,
                           const std::optional<QString> &phoneNo)
    {
        Record contact(store.viewContext());
        if (name)
            contact.setValue(Contact::Name, *name);
        if (phoneNo)
            contact.setValue(Contact::PhoneNo, *phoneNo);
    }

    template <typename Widget>
    Widget &child(const char *name) const
    {
        return *screen->findChild<Widget *>(QString::fromLatin1(name));
    }

    void select(const char *table, const QList<int> &rows) const
    {
        auto &view = child<QTableView>(table);
        for (const int row : rows)
            view.selectionModel()->select(view.model()->index(row, 0),
                                          QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }

    void press(const char *button) const { QTest::mouseClick(&child<QPushButton>(button), Qt::LeftButton); }
    QString info() const { return child<QLabel>("sendingInfo").text(); }

    /// Waits until the runs have ended and their messages have been answered; what each was.
    QStringList received()
    {
        if (!QTest::qWaitFor([this] { return !screen->isSending(); }, 20'000))
            return {u"the run does not end"_s};
        runs.finish(20s);
        return texts();
    }

    ScheduleRun &addRun(RecipientKind kind, const Recipient &recipient)
    {
        return runs.add({.kind = kind,
                         .recipients = {recipient},
                         .tasks = tasksForSchedules(kind, manager.tasks()),
                         .text = ScheduleText(kind, onDay(1), onDay(30), account.preferences)});
    }

    QStringList texts() const
    {
        QStringList messages;
        for (const HttpsServer::Request &request : server.requests())
            messages.append(formField(request, u"To"_s) + u": "_s + formField(request, u"Body"_s));
        return messages;
    }

    HttpsServer server;
    Account account;
    QTemporaryDir folder;
    TaskManager manager{account.preferences};
    ScheduleRuns runs{account.preferences, addressOf(server)};
    std::unique_ptr<ViewControllerSending> screen;
};

/// The lines without those of the monitor and of the gateway, whose place among the others is open.
QStringList workerLines(QStringList lines)
{
    const QRegularExpression others(u"^(--------------------ASYNC|Progres Index|Max Count|Finished|Response|"
                                    "----NoOfSchedules3|Persistent|<|Save)"_s);
    lines.removeIf([&others](const QString &line) { return others.match(line).hasMatch(); });
    return lines;
}

} // namespace

class SendingTest : public QObject
{
    Q_OBJECT

private slots:
    void buttonsNeedAnAccount()
    {
        Office office;
        Preferences &preferences = office.account.preferences;
        const auto areEnabled = [&office] {
            office.screen->close();
            office.screen->show(); // asked only when the screen appears
            const bool isEnabled = office.child<QPushButton>("sendMsgClients").isEnabled();
            return isEnabled && office.child<QPushButton>("sendMsgTeamMembers").isEnabled() == isEnabled;
        };
        QVERIFY(areEnabled());
        for (const QString &key :
             {messagingKey::secret, messagingKey::accountId, messagingKey::sendingPhoneNo}) {
            const QString before = *preferences.text(key);
            preferences.setText(key, QString());
            QVERIFY2(!areEnabled(), qPrintable(key));
            preferences.setText(key, before);
        }
        preferences.setBoolean(messagingKey::notifications, false);
        QVERIFY(!areEnabled());
    }

    void selectsAllOrNone()
    {
        const Office office;
        auto &box = office.child<QCheckBox>("allClients");
        auto &selection = *office.child<QTableView>("clientsTable").selectionModel();
        CapturedOutput output;
        box.click();
        QCOMPARE(selection.selectedRows().size(), 4);
        QVERIFY(!office.child<QTableView>("teamMembers").selectionModel()->hasSelection());
        box.click();
        QVERIFY(!selection.hasSelection());
        QCOMPARE(output.takeLines(), QStringList({u"1"_s, u"0"_s}));
        office.select("clientsTable", {0, 1, 2, 3});
        QVERIFY(box.isChecked());
    }

    void sendsEachTheirSchedule()
    {
        Office office;
        office.account.preferences.setText(messagingKey::messageFooter, u"Bye."_s);
        office.manager.startSearch(u"Other"_s); // every task takes part all the same
        office.select("clientsTable", {2, 3, 0, 1});
        CapturedOutput output;
        office.press("sendMsgClients");
        QVERIFY(!office.child<QPushButton>("sendMsgTeamMembers").isEnabled());
        QVERIFY(office.child<ProgressIndicator>("progressBar").isAnimated());
        QCOMPARE(office.child<ProgressIndicator>("progressBar").maximum(), 16);
        QCOMPARE(office.info(), u"Sending..."_s);
        const auto scheduleOfAnn = [](const QString &number) {
            return QStringList{number + u"\nClient Schedule: ann\n11/6/26-11/8/26\n\r"_s,
                               number + u"11/6/26 09:00AM-11/6/26 05:30PM Early-"_s,
                               number + u"11/8/26 09:00AM-11/8/26 05:30PM Late-Bob"_s, number + u"Bye."_s};
        };
        QStringList schedules = scheduleOfAnn(u"+1: "_s) +
                                QStringList{u": \nClient Schedule: zoë\n11/6/26-11/8/26\n\r"_s,
                                            u": 11/7/26 09:00AM-11/7/26 05:30PM Other-bob"_s, u": Bye."_s} +
                                scheduleOfAnn(u"+3: "_s);
        QStringList messages = office.received(); // in any order, since they go out on several connections
        messages.sort();
        schedules.sort();
        QCOMPARE(messages, schedules);
        const QStringList names =
            output.takeLines().filter(QRegularExpression(u"^row value: (nil|.*[^\\d]\"\\))$"_s));
        QCOMPARE(names,
                 QStringList({u"row value: Optional(\"Ann\")"_s, u"row value: Optional(\"ZOË\")"_s,
                              u"row value: nil"_s, u"row value: Optional(\"ann\")"_s, u"row value: nil"_s}));
        QVERIFY(office.child<QPushButton>("sendMsgTeamMembers").isEnabled());
        QVERIFY(!office.child<ProgressIndicator>("progressBar").isAnimated());
        QCOMPARE(office.child<ProgressIndicator>("progressBar").value(), 16);
    }

    void linesOfARun()
    {
        for (const bool forClients : {true, false}) {
            Office office;
            if (!forClients) {
                office.child<DatePicker>("startSendDate").setMoment(onDay(7));
                office.child<DatePicker>("endSendDate").setMoment(onDay(7));
                changeTask(office.manager, office.manager.tasks()[1]->key,
                           [](task &entry) { entry.teamMember = u"Bo"_s; });
            }
            CapturedOutput output;
            office.select(forClients ? "clientsTable" : "teamMembers", {forClients ? 1 : 0});
            office.press(forClients ? "sendMsgClients" : "sendMsgTeamMembers");
            QCOMPARE(office.received().size(), 2);
            const QStringList all = output.takeLines();
            const QStringList monitored =
                all.filter(QRegularExpression(u"^(-{20}ASYNC|Progres Index|Max Count)"_s));
            QCOMPARE(monitored.last(3),
                     QStringList({u"--------------------ASYNC--------------------------: 4"_s,
                                  u"Progres Index: 4"_s, u"Max Count: 4"_s}));
            QCOMPARE(all.filter(QRegularExpression(u"^----NoOfSchedules3: \\d ----$"_s)).size(), !forClients);
            const QString expected =
                forClients ? u"row value: Optional(\"ZOË\")|row value: nil|Sending messages ...|"
                             "Sending step: 1|Sending step: 2|ASCENDING|ASCENDING|"
                             "Task Found: Other zoë nil|Start Message|Start Message|"
                             "Hour: 9  Min: 0|Hour: 17  Min: 30|Start Message|Start Message|"
                             "Sending step: 3|Sending step: 4"_s
                           : u"----NoOfSchedules1: 0 ----|----NoOfSchedules4: 0 ----|"
                             "row value: Optional(\"Bob\")|row value: Optional(\"+5\")|"
                             "Sending step: 1|----NoOfSchedules5: 0 ----|"
                             "Sending step: 2|----NoOfSchedules5: 0 ----|SAME|SAME|"
                             "Task Found: Other bob Optional(\"+5\")|Start Message|Start Message|"
                             "----NoOfSchedules2: 1 ----|"
                             "Hour: 9  Min: 0|Hour: 17  Min: 30|Start Message|Start Message|"
                             "Sending step: 3|----NoOfSchedules5: 1 ----|ASCENDING|DESCENDING|"
                             "Sending step: 4|----NoOfSchedules5: 1 ----|ASCENDING|DESCENDING"_s;
            QCOMPARE(workerLines(all), expected.split(u'|'));
        }
    }

    void runsWithNothingToSend()
    {
        Office office;
        office.press("sendMsgClients"); // nobody is selected
        QTRY_COMPARE(office.info(), u"Steps Performed:1 Schedules Sent:0"_s);
        office.select("clientsTable", {0, 2});
        office.child<DatePicker>("endSendDate").setMoment(onDay(5)); // before the first day
        office.press("sendMsgClients");
        QTRY_COMPARE(office.info(), u"Steps Performed:8 Schedules Sent:0"_s);
        setTasks(office.manager, {});
        office.press("sendMsgClients");
        QTRY_COMPARE(office.info(), u"Steps Performed:1 Schedules Sent:0"_s);
        QCOMPARE(office.received(), QStringList());
    }

    void messagesSwitchedOffInTheMiddle()
    {
        Office office(
            [](Office &self) { self.account.preferences.setBoolean(messagingKey::notifications, false); });
        office.account.preferences.setInteger(messagingKey::delay, 3000); // the gateway is asked before that
        office.select("clientsTable", {0});
        office.press("sendMsgClients");
        QCOMPARE(office.received().size(), 1);
        QCOMPARE(office.info(), u"Steps Performed:4 Schedules Sent:2"_s);
        QVERIFY(office.child<QPushButton>("sendMsgClients").isEnabled()); // whatever the settings are now
    }

    void endOfTheProgramEndsTheRun()
    {
        Office office;
        office.account.preferences.setText(messagingKey::messageFooter, u"Bye."_s);
        office.account.preferences.setInteger(messagingKey::delay, 3'600'000);
        office.select("clientsTable", {0, 1, 2, 3});
        CapturedOutput output;
        office.press("sendMsgClients");
        QTRY_COMPARE_WITH_TIMEOUT(office.texts().size(), 1, 20'000);
        office.runs.stop();
        QCOMPARE(output.takeLines().filter(u"Messages not sent"_s), QStringList{u"Messages not sent: 10"_s});
        QVERIFY(office.runs.finish(20s));
        QCOMPARE(office.texts().size(), 1);
    }

    void runsThatOverlap()
    {
        Office office;
        office.account.preferences.setInteger(messagingKey::delay, 20);
        int ended = 0;
        for (const RecipientKind kind : {RecipientKind::Client, RecipientKind::TeamMember}) {
            ScheduleRun &run = kind == RecipientKind::Client ? office.addRun(kind, {u"Ann"_s, u"+1"_s})
                                                             : office.addRun(kind, {u"Bob"_s, u"+5"_s});
            connect(&run, &ScheduleRun::finished, this, [&ended] { ++ended; });
            run.start();
            office.manager.select(office.manager.tasks().size() - 1);
            office.manager.deleteSelectedTask(); // so that the other run has fewer steps
        }
        QTRY_COMPARE_WITH_TIMEOUT(ended, 2,
                                  20'000); // although one counter serves runs of four and of three steps
        QVERIFY(office.runs.finish(20s));
        QCoreApplication::processEvents();
        QCOMPARE(ended, 2); // each ends once
        const QStringList messages = office.texts();
        QCOMPARE(messages.size(), 7);
        QCOMPARE(QSet<QString>(messages.begin(), messages.end()).size(), 7);
    }

    void monitorDoesNotFloodTheMainThread()
    {
        Office office;
        office.account.preferences.setInteger(messagingKey::delay, 3'600'000);
        ScheduleRun &run = office.addRun(RecipientKind::Client, {u"Ann"_s, u"+1"_s});
        const QSignalSpy progressed(&run, &ScheduleRun::progressed);
        CapturedOutput output;
        run.start();
        const QDeadlineTimer deadline(20s);
        for (qsizetype polls = 0; polls < 20 && !deadline.hasExpired();)
            polls += output.takeLines().filter(u"Max Count: 4"_s).size();
        QVERIFY(!deadline.hasExpired());
        QCoreApplication::sendPostedEvents(&run, QEvent::MetaCall);
        QVERIFY2(progressed.size() >= 1 && progressed.size() <= 2,
                 qPrintable(QString::number(progressed.size())));
        office.runs.stop();
    }
};

static const TestClass<SendingTest> registered;

#include "SendingTest.moc"
