#include "Gateway.h"
#include "Steps.h"
#include "Tour.h"
#include "support/Dialogs.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSet>
#include <QTest>
#include <QUrlQuery>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString sendingPhoneNo = u"+49 151 5550100"_s;
const QString correctedPhoneNo = u"+49 1515550142"_s; // of the team member
const QString title = u"Your garden, your week"_s;
const QString footer = u"Questions? Just call."_s;

/// The screen, with the days filled in between which all tasks start.
QDialog &openSending(const Tour &tour)
{
    hand::choose(tour.window, u"Messages"_s, u"Schedule Messages…"_s);
    QDialog &screen = hand::openWindow(u"ViewControllerSending"_s);
    QList<QDate> days;
    for (const ListRow &row : tour.expected.rows)
        days.append(QDate::fromString(row.field(ListRow::Date), u"M/d/yy"_s).addYears(100));
    const auto [first, last] = std::ranges::minmax(days);
    for (const auto &[name, day] : {std::pair(u"startSendDate"_s, first), {u"endSendDate"_s, last}})
        hand::fill(hand::child<QLineEdit>(screen, name), day.toString(Qt::ISODate));
    return screen;
}

QStringList tasksOf(const Person &person, ListRow::Field field, const ExpectedList &expected)
{
    QStringList names;
    for (const ListRow &row : expected.rows)
        if (row.field(field) == person.name)
            names.append(row.field(ListRow::Name));
    return names;
}

/// Checks that these tasks have been sent, in any order; they go out on several connections.
/// \param earlier  as many messages have been checked before
void checkReceived(Stage &stage, const Gateway &gateway, qsizetype earlier, const Person &person,
                   const QStringList &tasks)
{
    const qsizetype all = earlier + 1 + tasks.size() + 1;
    hand::waitFor([&] { return gateway.requests().size() >= all; }, u"not everything is sent"_s);
    stage.same(gateway.requests().size(), all, u"messages"_s);
    QStringList texts;
    for (const HttpsServer::Request &request : gateway.requests().sliced(earlier)) {
        const QUrlQuery form(QString::fromLatin1(request.body));
        stage.same(form.queryItemValue(u"From"_s, QUrl::FullyDecoded), sendingPhoneNo, u"the sender"_s);
        stage.same(form.queryItemValue(u"To"_s, QUrl::FullyDecoded), person.phoneNo, u"the recipient"_s);
        texts.append(form.queryItemValue(u"Body"_s, QUrl::FullyDecoded));
    }
    for (const QString &words : QStringList{title, u"Schedule: "_s + person.name, footer} + tasks)
        stage.same(texts.filter(words).size(), 1, u"messages that say "_s + words);
}

/// Presses the button that offers the team member's number as it should be.
void correctFirst(QDialog &screen, QTableView &table)
{
    hand::clickCell(table, table.model()->index(0, 1));
    hand::settle();
    choose(screen, u"Correct to "_s + correctedPhoneNo);
}

/// Adds a contact; the texts are typed into the cells.
void add(const QDialog &screen, const QString &name, const QString &phoneNo)
{
    hand::click(hand::child<QPushButton>(screen, u"addButton"_s));
    hand::typeInto(screen, name);
    QTest::keyClick(screen.focusWidget(), Qt::Key_Tab);
    hand::typeInto(screen, phoneNo);
    QTest::keyClick(screen.focusWidget(), Qt::Key_Return);
}

/// Waits until the screen's line about the run ends with the words.
void waitUntilItSays(const QDialog &screen, const QString &words)
{
    const auto &info = hand::child<QLabel>(screen, u"sendingInfo"_s);
    hand::waitFor([&] { return info.text().endsWith(words); }, u"it does not say "_s + words);
}

} // namespace

void setUpAccount(Tour &tour)
{
    tour.stage.step(u"The gateway's account is set up; the secret is shown as dots, and on demand"_s);
    hand::choose(tour.window, u"Messages"_s, u"Message Settings…"_s);
    QDialog &screen = hand::openWindow(u"ViewControllerSettings"_s);
    auto &secret = hand::child<QLineEdit>(screen, u"passPhrase"_s);
    hand::fill(hand::child<QLineEdit>(screen, u"secureID"_s), u"AC5f1e0a77"_s);
    hand::fill(secret, u"green-fingers"_s);
    hand::fill(hand::child<QLineEdit>(screen, u"sendingPhoneNo"_s), sendingPhoneNo);
    hand::fill(hand::child<QLineEdit>(screen, u"messageTitle"_s), title);
    hand::fill(hand::child<QLineEdit>(screen, u"messageFooter"_s), footer);
    hand::click(hand::child<QCheckBox>(screen, u"sendSMS"_s));
    tour.takePicturesOf(screen, u"message-settings"_s);
    tour.stage.check(!secret.displayText().contains(u"green"), u"the secret is hidden"_s);
    hand::click(hand::child<QToolButton>(screen, u"revealButton"_s));
    tour.stage.same(secret.displayText(), u"green-fingers"_s, u"the secret on demand"_s);
    hand::click(hand::child<QPushButton>(screen, u"saveButton"_s));
    tour.stage.check(!screen.isVisible(), u"the settings are closed"_s);
}

