#include "Steps.h"
#include "Tour.h"
#include "platform/Folders.h"
#include "support/Dialogs.h"
#include "support/ScratchHome.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

const QString newTask = u"Plant the plum trees"_s;
const QString description = u"Two on the south wall."_s;
const QString editedTask = u"Plant and stake the plum trees"_s;

/// Removes the only contact of the screen, and takes that back.
void removeAndBringBack(Tour &tour, QDialog &screen, const Person &person)
{
    auto &table = hand::child<QTableView>(screen);
    hand::clickCell(table, table.model()->index(0, 1));
    hand::press(table, Qt::Key_Delete);
    tour.stage.same(toldIn(screen), u"Removed %1, %2"_s.arg(person.name, person.phoneNo), u"the banner"_s);
    tour.takePicturesOf(screen, screen.objectName() + u"-removed"_s);
    hand::shortcut(screen, Qt::Key_Z, Qt::ControlModifier);
    hand::shortcut(screen, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    tour.stage.same(table.model()->rowCount(), 0, u"contacts, removed once more"_s);
    choose(screen, u"Undo"_s);
    tour.stage.same(toldIn(screen), QString(), u"the banner"_s);
}

/// \param action  of the tool bar
void addContact(Tour &tour, const QString &action, const QString &menuEntry, const QString &screen,
                const Person &person)
{
    hand::clickTool(tour.window, action);
    QDialog &window = hand::openWindow(screen);
    hand::click(hand::child<QPushButton>(window, u"addButton"_s));
    hand::typeInto(window, person.name);
    QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    hand::typeInto(window, person.phoneNo); // and closes while it is being typed
    tour.takePicturesOf(window, screen);
    hand::click(hand::child<QPushButton>(window, u"okButton"_s));
    tour.stage.check(!window.isVisible(), u"the screen is closed"_s);

    hand::choose(tour.window, u"Contacts"_s, menuEntry);
    QDialog &again = hand::openWindow(screen);
    removeAndBringBack(tour, again, person);
    const QAbstractItemModel &contacts = *hand::child<QTableView>(again).model();
    tour.stage.same(contacts.rowCount(), 1, u"contacts"_s);
    tour.stage.same(contacts.index(0, 0).data().toString(), person.name, u"the name"_s);
    tour.stage.same(contacts.index(0, 1).data().toString(), person.phoneNo, u"the phone number"_s);
    hand::shortcut(again, Qt::Key_Escape, {});
    tour.stage.check(!again.isVisible(), u"the screen is closed again"_s);
}

/// The new task's row but for its key; what the user has not filled in is taken from the form.
ListRow newRow(const QDialog &form, const Person &client, const Person &teamMember)
{
    const auto shown = [&form](const QString &picker, const QString &format) {
        const QString text = hand::child<QLineEdit>(form, picker).text();
        const QTime time = QTime::fromString(text, u"h:mm AP"_s);
        return time.isValid() ? time.toString(format)
                              : QDate::fromString(text, u"M/d/yyyy"_s).toString(format);
    };
    return {QStringList{shown(u"dtTaskDate"_s, u"M/d/yy"_s),
                        newTask,
                        description,
                        u"1.0"_s,
                        u"1.0"_s,
                        u"1.0"_s,
                        u"1.0"_s,
                        shown(u"dtTaskDueDate"_s, u"M/d/yy"_s),
                        u"0"_s,
                        u"2"_s,
                        u"Open"_s,
                        u"Medium"_s,
                        u""_s,
                        u"false"_s,
                        shown(u"startTime"_s, u"H"_s),
                        shown(u"startTime"_s, u"m"_s),
                        shown(u"endTime"_s, u"H"_s),
                        shown(u"endTime"_s, u"m"_s),
                        client.name,
                        teamMember.name}};
}

} // namespace

void addClient(Tour &tour, const Person &client)
{
    tour.stage.step(
        u"A client is added, is still there when the screen is opened again, and comes back when removed"_s);
    addContact(tour, u"actionClients"_s, u"Clients…"_s, u"ViewControllerClientMgmt"_s, client);
}

void addTeamMember(Tour &tour, const Person &teamMember)
{
    tour.stage.step(u"So is a team member"_s);
    addContact(tour, u"actionTeamMembers"_s, u"Team Members…"_s, u"ViewControllerTeamMgmt"_s, teamMember);
}

