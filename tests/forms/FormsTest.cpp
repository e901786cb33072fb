#include "contacts/Contact.h"
#include "forms/ViewControllerAdd.h"
#include "forms/ViewControllerEdit.h"
#include "model/TaskManager.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "support/CapturedOutput.h"
#include "support/Dialogs.h"
#include "support/Tasks.h"
#include "support/TestProgram.h"
#include "widgets/ColorWell.h"
#include "widgets/DatePicker.h"
#include "widgets/TextView.h"

#include <QColorDialog>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTimeEdit>

using namespace Qt::StringLiterals;

namespace {

Instant moment(const QString &isoTime)
{
    return Calendar::instantOf(QDateTime::fromString(isoTime, Qt::ISODateWithMs));
}

const Color black{0.0, 0.0, 0.0, 1.0};
const Color white{1.0, 1.0, 1.0, 1.0};

} // namespace

class FormsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // A zone in which the clock changes on 8 March and 1 November 2026.
        qputenv("TZ", "America/New_York");
        tzset();
        PersistentContainer store(contactModel(), home.path());
        store.loadPersistentStores();
        for (const QString &name : {u"Smith"_s, QString(), u"Jones"_s, u"Smith"_s})
            if (Clients client(store.viewContext()); !name.isNull())
                client.setValue(Contact::Name, name);
        QVERIFY(store.viewContext().save());
    }

    void init()
    {
        manager = std::make_unique<TaskManager>(preferences);
        services = std::make_unique<TaskFormServices>(
            TaskFormServices{*manager, notices, systemNotices, colorPanel, home.path()});
    }

    void cleanup()
    {
        form.reset();
        Preferences::standard().setGlobalText(u"AppleInterfaceStyle"_s, std::nullopt);
    }

    void addsWhatTheControlsShow()
    {
        openAdd();
        auto &client = child<QComboBox>("client");
        QCOMPARE(client.count(), 4);
        QCOMPARE(client.itemText(1), QString());
        QCOMPARE(client.currentText(), QString());
        type("client", u"smith"_s, Qt::Key_Return); // not the one that is listed
        type("inTaskStatus", u"Waiting"_s);
        child<QTimeEdit>("endTime").setTime(QTime(18, 45));
        QTest::keyClicks(&child<QLineEdit>("txtTaskName"), u"Plum trees"_s);
        bool wasOpen = false;
        qsizetype tasks = 0;
        QObject observer;
        notices.observe(notice::reload, &observer, [&] {
            wasOpen = form->isVisible();
            tasks = manager->tasks().size();
        });
        QTest::keyClick(&child<QLineEdit>("txtTaskName"), Qt::Key_Return);
        QVERIFY(wasOpen && !form->isVisible());
        QCOMPARE(tasks, 1);
        const task added = *manager->tasks().first();
        QCOMPARE(added.name + added.statusName + added.client + added.teamMember,
                 u"Plum treesWaitingsmith"_s);
        QCOMPARE(added.status, -1);
        QVERIFY(Calendar::now() - added.date < std::chrono::minutes(1));
        form.reset();
        openAdd();
        QCOMPARE(child<QTimeEdit>("endTime").time(), QTime(18, 45));
    }

    void tabOrderFollowsTheForm()
    {
        openAdd();
        QStringList order;
        for (QWidget *widget = form->focusWidget(); order.size() < 13; widget = widget->nextInFocusChain())
            if ((widget->focusPolicy() & Qt::TabFocus) && !widget->focusProxy() && widget->isVisible() &&
                !order.contains(widget->objectName()) && !widget->objectName().startsWith(u"qt_"))
                order.append(widget->objectName());
        QCOMPARE(order, QStringList({u"txtTaskName"_s, u"dtTaskDate"_s, u"startTime"_s, u"dtTaskDueDate"_s,
                                     u"endTime"_s, u"inTaskStatus"_s, u"inTaskPriority"_s, u"client"_s,
                                     u"teamMember"_s, u"color"_s, u"txtTaskDescription"_s, u"resetButton"_s,
                                     u"addButton"_s}));
    }

    void storingAnUntouchedTaskKeepsIt()
    {
        task original{.key = u"KEY"_s,
                      .date = moment(u"2026-11-01T06:30:15.123Z"_s), // 1:30 for the second time
                      .name = QString(40'000, u'n'),
                      .desc = u"two\r\nlines with\u00A0blanks"_s,
                      .client = u"Nobody listed"_s,
                      .teamMember = u"Anna"_s,
                      .color = {0.1, 0.2, 1.0 / 3.0, 0.25},
                      .due = moment(u"2026-11-02T05:00:00.001Z"_s),
                      .status = -1,
                      .priority = 7,
                      .statusName = u"Waiting"_s,
                      .priorityName = u"Sky-high"_s,
                      .hidden = true,
                      .startHour = 23,
                      .startMin = 59,
                      .endHour = 0,
                      .endMin = 1};
        openEdit(original);
        QCOMPARE(child<QLineEdit>("key").text(), u"KEY"_s);
        QTest::mouseClick(&child<QPushButton>("storeButton"), Qt::LeftButton);
        QVERIFY(!form->isVisible());
        original.priority = -1; // by its name
        QVERIFY(haveEqualFields(*manager->tasks().first(), original));
    }

    void datesAreChecked()
    {
        struct Case
        {
            bool edits;
            QString start, due;
            bool changesStart;
            QDate day;
            QString message;
        };
        const QString early = u"Select a Start Date prior to Due Date"_s;
        const QString late = u"Select a Due Date after Start Date"_s;
        const QString noon = u"2026-03-03T12:00:00"_s;
        const QString evening = u"2026-03-05T20:00:00"_s;
        for (const auto &[edits, start, due, changesStart, day, message] : std::initializer_list<Case>{
                 {false, evening, noon, true, QDate(2026, 3, 3), {}}, // the same day
                 {false, noon, noon, true, QDate(2026, 3, 4), early},
                 {false, noon, evening, false, QDate(2026, 3, 2), late},
                 // The day of the clock change.
                 {false, u"2026-03-07T23:30:00"_s, u"2026-03-08T00:30:00"_s, true, QDate(2026, 3, 8), {}},
                 {true, noon, evening, true, QDate(2026, 3, 4), {}},
                 {true, noon, noon, false, QDate(2026, 3, 3), {}},                          // the same moment
                 {true, u"2026-03-01T20:00:01"_s, evening, true, QDate(2026, 3, 5), early}, // later that day
                 {true, u"2026-03-03T20:00:00"_s, u"2026-03-05T12:00:00"_s, false, QDate(2026, 3, 3),
                  late}}) {
            openEdit({.date = moment(start), .due = moment(due)});
            if (!edits) {
                openAdd();
                child<DatePicker>("dtTaskDate").setMoment(moment(start));
                child<DatePicker>("dtTaskDueDate").setMoment(moment(due));
            }
            auto &picker = child<DatePicker>(changesStart ? "dtTaskDate" : "dtTaskDueDate");
            const QDateTime before = picker.dateTime();
            const AlertAnswer answer(u"OK"_s);
            picker.setDate(day);
            QCOMPARE(answer.wasShown(), !message.isEmpty());
            QCOMPARE(answer.informativeText, message);
            if (message.isEmpty())
                QCOMPARE(picker.dateTime(), QDateTime(day, before.time()));
            else if (edits)
                QCOMPARE(picker.dateTime(), before);
            else // what was accepted last is the moment of the form's creation
                QVERIFY(qAbs(picker.dateTime().secsTo(QDateTime::currentDateTime())) < 60);
            QCoreApplication::processEvents(); // what has not been answered yet
        }
    }

    void aDateThatIsBeingTypedCounts()
    {
        for (const auto &[year, stored] : {std::pair("2027", true), {"2020", false}}) {
            openEdit({.date = moment(u"2026-03-03T12:00:00"_s), .due = moment(u"2026-03-05T12:00:00"_s)});
            auto &due = child<DatePicker>("dtTaskDueDate");
            due.setFocus();
            due.setSelectedSection(QDateTimeEdit::YearSection);
            QTest::keyClicks(&due, QString::fromLatin1(year));
            const AlertAnswer answer(u"OK"_s);
            child<QPushButton>("storeButton").click(); // as by its key, which leaves the focus where it is
            QCOMPARE(answer.wasShown(), !stored);
            QCOMPARE(form->isVisible(), !stored);
            QCOMPARE(Calendar::localTime(manager->tasks()[0]->due).date().year(), stored ? 2027 : 2026);
        }
    }

    void aWholeDateIsTyped()
    {
        openEdit({.date = moment(u"2026-03-03T12:00:00"_s), .due = moment(u"2026-03-05T12:00:00"_s)});
        auto &due = child<DatePicker>("dtTaskDueDate");
        due.setFocus();
        due.setSelectedSection(QDateTimeEdit::MonthSection);
        QTest::keyClicks(&due, u"12/25/2026"_s);
        QTest::keyClick(&due, Qt::Key_Return);
        QCOMPARE(due.dateTime(), QDateTime(QDate(2026, 12, 25), QTime(12, 0)));
        due.selectAll();
        QTest::keyClicks(&due, u"1/7/2027"_s); // on the way it is in January 2026, before the start
        QTest::keyClick(&due, Qt::Key_Return);
        QCOMPARE(due.date(), QDate(2027, 1, 7));
        due.setSelectedSection(QDateTimeEdit::MonthSection);
        QTest::keyClicks(&due, u"1"_s);
        QTest::keyClick(&due, Qt::Key_Tab); // to the day
        QTest::keyClicks(&due, u"1"_s);
        due.setSelectedSection(QDateTimeEdit::YearSection);
        QTest::keyClicks(&due, u"2026"_s);
        for (const bool isRefused : {true, false}) { // once
            const AlertAnswer answer(u"OK"_s);
            QTest::keyClick(&due, Qt::Key_Tab);
            QCOMPARE(answer.wasShown(), isRefused);
        }
        QCOMPARE(due.date(), QDate(2027, 1, 7));
    }

    void escapeInTheCalendarChoosesNothing()
    {
        openEdit({.date = moment(u"2026-03-03T12:00:00"_s), .due = moment(u"2026-03-05T12:00:00"_s)});
        auto &due = child<DatePicker>("dtTaskDueDate");
        const QSignalSpy chosen(&due, &DatePicker::dayChosen);
        for (const auto &[end, day] : {std::pair(Qt::Key_Escape, 5), {Qt::Key_Return, 6}}) {
            const QPoint arrow(due.width() - 10, due.height() / 2);
            QTest::mouseMove(&due, arrow);
            QTest::mouseClick(&due, Qt::LeftButton, {}, arrow);
            QWidget *calendar = QApplication::activePopupWidget();
            QVERIFY(calendar);
            auto *days = calendar->findChild<QTableView *>();
            days->setFocus();
            QTest::keyClick(days, Qt::Key_Right);
            QCOMPARE(due.date().day(), 6);
            QTest::keyClick(days, end);
            QVERIFY(!QApplication::activePopupWidget());
            QCoreApplication::processEvents();
            QCOMPARE(due.date().day(), day);
            QCOMPARE(chosen.size(), end == Qt::Key_Return);
        }
    }

    void theLastAcceptedDateReturns()
    {
        openEdit({.date = moment(u"2026-03-03T12:00:00"_s), .due = moment(u"2026-03-05T12:00:00"_s)});
        auto &due = child<DatePicker>("dtTaskDueDate");
        due.setDate(QDate(2026, 3, 9));
        for (const QDate day : {QDate(2026, 3, 1), QDate(2026, 3, 2)}) {
            const AlertAnswer answer(u"OK"_s);
            due.setDate(day);
            QVERIFY(answer.wasShown());
            QCOMPARE(due.date(), QDate(2026, 3, 9));
        }
    }

    void unreadableColorsAreRefused()
    {
        CapturedOutput output;
        openAdd();
        auto &well = child<ColorWell>("color");
        chooseColor(Qt::red);
        QVERIFY(well.color() == Color(1.0, 0.0, 0.0, 1.0));
        QVERIFY(output.takeLines().contains(u"Select color well color"_s));
        chooseColor(Qt::black);
        QVERIFY(well.color() == Color(1.0, 0.0, 0.0, 1.0));
        QVERIFY(!form->findChild<QColorDialog *>() || !form->findChild<QColorDialog *>()->isVisible());
        switchTo(u"Dark"_s);
        chooseColor(Qt::white);
        QVERIFY(well.color() == Color(1.0, 0.0, 0.0, 1.0));
        chooseColor(Qt::black);
        QVERIFY(well.color() == black);
        QTest::mouseClick(&well, Qt::LeftButton);
        QPointer<QColorDialog> panel = form->findChild<QColorDialog *>();
        QVERIFY(panel && panel->isVisible());
        form->close();
        QVERIFY(!panel || !panel->isVisible());
    }

    void appearanceChangesReachOpenForms()
    {
        openAdd();
        chooseColor(Qt::red);
        switchTo(u"Dark"_s);
        QVERIFY(child<ColorWell>("color").color() == black);
        QVERIFY(child<TextView>("txtTaskDescription").textColor() == white);

        Preferences::standard().setGlobalText(u"AppleInterfaceStyle"_s, std::nullopt);
        openEdit({.color = {0.75, 1.0, 0.0, 0.5}});
        form->hide();
        form->show();
        switchTo(u"Dark"_s);
        QVERIFY(child<ColorWell>("color").color() == Color(0.25, 0.0, 1.0, 0.5));
        QVERIFY(child<TextView>("txtTaskDescription").textColor() == white);
        switchTo(std::nullopt);
        QVERIFY(child<ColorWell>("color").color() == Color(0.75, 1.0, 0.0, 0.5));
        QVERIFY(child<TextView>("txtTaskDescription").textColor() == black);
    }

    void aTaskThatHasGoneIsStoredAllTheSame()
    {
        openEdit({.key = u"KEY"_s, .name = u"old"_s});
        setTasks(*manager, {{.key = u"other"_s}}); // as after the file was changed by others
        child<QLineEdit>("txtTaskName").setText(u"new"_s);
        child<QPushButton>("storeButton").click();
        QCOMPARE(manager->tasks().size(), 2);
        QCOMPARE(manager->tasks()[1]->key + manager->tasks()[1]->name, u"KEYnew"_s);
    }

    void resetBringsTheTaskBack()
    {
        openEdit({.name = u"name"_s,
                  .desc = u"desc"_s,
                  .client = u"Jones"_s,
                  .color = black,
                  .status = 1,
                  .statusName = u"Closed"_s});
        child<QLineEdit>("txtTaskName").clear();
        child<TextView>("txtTaskDescription").clear();
        type("inTaskStatus", u"other"_s);
        type("client", u"other"_s);
        child<ColorWell>("color").setColor(white);
        QTest::mouseClick(&child<QPushButton>("resetButton"), Qt::LeftButton);
        QCOMPARE(child<QLineEdit>("txtTaskName").text(), u"name"_s);
        QCOMPARE(child<TextView>("txtTaskDescription").toPlainText(), u"desc"_s);
        QCOMPARE(child<QComboBox>("inTaskStatus").currentText(), u"Closed"_s);
        QCOMPARE(child<QComboBox>("client").currentText(), u"other"_s);
        QVERIFY(child<ColorWell>("color").color() == black);
        openAdd();
        type("inTaskStatus", u"other"_s);
        type("client", u"other"_s);
        QTest::mouseClick(&child<QPushButton>("resetButton"), Qt::LeftButton);
        QCOMPARE(child<QComboBox>("inTaskStatus").currentText(), u"Open"_s);
        QCOMPARE(child<QComboBox>("client").currentText(), u"other"_s);
    }

    void sharingStoresFirstAndKeepsTheFormOpen()
    {
        openEdit({.key = u"KEY"_s, .name = u"old"_s});
        manager->addTask({.key = u"other"_s});
        manager->select(1); // by a merge, while the form is open
        child<QLineEdit>("txtTaskName").setText(u"new"_s);
        int reloads = 0;
        QObject observer;
        notices.observe(notice::reload, &observer, [&] { ++reloads; });
        QTest::mouseClick(&child<QPushButton>("shareButton"), Qt::LeftButton);
        QCOMPARE(manager->tasks().first()->name, u"new"_s);
        QCOMPARE(reloads, 1);
        QCoreApplication::processEvents();
        QVERIFY(QApplication::activePopupWidget() && form->isVisible());
    }

private:
    void openAdd()
    {
        form = std::make_unique<ViewControllerAdd>(*services);
        show();
    }

    void openEdit(const task &edited)
    {
        setTasks(*manager, {edited});
        manager->select(0);
        form = std::make_unique<ViewControllerEdit>(*services);
        show();
    }

    void show()
    {
        form->show();
        form->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(form.get()));
    }

    template <typename Child>
    Child &child(const char *name) const
    {
        return *form->findChild<Child *>(QString::fromLatin1(name));
    }

    /// Types the text over what the box shows, and goes on to the next control.
    void type(const char *name, const QString &text, Qt::Key end = Qt::Key_Tab)
    {
        QLineEdit &field = *child<QComboBox>(name).lineEdit();
        field.setFocus();
        field.selectAll();
        QTest::keyClicks(&field, text);
        if (QWidget *suggestions = QApplication::activePopupWidget())
            suggestions->close();
        QTest::keyClick(&field, end);
    }

    void chooseColor(const QColor &color)
    {
        QTest::mouseClick(&child<ColorWell>("color"), Qt::LeftButton);
        auto *panel = form->findChild<QColorDialog *>(QString(), Qt::FindDirectChildrenOnly);
        QVERIFY(panel);
        panel->setCurrentColor(color);
        panel->accept();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void switchTo(const std::optional<QString> &style)
    {
        Preferences::standard().setGlobalText(u"AppleInterfaceStyle"_s, style);
        systemNotices.post(notice::appearanceChanged);
    }

    QTemporaryDir home;
    Preferences preferences{u"/nonexistent/preferences.ini"_s};
    NotificationCenter notices;
    NotificationCenter systemNotices;
    ColorPanel colorPanel;
    std::unique_ptr<TaskManager> manager;
    std::unique_ptr<TaskFormServices> services;
    std::unique_ptr<TaskForm> form;
};

static const TestClass<FormsTest> registered;

#include "FormsTest.moc"