void lookAtNumbers(Tour &tour, const Person &teamMember)
{
    tour.stage.step(u"Contacts that need a look are marked, and what is corrected can be taken back"_s);
    hand::choose(tour.window, u"Contacts"_s, u"Team Members…"_s);
    QDialog &screen = hand::openWindow(u"ViewControllerTeamMgmt"_s);
    for (const auto &[name, phoneNo] : {std::pair(u"Bruno Maier"_s, u"+49 30 123456"_s),
                                        {u"bruno maier"_s, u"+49 176 1234567"_s},
                                        {u"Carla"_s, u""_s},
                                        {u"Dan"_s, u"12"_s},
                                        {u"Emma"_s, u"+49 176 7654321"_s}})
        add(screen, name, phoneNo);
    auto &table = hand::child<QTableView>(screen);
    hand::clickCell(table, table.model()->index(0, 1));
    tour.takePicturesOf(screen, u"marked-contacts"_s);
    correctFirst(screen, table);
    const auto phoneNo = [&table] {
        return table.model()->index(0, 1).data().toString();
    };
    tour.stage.same(phoneNo(), correctedPhoneNo, u"the corrected number"_s);
    while (table.model()->rowCount() > 1)
        hand::shortcut(screen, Qt::Key_Z, Qt::ControlModifier);
    tour.stage.same(phoneNo(), teamMember.phoneNo, u"the number as it was"_s);
    hand::click(hand::child<QPushButton>(screen, u"okButton"_s));
}

void textClient(Tour &tour, Gateway &gateway, const Person &client)
{
    tour.stage.step(u"A client is texted their schedule"_s);
    QDialog &screen = openSending(tour);
    hand::click(hand::child<QCheckBox>(screen, u"allClients"_s));
    hand::click(hand::child<QPushButton>(screen, u"sendMsgClients"_s));
    const QStringList tasks = tasksOf(client, ListRow::Client, tour.expected);
    checkReceived(tour.stage, gateway, 0, client, tasks);
    waitUntilItSays(
        screen, u"Steps Performed:%1 Schedules Sent:%2"_s.arg(tour.expected.rows.size()).arg(tasks.size()));
    tour.takePicturesOf(screen, u"sent"_s);
    hand::click(hand::child<QPushButton>(screen, u"closeButton"_s));
    tour.stage.check(!screen.isVisible(), u"the screen is closed"_s);
}

/// The clients for whom there are tasks in the list, each with a number to which the gateway does something
/// else.
static QList<Person> otherClients()
{
    return {{u"Hotel Bellevue"_s, u"+49 151 5550170"_s}, {u"Praxis Grünwald"_s, u"+49 151 5550171"_s},
            {u"Dr. Lindqvist"_s, u"+49 151 5550172"_s},  {u"St. Anne's School"_s, u"+49 151 5550173"_s},
            {u"José Peña"_s, u"+49 151 5550174"_s},      {u"Mr. & Mrs. Duarte"_s, Gateway::silentNumber}};
}

void lookAtReport(Tour &tour)
{
    tour.stage.step(u"What becomes of each message is reported, with the reason where one is refused"_s);
    hand::choose(tour.window, u"Contacts"_s, u"Clients…"_s);
    QDialog &clients = hand::openWindow(u"ViewControllerClientMgmt"_s);
    for (const Person &client : otherClients())
        add(clients, client.name, client.phoneNo);
    hand::click(hand::child<QPushButton>(clients, u"okButton"_s));

    QDialog &screen = openSending(tour);
    hand::click(hand::child<QCheckBox>(screen, u"allClients"_s));
    hand::click(hand::child<QPushButton>(screen, u"sendMsgClients"_s));
    const auto &sum = hand::child<QLabel>(screen, u"reportSum"_s);
    hand::waitFor(
        [&] {
            return sum.text().contains(u"refused") && !sum.text().contains(u"waiting") &&
                   !sum.text().contains(u"not answered yet");
        },
        u"the report is not complete"_s);
    hand::click(hand::child<QPushButton>(screen, u"askForDelivery"_s));
    hand::waitFor([&] { return sum.text().contains(u"delivered"); }, u"nothing is delivered"_s);
    tour.takePicturesOf(screen, u"report"_s);
    hand::click(hand::child<QCheckBox>(screen, u"problemsOnly"_s));
    const QAbstractItemModel &report = *hand::child<QTableView>(screen, u"reportTable"_s).model();
    QSet<QString> states;
    for (int row = 0; row < report.rowCount(); ++row)
        states.insert(report.index(row, 3).data().toString().section(u": "_s, 0, 1));
    tour.stage.same(states.size(), Gateway::refusals.size() + 1, u"kinds of problems"_s);
    hand::click(hand::child<QCheckBox>(screen, u"allClients"_s)); // nobody
    hand::click(hand::child<QCheckBox>(screen, u"allClients"_s));
    tour.takePicturesOf(screen, u"report-problems"_s);
    hand::click(hand::child<QPushButton>(screen, u"closeButton"_s));

    hand::choose(tour.window, u"Contacts"_s, u"Clients…"_s);
    QDialog &clientsAgain = hand::openWindow(u"ViewControllerClientMgmt"_s);
    auto &table = hand::child<QTableView>(clientsAgain);
    while (table.model()->rowCount() > 1) {
        hand::clickCell(table, table.model()->index(1, 0));
        hand::click(hand::child<QPushButton>(clientsAgain, u"removeButton"_s));
    }
    hand::click(hand::child<QPushButton>(clientsAgain, u"okButton"_s));
}