void addTask(Tour &tour, const Person &client, const Person &teamMember)
{
    tour.stage.step(u"A task is begun, taken up later, and added for a client and a team member"_s);
    tour.showView(TaskView::All);
    hand::shortcut(tour.window, Qt::Key_N, Qt::ControlModifier);
    hand::typeInto(hand::openWindow(u"ViewControllerAdd"_s), newTask);
    hand::shortcut(hand::openWindow(u"ViewControllerAdd"_s), Qt::Key_Escape, {});
    hand::shortcut(tour.window, Qt::Key_N, Qt::ControlModifier);
    QDialog &form = hand::openWindow(u"ViewControllerAdd"_s);
    auto &nameField = hand::child<QLineEdit>(form, u"txtTaskName"_s);
    tour.stage.same(nameField.text(), QString(), u"the name in a new form"_s);
    tour.takePicturesOf(form, u"begun-task"_s);
    choose(form, u"Take It Up"_s);
    tour.stage.same(nameField.text(), newTask, u"the name that was begun"_s);
    hand::fill(hand::child<QPlainTextEdit>(form, u"txtTaskDescription"_s), description);
    hand::pick(hand::child<QComboBox>(form, u"client"_s), client.name);
    hand::pick(hand::child<QComboBox>(form, u"teamMember"_s), teamMember.name);
    hand::pick(hand::child<QComboBox>(form, u"inTaskPriority"_s), u"Medium"_s);
    tour.takePicturesOf(form, u"new-task"_s);
    ListRow row = newRow(form, client, teamMember);
    hand::press(nameField, Qt::Key_Return);
    tour.stage.check(!form.isVisible(), u"the form is closed"_s);
    row.fields[ListRow::Key] = tour.text(newTask, u"Key"_s);
    tour.expected.rows.append(row);
    tour.checkView(TaskView::All);
    tour.checkTaskButtons(false);
}

static void refuseDate(Tour &tour, QDialog &form)
{
    auto &due = hand::child<QLineEdit>(form, u"dtTaskDueDate"_s);
    const QString before = due.text();
    hand::fill(due, u"2/30/2027"_s);
    QTest::keyClick(&due, Qt::Key_Tab);
    hand::settle();
    tour.stage.check(due.hasFocus() && hand::child<QLabel>(form, u"note"_s).isVisible(),
                     u"a text that is no date stays and is told of"_s);
    tour.takePicturesOf(form, u"no-date"_s);
    hand::fill(due, u"1/1/20"_s);
    tour.throughAlert([&due] { QTest::keyClick(&due, Qt::Key_Return); },
                      u"Select a Due Date after Start Date"_s, u"OK"_s, u"alert-due-date"_s);
    tour.stage.same(due.text(), before, u"the due date"_s);
}

void editTask(Tour &tour)
{
    tour.stage.step(
        u"A double click opens the task, which is changed; a due date before the start is refused"_s);
    hand::doubleClickCell(tour.table, tour.cell(tour.rowOf(newTask), u"Task"_s));
    QDialog &form = hand::openWindow(u"ViewControllerEdit"_s);
    tour.stage.check(form.isModal(), u"the form is modal"_s);
    tour.takePicturesOf(form, u"edit-task"_s);
    refuseDate(tour, form);
    hand::fill(hand::child<QLineEdit>(form, u"txtTaskName"_s), editedTask);
    hand::fill(*hand::child<QComboBox>(form, u"inTaskStatus"_s).lineEdit(), u"Waiting"_s);
    hand::click(hand::child<QPushButton>(form, u"storeButton"_s));
    tour.stage.check(!form.isVisible(), u"the form is closed"_s);
    ListRow &row = tour.expected.row(newTask);
    row.fields[ListRow::Status] = u"-1"_s;
    row.fields[ListRow::StatusName] = u"Waiting"_s;
    row.fields[ListRow::Name] = editedTask;
    tour.checkView(TaskView::All);
    tour.stage.same(tour.text(editedTask, u"Status"_s), u"Waiting", u"the status"_s);

    tour.selectTask(editedTask);
    hand::click(tour.button(u"edit"_s));
    hand::shortcut(hand::openWindow(u"ViewControllerEdit"_s), Qt::Key_Escape, {});
    tour.checkView(TaskView::All);
}

void shareTask(Tour &tour)
{
    tour.stage.step(u"The task is shared: copied, and saved to a file"_s);
    tour.selectTask(editedTask);
    QTest::mousePress(&tour.button(u"share"_s), Qt::LeftButton); // the menu takes the release
    tour.stage.check(tour.button(u"share"_s).isDown(), u"the button is down"_s);
    tour.stage.picture(hand::openPopup(), u"share-menu"_s);
    hand::choose(hand::openPopup(), u"Copy"_s);
    tour.stage.check(!tour.button(u"share"_s).isDown(), u"the button is up again"_s);
    const QString copied = QGuiApplication::clipboard()->text();
    tour.stage.check(copied.contains(u"\nTask: "_s + editedTask + u'\n'),
                     u"the copied text names the task"_s);

    hand::choose(tour.window, u"File"_s, u"Share"_s);
    QMenu &menu = hand::openPopup();
    QTimer::singleShot(0, &tour.window, [] {
        if (const QWidget *chooser = QApplication::activeModalWidget()) // it suggests a name
            QTest::mouseClick(chooser->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Save),
                              Qt::LeftButton);
    });
    hand::choose(menu, u"Save to File…"_s);
    const QString saved = QString::fromUtf8(contentOf(folders::documents() + u'/' + editedTask + u".txt"_s));
    tour.stage.check(saved.contains(u"\nTask: "_s + editedTask + u'\n'), u"the saved text names the task"_s);
}
