#include "TaskFormSteps.h"

#include "Desktop.h"
#include "ExpectedList.h"
#include "Hand.h"
#include "MainWindowHandle.h"
#include "Stage.h"

#include <QClipboard>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;

TaskFormSteps::TaskFormSteps(Stage &tourStage, const MainWindowHandle &mainWindow, ExpectedList &expectedList,
                             Desktop &userDesktop, QDate day)
    : stage(tourStage)
    , main(mainWindow)
    , expected(expectedList)
    , desktop(userDesktop)
    , today(day)
    , name(u"Plant the plum trees"_s)
{
}

void TaskFormSteps::pick(QDialog &form, const QString &box, const QString &entry)
{
    auto &chooser = hand::child<QComboBox>(form, box);
    const int position = chooser.findText(entry);
    require(position >= 0, entry + u": not in the list"_s);
    hand::press(chooser, Qt::Key_Home);
    while (chooser.currentIndex() < position)
        QTest::keyClick(&chooser, Qt::Key_Down);
}

void TaskFormSteps::addTask(const QString &client, const QString &teamMember)
{
    stage.step(u"A task is added for a client and a team member"_s);
    main.showView(TaskView::All);
    hand::shortcut(main.window, Qt::Key_N, Qt::ControlModifier);
    QDialog &form = hand::openWindow(u"ViewControllerAdd"_s);
    auto &nameField = hand::child<QLineEdit>(form, u"txtTaskName"_s);
    hand::fill(nameField, name);
    hand::fill(hand::child<QPlainTextEdit>(form, u"txtTaskDescription"_s), u"Two on the south wall."_s);
    pick(form, u"client"_s, client);
    pick(form, u"teamMember"_s, teamMember);
    pick(form, u"inTaskPriority"_s, u"Medium"_s);
    desktop.picturesOf(form, stage, u"new-task"_s);
    const QTime start = hand::child<QDateTimeEdit>(form, u"startTime"_s).time();
    const QTime end = hand::child<QDateTimeEdit>(form, u"endTime"_s).time();
    hand::press(nameField, Qt::Key_Return);
    stage.check(!form.isVisible(), u"the form is closed"_s);

    const QString day = today.toString(u"M/d/yy"_s);
    const auto number = [](int value) {
        return QString::number(value);
    };
    const QString key = main.text(main.rowOf(name), u"Key"_s);
    expected.add({{day,
                   name,
                   u"Two on the south wall."_s,
                   u"1.0"_s,
                   u"1.0"_s,
                   u"1.0"_s,
                   u"1.0"_s,
                   day,
                   u"0"_s,
                   u"2"_s,
                   u"Open"_s,
                   u"Medium"_s,
                   key,
                   u"false"_s,
                   number(start.hour()),
                   number(start.minute()),
                   number(end.hour()),
                   number(end.minute()),
                   client,
                   teamMember}});
    main.checkView(stage, expected, TaskView::All);
    main.checkTaskButtons(stage, false);
}

void TaskFormSteps::editTask()
{
    stage.step(u"A double click opens the task, which is changed; a due date before the start is refused"_s);
    hand::doubleClickCell(main.table, main.table.model()->index(main.rowOf(name), main.column(u"Task"_s)));
    QDialog &form = hand::openWindow(u"ViewControllerEdit"_s);
    stage.check(form.isModal(), u"the form is modal"_s);
    stage.same(hand::child<QLineEdit>(form, u"key"_s).text(), main.text(main.rowOf(name), u"Key"_s),
               u"the key"_s);
    desktop.picturesOf(form, stage, u"edit-task"_s);
    refuseDate(form);
    const QString newName = u"Plant and stake the plum trees"_s;
    hand::fill(hand::child<QLineEdit>(form, u"txtTaskName"_s), newName);
    hand::fill(*hand::child<QComboBox>(form, u"inTaskStatus"_s).lineEdit(), u"Waiting"_s);
    hand::click(hand::child<QPushButton>(form, u"storeButton"_s));
    stage.check(!form.isVisible(), u"the form is closed"_s);
    expected.change(name, ListRow::Status, u"-1"_s);
    expected.change(name, ListRow::StatusName, u"Waiting"_s);
    expected.change(name, ListRow::Name, newName);
    name = newName;
    main.checkView(stage, expected, TaskView::All);
    stage.same(main.text(main.rowOf(name), u"Status"_s), u"Waiting", u"the status"_s);
}

void TaskFormSteps::refuseDate(QDialog &form)
{
    auto &due = hand::child<QDateTimeEdit>(form, u"dtTaskDueDate"_s);
    const QDateTime before = due.dateTime();
    hand::press(due, Qt::Key_Home);
    due.setCurrentSection(QDateTimeEdit::YearSection);
    hand::throughDialog([&] { QTest::keyClick(&due, Qt::Key_Down); },
                        [&](QDialog &dialog) {
                            auto *alert = qobject_cast<QMessageBox *>(&dialog);
                            stage.check(alert != nullptr, u"the dialog is an alert"_s);
                            stage.same(alert->informativeText(), u"Select a Due Date after Start Date",
                                       u"the alert"_s);
                            stage.picture(dialog, u"alert-due-date"_s);
                            hand::click(*alert->button(QMessageBox::Ok));
                        });
    stage.same(due.dateTime(), before, u"the due date"_s);
}

void TaskFormSteps::shareTask(const QString &path)
{
    stage.step(u"The task is shared: copied, and saved to a file"_s);
    main.selectTask(name);
    hand::click(main.shareButton);
    stage.picture(hand::openPopup(), u"share-menu"_s);
    hand::choose(hand::openPopup(), u"Copy"_s);
    stage.check(!main.shareButton.isDown(), u"the button is up again"_s);
    const QString copied = QGuiApplication::clipboard()->text();
    stage.check(copied.contains(u"\nTask: "_s + name + u'\n'), u"the copied text names the task"_s);

    hand::click(main.shareButton);
    QMenu &menu = hand::openPopup();
    hand::throughDialog([&] { hand::choose(menu, u"Save to File…"_s); },
                        [&](QDialog &dialog) {
                            auto *chooser = qobject_cast<QFileDialog *>(&dialog);
                            stage.check(chooser != nullptr, u"a file is asked for"_s);
                            hand::fill(hand::child<QLineEdit>(*chooser, u"fileNameEdit"_s), path);
                            hand::click(
                                *hand::child<QDialogButtonBox>(*chooser).button(QDialogButtonBox::Save));
                        });
    QFile file(path);
    stage.check(file.open(QIODevice::ReadOnly), path + u": is there"_s);
    const auto withoutMessageKey = [](const QString &text) {
        return text.split(u'\n').filter(QRegularExpression(u"^(?!Message Key)"_s));
    };
    stage.same(withoutMessageKey(QString::fromUtf8(file.readAll())), withoutMessageKey(copied),
               u"the saved text"_s);
}