void textTeamMember(Tour &tour, Gateway &gateway, const Person &teamMember)
{
    tour.stage.step(
        u"So is a team member, whose number is corrected first, although the screen is closed in the middle"_s);
    const qsizetype earlier = gateway.requests().size();
    QDialog &screen = openSending(tour);
    hand::click(hand::child<QCheckBox>(screen, u"allTeamMembers"_s));
    auto &table = hand::child<QTableView>(screen, u"teamMembers"_s);
    hand::clickCell(table, table.model()->index(0, 1));
    tour.takePicturesOf(screen, u"number-to-correct"_s);
    correctFirst(screen, table);
    std::unique_lock held(gateway.answers);
    hand::click(hand::child<QPushButton>(screen, u"sendMsgTeamMembers"_s));
    hand::waitFor([&] { return gateway.requests().size() > earlier; }, u"nothing is sent"_s);
    waitUntilItSays(screen, u"messages are still being sent"_s);
    tour.stage.picture(screen, u"sending"_s);
    hand::shortcut(screen, Qt::Key_Escape, {});
    tour.stage.check(!screen.isVisible(), u"the screen is closed"_s);

    hand::clickTool(tour.window, u"actionMessages"_s);
    QDialog &again = hand::openWindow(u"ViewControllerSending"_s);
    waitUntilItSays(again, u"messages are still being sent"_s);
    hand::shortcut(again, Qt::Key_Escape, {});
    held.unlock();
    checkReceived(tour.stage, gateway, earlier, {teamMember.name, correctedPhoneNo},
                  tasksOf(teamMember, ListRow::TeamMember, tour.expected));
}

void lookAtSentMessages(Tour &tour, const Gateway &gateway, const Person &client)
{
    tour.stage.step(u"What was sent is kept, can be found, and is forgotten on demand"_s);
    hand::choose(tour.window, u"Messages"_s, u"Sent Messages…"_s);
    QDialog &screen = hand::openWindow(u"ViewControllerJournal"_s);
    auto &table = hand::child<QTableView>(screen, u"table"_s);
    const auto textsIn = [&table](int column) {
        QStringList texts;
        for (int row = 0; row < table.model()->rowCount(); ++row)
            texts.append(table.model()->index(row, column).data().toString());
        return texts;
    };
    enum Column { To = 1, Message = 3, State };
    const qsizetype sent = std::ranges::count_if(gateway.requests(), [](const HttpsServer::Request &request) {
        return request.head.startsWith("POST ");
    });
    hand::waitFor(
        [&] { return textsIn(To).size() == sent && textsIn(State).filter(u"Being sent"_s).isEmpty(); },
        u"not every answer is kept"_s);
    const int refused = int(textsIn(State).indexOf(textsIn(State).filter(u"Refused"_s).value(0)));
    hand::clickCell(table, table.model()->index(refused, To));
    tour.takePicturesOf(screen, u"sent-messages"_s);
    const qsizetype headings = textsIn(Message).filter(title).size();
    hand::fill(hand::child<QLineEdit>(screen, u"searchField"_s), title.toUpper());
    tour.stage.same(table.model()->rowCount(), headings, u"messages with that text"_s);
    hand::press(hand::child<QLineEdit>(screen, u"searchField"_s), Qt::Key_Escape);
    hand::pick(hand::child<QComboBox>(screen, u"personBox"_s), client.name);
    const qsizetype ofClient = table.model()->rowCount();
    tour.stage.same(textsIn(To).count(client.name), ofClient, u"messages to the client alone"_s);
    tour.throughAlert([&screen] { hand::click(hand::child<QPushButton>(screen, u"forgetPersonButton"_s)); },
                      u"Forget %1 messages to %2?"_s.arg(ofClient).arg(client.name), u"Yes"_s);
    hand::waitFor([&] { return table.model()->rowCount() == sent - ofClient; }, u"they are not forgotten"_s);
    tour.stage.same(textsIn(To).count(client.name), 0, u"messages to the client"_s);
    hand::press(table, Qt::Key_Escape);
    tour.stage.check(!screen.isVisible(), u"the screen is closed"_s);
}
