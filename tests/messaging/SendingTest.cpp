#include "Office.h"
#include "messaging/PreviewTable.h"
#include "support/CapturedOutput.h"
#include "support/TestProgram.h"

#include <QRegularExpression>
#include <QSemaphore>
#include <QSqlDatabase>
#include <QSqlQuery>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class SendingTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QCoreApplication::addLibraryPath(u"" BINARY_DIR "/bin/" MODULE_PATH ""_s); }
    void init() { QApplication::setDoubleClickInterval(0); } // every press counts

    void noRunIsStartedTwiceUnawares()
    {
        Office office;
        office.select("clientsTable", {0, 3}); // the second one has no name and is sent nothing
        const auto areReceived = [&office](qsizetype messages) {
            return QTest::qWaitFor(
                [&] { return office.server.requests().size() == messages && !office.runs.current(); },
                20'000);
        };
        auto &button = office.child<QPushButton>("sendMsgClients");
        QVERIFY(QTest::qWaitForWindowActive(office.screen.get()));
        for (const bool isHeldDown : {false, true}) {
            QTest::simulateEvent(&button, true, Qt::Key_L, Qt::AltModifier, u"l"_s, isHeldDown, 0);
            QCOMPARE(button.isDown(), !isHeldDown);
            QVERIFY(areReceived(3));
        }
        QApplication::setDoubleClickInterval(3'600'000);
        office.press("sendMsgClients"); // the second press of a double click
        QVERIFY(!office.runs.current());
        QApplication::setDoubleClickInterval(0);
        for (const auto &[answer, messages] : {std::pair(u"No"_s, 3), {u"Yes"_s, 6}}) {
            const AlertAnswer alert(answer);
            office.press("sendMsgClients");
            QVERIFY(alert.text.startsWith(u"The same messages were sent at "));
            QCOMPARE(alert.informativeText, u"Ann (+1)"_s);
            QVERIFY(areReceived(messages));
        }
        office.account.preferences.store({{messagingKey::messageTitle, u"Another"_s}});
        office.press("sendMsgClients");
        QVERIFY(areReceived(9));
    }

    void contactsAreTheNewest()
    {
        Office office;
        office.select("clientsTable", {0, 2, 3});
        office.select("teamMembers", {0});
        PersistentContainer elsewhere(contactModel(), office.folder.path());
        elsewhere.loadPersistentStores();
        ObjectContext &context = elsewhere.viewContext();
        std::vector<ManagedObject> clients = context.fetch(Clients::fetchRequest());
        clients[2].setValue(Contact::PhoneNo, u"+33"_s);
        context.deleteObject(clients[1]);
        QVERIFY(context.save());
        office.press("sendMsgClients");
        QTRY_COMPARE_WITH_TIMEOUT(office.server.requests().size(), 6, 20'000);
        QVERIFY(office.child<QCheckBox>("allClients").isChecked());

        context.deleteObject(clients[2]);
        context.deleteObject(context.fetch(TeamMembers::fetchRequest())[0]);
        QVERIFY(context.save());
        QVERIFY(office.waitFor(u"2 buttons"_s));
        const AlertAnswer alert(u"OK"_s);
        office.press("sendMsgClients");
        QVERIFY(alert.informativeText.startsWith(
            u"No longer among the contacts: ann, Bob. Nothing has been sent."));
        office.press("sendMsgClients");
        const QStringList received = office.received();
        QCOMPARE(received.filter(u"+1: "_s).size() + received.filter(u"+33: "_s).size(), 6 + 3);

        writeTo(elsewhere.path(), "no store");
        office.openScreen();
        QVERIFY(toldIn(*office.screen).startsWith(u"The contacts in %1 could not"_s.arg(elsewhere.path())));
    }

    void aNumberIsPutRight()
    {
        Office office;
        office.account.preferences.store({{messagingKey::sendingPhoneNo, u"+49 151 1234567"_s}});
        PersistentContainer elsewhere(contactModel(), office.folder.path());
        elsewhere.loadPersistentStores();
        ObjectContext &context = elsewhere.viewContext();
        ManagedObject bob = context.fetch(TeamMembers::fetchRequest())[0];
        const auto change = [&](const QString &number) {
            bob.setValue(Contact::PhoneNo, number);
            return context.save();
        };
        QVERIFY(change(u"0151 5550142"_s));
        office.openScreen();
        auto &table = office.child<QTableView>("teamMembers");
        const auto *preview = office.child<QTableView>("previewTable").model();
        table.selectRow(0);
        const auto shown = [preview] {
            return preview->index(0, PreviewTable::Number).data().toString();
        };
        QTRY_COMPARE(shown(), u"0151 5550142"_s);
        const auto correct = [&](const QString &number) {
            choose(*office.screen, u"Correct to "_s + number);
        };
        QVERIFY(change(u"0151 5550143"_s));
        correct(u"+49 1515550142"_s);
        QTRY_COMPARE(shown(), u"0151 5550143"_s); // which nobody has seen before
        QSqlDatabase store = QSqlDatabase::database(context.connectionName());
        QVERIFY(QSqlQuery(store).exec(u"BEGIN IMMEDIATE"_s));
        {
            const AlertAnswer alert(u"OK"_s);
            correct(u"+49 1515550143"_s);
            QVERIFY(alert.informativeText.startsWith(u"The number stays as it was"));
        }
        QVERIFY(store.commit());
        QCOMPARE(table.model()->index(0, Contact::PhoneNo).data(), u"0151 5550143"_s);
        correct(u"+49 1515550143"_s);
        QTRY_COMPARE(shown(), u"+49 1515550143"_s);
        QVERIFY(table.selectionModel()->isRowSelected(0));
        context.refresh();
        QCOMPARE(bob.value(Contact::PhoneNo), u"+49 1515550143"_s);
    }

    void buttonsNeedAnAccount()
    {
        Office office;
        Preferences &preferences = office.account.preferences;
        QVERIFY(office.shown().startsWith(u"2 buttons"));
        for (const auto &[key, none] : {std::pair(messagingKey::secret, u""_s),
                                        {messagingKey::accountId, u""_s},
                                        {messagingKey::sendingPhoneNo, u""_s},
                                        {messagingKey::notifications, u"false"_s}}) {
            const QString before = *preferences.text(key);
            preferences.store({{key, none}});
            office.openScreen();
            QVERIFY2(office.shown().startsWith(u"0 buttons"), qPrintable(key));
            preferences.store({{key, before}});
        }
    }

    void sendsEachTheirSchedule()
    {
        Office office;
        office.account.preferences.store({{messagingKey::messageFooter, u"Bye."_s}});
        office.manager.startSearch(u"Other"_s); // every task takes part all the same
        auto &all = office.child<QCheckBox>("allClients");
        const QItemSelectionModel *selection = office.child<QTableView>("clientsTable").selectionModel();
        all.click();
        QCOMPARE(selection->selectedRows().size(), 4);
        all.click();
        QVERIFY(!selection->hasSelection());
        office.select("clientsTable", {2, 3, 0, 1});
        QVERIFY(all.isChecked());
        office.press("sendMsgClients");
        QCOMPARE(office.shown(), u"0 buttons, moving at 1 of 16: Sending..."_s);
        const auto scheduleOfAnn = [](const QString &number) {
            return QStringList{number + u"\nClient Schedule: ann\n11/6/26-11/8/26\n\r"_s,
                               number + u"11/6/26 09:00AM-11/7/26 05:30PM Early-"_s,
                               number + u"11/8/26 09:00AM-11/9/26 05:30PM Late-Bob"_s, number + u"Bye."_s};
        };
        QStringList schedules = scheduleOfAnn(u"+1: "_s) + scheduleOfAnn(u"+3: "_s) +
                                QStringList{u": \nClient Schedule: zoë\n11/6/26-11/8/26\n\r"_s,
                                            u": 11/7/26 09:00AM-11/8/26 05:30PM Other-bob"_s, u": Bye."_s};
        schedules.sort();
        QCOMPARE(office.received(), schedules);
        QCOMPARE(office.shown(), u"2 buttons, still at 16 of 16: Steps Performed:16 Schedules Sent:5"_s);
    }

    void thePreviewIsWhatIsSent()
    {
        Office office;
        office.account.preferences.store({{messagingKey::messageFooter, u"Bye, "_s + u"🌱"_s.repeated(170)}});
        office.select("clientsTable", {0, 1, 3});
        auto *preview = office.child<QTableView>("previewTable").model();
        const auto sum = [&office] {
            return office.child<QLabel>("previewSum").text();
        };
        const QString expected =
            u"7 messages, 15 parts, to 2 people; 1 person has nothing in these days; 1 has "
            "no number"_s;
        QTRY_COMPARE(sum(), expected);
        QStringList previewed;
        const auto &messages = static_cast<const PreviewTable &>(*preview);
        for (int row = 0; row < messages.rowCount(); ++row)
            if (const PreviewedMessage *message = messages.message(row))
                previewed.append((row < 4 ? u"+1: "_s : u": "_s) + message->text);
        previewed.sort();
        office.press("sendMsgClients");
        QCOMPARE(previewed, office.received());
        QVERIFY(office.child<QLabel>("warning").isHidden());
        office.account.preferences.store(
            {{messagingKey::overwrite, true}, {messagingKey::testPhoneNo, u"+9"_s}});
        office.child<DatePicker>("startSendDate").setMoment(onDay(9));
        office.select("teamMembers", {0});
        QTRY_COMPARE(office.child<QLabel>("warning").text(),
                     u"Test number: every message goes to \"+9\" instead of the people.\n"
                     "The last day is before the first one: nobody has anything in these days."_s);
        QCOMPARE(sum(), u"0 messages, 0 parts, to 0 people; 3 people have nothing in these days\n"
                        "0 messages, 0 parts, to 0 people; 1 person has nothing in these days"_s);
    }

    void partsOfAMessage()
    {
        const auto parts = [](const QString &text) {
            const MessageParts found(text);
            return u"%1 %2 %3%4"_s.arg(QString::number(found.parts), QString::number(found.units),
                                       found.isUcs2 ? u"UCS-2 "_s : u"GSM-7"_s, found.unusual);
        };
        const QString plain = u"Æ@\n Ω~"_s; // seven septets
        QCOMPARE(parts(plain), u"1 7 GSM-7"_s);
        QCOMPARE(parts({}), u"1 0 GSM-7"_s);
        for (const auto &[text, expected] :
             {std::pair(QString(160, u'x'), u"1 160 GSM-7"_s),
              {QString(161, u'x'), u"2 161 GSM-7"_s},
              {QString(306, u'x'), u"2 306 GSM-7"_s},
              {QString(307, u'x'), u"3 307 GSM-7"_s},
              {QString(80, u'€'), u"1 160 GSM-7"_s},
              {QString(152, u'x') + u"€"_s + QString(151, u'x'), u"2 305 GSM-7"_s}, // the escape goes along
              {QString(152, u'x') + u"€"_s + QString(152, u'x'), u"3 306 GSM-7"_s},
              {u"ç"_s, u"1 1 UCS-2 ç"_s},
              {u"`"_s, u"1 1 UCS-2 `"_s},
              {QString(69, u'x') + u"ł"_s, u"1 70 UCS-2 ł"_s},
              {QString(70, u'x') + u"ł"_s, u"2 71 UCS-2 ł"_s},
              {QString(66, u'x') + u"🌱"_s + QString(66, u'x'), u"3 134 UCS-2 🌱"_s}, // nor is a pair split
              {QString(66, u'x') + u"🌱"_s + QString(65, u'x'), u"2 133 UCS-2 🌱"_s}})
            QCOMPARE(parts(text), expected);
    }

    void tasksOfARecipient()
    {
        const Preferences preferences(u"/dev/null/preferences.ini"_s);
        const ScheduleText text(RecipientKind::Client, onDay(6) + std::chrono::hours(5),
                                onDay(8) - std::chrono::hours(5), preferences);
        const auto matches = [&](const QString &client, int day, const std::optional<QString> &name) {
            using enum ScheduleText::DayLines;
            const ScheduledTask candidate = tasksForSchedules(
                RecipientKind::Client, {task{.date = onDay(day), .client = client, .teamMember = u"x"_s}})[0];
            const bool isMatch = text.matches(name, candidate, Written);
            return text.matches(name, candidate, Omitted) == isMatch && isMatch;
        };
        const QString name = matchedName(u"É Ann"_s);
        QVERIFY(matches(u"é ann"_s, 6, name) && matches(u"e\u0301 ANN"_s, 8, name));
        QVERIFY(!matches(u"é ann"_s, 5, name) && !matches(u"é ann"_s, 9, name));
        QVERIFY(!matches(u"é anna"_s, 7, name) && !matches(u"é ann "_s, 7, name));
        QVERIFY(matches(u""_s, 7, u""_s) && !matches(u""_s, 7, std::nullopt));
    }

    void messagesAndLinesOfARun()
    {
        Office office;
        CapturedOutput output;
        office.select("teamMembers", {0});
        office.press("sendMsgTeamMembers");
        const QStringList messages = office.received();
        // Where the monitor's and the gateway's lines stand among the others is open.
        const QRegularExpression others(
            u"^(-{20}ASYNC|Progres Index|Max Count|----NoOfSchedules3|Finished|Response)"_s);
        QStringList lines = output.takeLines();
        lines.removeIf([&](const QString &line) { return line.contains(others); });
        QCOMPARE((messages + lines).join(u'|'),
                 u"+5: \nTeam Member Schedule: bob\n11/6/26-11/8/26\n\r|"
                 "+5: 11/7/26 09:00AM-11/8/26 05:30PM Other-zoë|+5: 11/8/26 09:00AM-11/9/26 05:30PM Late-ANN|"
                 "----NoOfSchedules1: 0 ----|----NoOfSchedules4: 0 ----|"
                 "row value: Optional(\"Bob\")|row value: Optional(\"+5\")|"
                 "Sending step: 1|----NoOfSchedules5: 0 ----|"
                 "Sending step: 2|----NoOfSchedules5: 0 ----|ASCENDING|ASCENDING|"
                 "Task Found: Other bob Optional(\"+5\")|Start Message|Start Message|"
                 "----NoOfSchedules2: 1 ----|"
                 "Hour: 9  Min: 0|Hour: 17  Min: 30|Start Message|Start Message|"
                 "Sending step: 3|----NoOfSchedules5: 1 ----|ASCENDING|SAME|"
                 "Task Found: Late Bob Optional(\"+5\")|----NoOfSchedules2: 2 ----|"
                 "Hour: 9  Min: 0|Hour: 17  Min: 30|Start Message|Start Message|"
                 "Sending step: 4|----NoOfSchedules5: 2 ----|ASCENDING|DESCENDING"_s);
    }

    void runsWithNothingToSend()
    {
        Office office;
        office.select("clientsTable", {0, 2});
        auto &lastDay = office.child<DatePicker>("endSendDate");
        lastDay.selectAll();
        QTest::keyClicks(&lastDay, u"11/5"_s); // before the first day, and the button's shortcut leaves it so
        office.child<QPushButton>("sendMsgClients").click();
        QVERIFY(office.waitFor(u"2 buttons, still at 8 of 8: Steps Performed:8 Schedules Sent:0"_s));
        setTasks(office.manager, {});
        office.press("sendMsgClients");
        QVERIFY(office.waitFor(u"2 buttons, still at 1 of 1: Steps Performed:1 Schedules Sent:0"_s));
        QCOMPARE(office.received(), QStringList());
    }

    void settingsAreReadForEveryMessage()
    {
        int requests = 0;
        Office office([&requests](Office &self) {
            if (++requests == 1)
                self.account.preferences.store({{messagingKey::accountId, u"AC13"_s}});
            if (requests == 10)
                self.account.preferences.store(
                    {{messagingKey::overwrite, true}, {messagingKey::testPhoneNo, u"+9"_s}});
            if (requests == 20)
                self.account.preferences.store({{messagingKey::notifications, false}});
        });
        office.send(tasksOfAnn(50) << late);
        const QList<HttpsServer::Request> received = (office.received(), office.server.requests());
        QCOMPARE(received.size(), 20);
        QVERIFY(received[1].head.contains("/Accounts/AC13/"));
        QVERIFY(received[9].field(u"To"_s) == u"+1" && received[10].field(u"To"_s) == u"+9");
        QCOMPARE(office.shown(), u"2 buttons, still at 51 of 51: Steps Performed:51 Schedules Sent:50"_s);
    }

    void screensThatAreOpenedShowTheRun()
    {
        QSemaphore answers;
        Office office([&answers](Office &) { answers.tryAcquire(1, 20'000); });
        office.press("sendMsgClients"); // nobody is selected
        QVERIFY(office.waitFor(u"2 buttons, still at 1 of 1: Steps Performed:1 Schedules Sent:0"_s));

        // Another run can be started at the last step, while messages are under way. The newest one counts.
        for (const int tasks : {6, 1}) {
            office.send(tasksOfAnn(tasks));
            const QString end = u"2 buttons, still at %1 of %1: Steps Performed:%1 "_s.arg(tasks);
            QVERIFY(office.waitFor(end));
            office.openScreen();
            QVERIFY2(office.shown().startsWith(end), qPrintable(office.shown()));
            QVERIFY(office.shown().endsWith(u" – messages are still being sent"));
            office.select("clientsTable", {0});
            const AlertAnswer alert(u"No"_s);
            office.press("sendMsgClients");
            QVERIFY(alert.wasShown());
        }
        office.account.preferences.store({{messagingKey::secret, u""_s}});
        office.openScreen();
        answers.release(9);
        QCOMPARE(office.received().size(), 9);
        QVERIFY(office.shown().startsWith(u"0 buttons"));
        QVERIFY(office.shown().endsWith(u": Steps Performed:1 Schedules Sent:1"));
        office.openScreen();
        QVERIFY(office.shown().startsWith(u"0 buttons, still") && office.shown().endsWith(u": ")); // no run
    }

    void aRunCanBeStopped()
    {
        QSemaphore answers;
        Office office([&answers](Office &) { answers.tryAcquire(1, 20'000); });
        office.account.preferences.store({{messagingKey::delay, 60'000}});
        office.send(tasksOfAnn(20));
        QTRY_COMPARE(office.server.requests().size(), 1);
        office.press("stopButton"); // in the pause after the first message
        answers.release(30);
        QCOMPARE(office.received().size(), 1);
        QVERIFY(office.shown().endsWith(u" – messages that were not sent: 20"_s));
        QVERIFY(!office.child<QPushButton>("stopButton").isEnabled());
        QVERIFY(office.child<QPushButton>("sendMsgClients").isEnabled());
    }

    void endOfTheProgramEndsTheRun()
    {
        Office office;
        office.account.preferences.store(
            {{messagingKey::messageFooter, u"Bye."_s}, {messagingKey::delay, 3'600'000}});
        office.select("clientsTable", {1, 2, 3});
        CapturedOutput output;
        office.press("sendMsgClients");
        QTRY_COMPARE_WITH_TIMEOUT(office.server.requests().size(), 1, 20'000);
        const QString inTheMiddle = u"0 buttons, moving at 2 of 12: Sending..."_s;
        QVERIFY(office.waitFor(inTheMiddle));
        office.openScreen();
        QCOMPARE(office.shown(), inTheMiddle);
        office.runs.stop();
        QCOMPARE(output.takeLines().filter(u"Messages not sent"_s), QStringList{u"Messages not sent: 6"_s});
        QCOMPARE(office.received().size(), 1);
    }

    void oneChangeIsOnItsWayAtMost()
    {
        struct Receiver : QObject
        {
            bool event(QEvent *event) override { return ++events, QObject::event(event); }
            int events = 0;
        } receiver;
        const Account account;
        const RunSnapshot nobody{
            RecipientKind::Client, {}, {}, {RecipientKind::Client, {}, {}, account.preferences}};
        const RunCounters counters;
        ProgressMonitor monitor(nobody, counters, receiver, [](const RunProgress &) {});
        monitor.run(); // tells of a step and of the end
        QCoreApplication::sendPostedEvents(&receiver);
        QCOMPARE(receiver.events, 1);
    }
};

static const TestClass<SendingTest> registered;
#include "SendingTest.moc"
