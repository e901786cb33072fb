#include "contacts/Contact.h"
#include "forms/TaskDraft.h"
#include "forms/ViewControllerAdd.h"
#include "forms/ViewControllerEdit.h"
#include "model/TaskManager.h"
#include "support/Appearance.h"
#include "support/Dialogs.h"
#include "support/FullDisk.h"
#include "support/Tasks.h"
#include "support/TestProgram.h"
#include "widgets/ColorWell.h"
#include "widgets/DatePicker.h"
#include "widgets/TextView.h"
#include "widgets/TimePicker.h"

#include <QColorDialog>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QTableView>

using namespace Qt::StringLiterals;

namespace {

Instant moment(const QString &isoTime)
{
    return Calendar::instantOf(QDateTime::fromString(isoTime, Qt::ISODateWithMs));
}

/// What the alert says that comes up meanwhile, if one does.
template <typename Act>
QString alertDuring(Act act)
{
    const AlertAnswer answer(u"OK"_s);
    act();
    return answer.informativeText;
}

const Color black{0.0, 0.0, 0.0, 1.0};
const Color white{1.0, 1.0, 1.0, 1.0};
const Color red{1.0, 0.0, 0.0, 1.0};
const QString noon = u"2026-03-03T12:00:00"_s;
const QString laterNoon = u"2026-03-05T12:00:00"_s;
const QString laterEvening = u"2026-03-05T20:00:00"_s;

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
        manager.emplace(preferences);
        draft.emplace(home.filePath(u"begun"_s));
        draft->discard();
    }
    void cleanup() { form.reset(); }

    void addsWhatTheControlsShow()
    {
        openAdd();
        for (const QString &name : QSqlDatabase::connectionNames())
            QVERIFY(!QSqlDatabase::database(name, false).isOpen()); // the contacts have been read
        auto &client = child<QComboBox>("client");
        QCOMPARE(client.count(), 4);
        QCOMPARE(client.itemText(1) + client.currentText(), QString());
        type("client", u"smith"_s, Qt::Key_Return); // not the one that is listed
        type("inTaskStatus", u"open"_s);            // nor this one
        child<TimePicker>("startTime").setTime(QTime(9, 30));
        child<TimePicker>("endTime").setTime(QTime(18, 45));
        bool isToldInTime = false;
        QObject observer;
        notices.observe(notice::reload, &observer,
                        [&] { isToldInTime = form->isVisible() && tasks().size() == 1; });
        QTest::keyClick(&child<QLineEdit>("txtTaskName"), Qt::Key_Return);
        QVERIFY(isToldInTime && !form->isVisible());
        const task added = *tasks().first();
        QCOMPARE(added.statusName + added.client + added.teamMember, u"opensmith"_s);
        QCOMPARE(added.status, -1);
        QVERIFY(Calendar::now() - added.date < std::chrono::minutes(1));
        openAdd();
        QCOMPARE(child<TimePicker>("startTime").time(), QTime(9, 30));
        QCOMPARE(child<TimePicker>("endTime").time(), QTime(18, 45));
    }

    void storingAnUntouchedTaskKeepsIt()
    {
        task original = sampleTask(u"KEY"_s, QString(40'000, u'n'));
        original.date = moment(u"2026-11-01T06:30:15.123Z"_s); // 1:30 for the second time
        original.due = moment(u"2026-11-02T05:00:00.001Z"_s);
        openEdit(original);
        click("storeButton");
        QVERIFY(!form->isVisible());
        original.priority = -1; // the list has no eighth entry, nor one of this name
        QVERIFY(haveEqualFields(*tasks().first(), original));
    }

    void datesAreChecked()
    {
        using Case = std::tuple<bool, QString, QString, bool, int, bool>;
        for (const auto &[edits, start, due, changesStart, dayOfMarch, isRefused] :
             {Case(false, laterEvening, noon, true, 3, false),  // the same day
              Case(false, noon, laterEvening, false, 3, false), // and here
              Case(false, noon, noon, true, 4, true),           // a day later
              Case(false, noon, laterEvening, false, 2, true),  // a day earlier
              // The day of the clock change.
              Case(false, u"2026-03-07T23:30:00"_s, u"2026-03-08T00:30:00"_s, true, 8, false),
              Case(true, noon, laterNoon, true, 5, false),                    // the same moment
              Case(true, noon, laterNoon, false, 3, false),                   // and here
              Case(true, u"2026-03-01T12:00:01"_s, laterNoon, true, 5, true), // later that day
              Case(true, u"2026-03-03T12:00:01"_s, laterNoon, false, 3, true)}) {
            openEdit({.date = moment(start), .due = moment(due)});
            if (!edits) {
                openAdd();
                child<DatePicker>("dtTaskDate").setMoment(moment(start));
                child<DatePicker>("dtTaskDueDate").setMoment(moment(due));
            }
            auto &picker = child<DatePicker>(changesStart ? "dtTaskDate" : "dtTaskDueDate");
            const QString refusal = changesStart ? u"Select a Start Date prior to Due Date"_s
                                                 : u"Select a Due Date after Start Date"_s;
            const QDate day(2026, 3, dayOfMarch);
            const bool returnsToNow = isRefused && !edits; // a new form has accepted no other date yet
            const QDateTime before = Calendar::localTime(picker.moment());
            const QDateTime expected = returnsToNow ? QDateTime::currentDateTime()
                                       : isRefused  ? before
                                                    : QDateTime(day, before.time());
            QCOMPARE(alertDuring([&] { enter(picker, day); }), isRefused ? refusal : QString());
            const QDateTime accepted = Calendar::localTime(picker.moment());
            QVERIFY(qAbs(accepted.msecsTo(expected)) < (returnsToNow ? 60'000 : 1));
            const QDate farOff(changesStart ? 9000 : 1000, 1, 1);
            QCOMPARE(alertDuring([&] { enter(picker, farOff); }), refusal);
            QCOMPARE(Calendar::localTime(picker.moment()), accepted);
        }
    }

    void aDateThatIsBeingTypedCounts()
    {
        for (const auto &[typed, stored] : {std::pair(u"12/25/2026"_s, true),
                                            {u"1/7/2027"_s, true}, // on the way it is before the start
                                            {u"1/7/2026"_s, false}}) {
            openEdit({.date = moment(noon), .due = moment(laterNoon)});
            auto &due = child<DatePicker>("dtTaskDueDate");
            due.setFocus();
            due.selectAll();
            QTest::keyClicks(&due, typed);
            // As by the button's key, which leaves the focus where it is.
            const QString alert = alertDuring([&] { child<QPushButton>("storeButton").click(); });
            QCOMPARE(alert.isEmpty(), stored);
            QCOMPARE(form->isVisible(), !stored);
            QCOMPARE(Calendar::localTime(tasks()[0]->due).toString(u"M/d/yyyy h"_s),
                     stored ? typed + u" 12"_s : u"3/5/2026 12"_s);
            QCOMPARE(alertDuring([&] { QTest::keyClick(&due, Qt::Key_Tab); }), QString()); // it was told
        }
    }

    void escapeInTheCalendarChoosesNothing()
    {
        openEdit({.date = moment(noon), .due = moment(laterNoon)});
        auto &due = child<DatePicker>("dtTaskDueDate");
        const QSignalSpy chosen(&due, &DatePicker::dayChosen);
        for (const auto &[end, day] : {std::pair(Qt::Key_Escape, 5), {Qt::Key_Return, 6}}) {
            QTest::keyClick(&due, Qt::Key_Down, Qt::AltModifier);
            auto *days = QApplication::activePopupWidget()->findChild<QTableView *>();
            days->setFocus();
            QTest::keyClick(days, Qt::Key_Right);
            QTest::keyClick(days, end);
            QVERIFY(!QApplication::activePopupWidget());
            QCoreApplication::processEvents();
            QCOMPARE(Calendar::localTime(due.moment()).date().day(), day);
            QCOMPARE(chosen.size(), end == Qt::Key_Return);
        }
    }

    void colorsStayReadable()
    {
        Appearance appearance;
        openAdd();
        chooseColor(Qt::red);
        QVERIFY(well() == red);
        chooseColor(Qt::black);
        QVERIFY(well() == red); // refused
        appearance.set(true, systemNotices);
        QVERIFY(well() == black && text() == white);
        chooseColor(Qt::white);
        QVERIFY(well() == red);
        chooseColor(Qt::black);
        QVERIFY(well() == black);
        click("color");
        const QPointer<QColorDialog> panel = form->findChild<QColorDialog *>();
        QVERIFY(panel && panel->isVisible());
        form->close();
        QVERIFY(!panel || !panel->isVisible());

        appearance.set(false);
        openEdit({.color = {0.75, 1.0, 0.0, 0.5}});
        form->hide();
        form->show();
        appearance.set(true, systemNotices);
        QVERIFY(well() == Color(0.25, 0.0, 1.0, 0.5) && text() == white);
        appearance.set(false, systemNotices);
        QVERIFY(well() == Color(0.75, 1.0, 0.0, 0.5) && text() == black);
    }

    void theNoteOnAnUnreadableDateStaysBelowIt()
    {
        openAdd();
        auto &picker = child<DatePicker>("dtTaskDate");
        QTest::keyClicks(&picker, u"x\r"_s);
        for (const int width : {1000, 1100}) {
            form->resize(width, form->height());
            QCOMPARE(child<QLabel>("note").x(), picker.mapTo(form.get(), QPoint()).x());
        }
    }

    void resetBringsTheTaskBack()
    {
        for (const bool edits : {true, false}) {
            openEdit({.name = u"name"_s, .desc = u"desc"_s, .color = black, .status = 1});
            if (!edits)
                openAdd();
            auto &name = child<QLineEdit>("txtTaskName");
            auto &desc = child<TextView>("txtTaskDescription");
            name.setText(u"other"_s);
            desc.setText(u"other"_s);
            type("inTaskStatus", u"other"_s);
            type("client", u"other"_s);
            child<ColorWell>("color").setColor(red);
            click("resetButton");
            QCOMPARE(name.text() + u'|' + desc.toPlainText(), edits ? u"name|desc"_s : u"|"_s);
            QCOMPARE(child<QComboBox>("inTaskStatus").currentText(), edits ? u"Closed"_s : u"Open"_s);
            QCOMPARE(child<QComboBox>("client").currentText(), u"other"_s);
            QVERIFY(well() == (edits ? black : white));
        }
    }

    void whatWasBegunIsOffered()
    {
        Appearance appearance;
        const QString path = home.filePath(u"begun"_s);
        const auto offered = [this] {
            openAdd();
            return toldIn(*form);
        };
        openAdd();
        child<TextView>("txtTaskDescription").setText(u"desc"_s);
        click("resetButton");
        form->close();
        QCOMPARE(offered(), QString());
        task begun = sampleTask({}, u"Mow lawn"_s);
        begun.priority = -1; // not in the list
        begun.hidden = false;
        draft->keep(begun);
        QVERIFY(!(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther)));
        appearance.set(true);
        begun.color = begun.color.inverted();
        draft.emplace(path); // the program's next run
        QVERIFY(offered().contains(u"“Mow lawn”"));
        child<QLineEdit>("txtTaskName").setText(u"Another"_s);
        {
            const FullDisk full(10);
            choose(*form, u"Take It Up"_s);
            QVERIFY(toldIn(*form).contains(u"“Mow lawn”. It has not been taken up, since what you have "));
        }
        choose(*form, u"Take It Up"_s);
        QVERIFY(toldIn(*form).contains(u"“Another”"));          // which it has taken the place of
        QCOMPARE(TaskDraft(path).begun()->name, u"Mow lawn"_s); // were the program ended now
        form->close();
        QVERIFY(offered().contains(u"“Mow lawn”"));
        form->close(); // without having touched anything
        QVERIFY(offered().contains(u"“Mow lawn”"));
        choose(*form, u"Take It Up"_s);
        click("addButton");
        begun.key = tasks().first()->key;
        QVERIFY(haveEqualFields(*tasks().first(), begun));
        QCOMPARE(TaskDraft(path).begun()->name, u"Another"_s);
        QVERIFY(offered().contains(u"“Another”")); // adding one task is not the end of others
        child<QLineEdit>("txtTaskName").setText(u"Third"_s);
        click("addButton");
        QVERIFY(offered().contains(u"“Another”"));
        choose(*form, u"Discard"_s);
        QCOMPARE(offered(), QString());
        draft->keep(begun);
        draft->keep({.name = u"whole"_s});
        const QByteArray bytes = contentOf(path);
        for (const auto &[found, isOffered] : {std::pair(QByteArray(bytes).replace(9, 1, "x"), true),
                                               {bytes.chopped(1), true},
                                               {bytes.sliced(4), false}}) {
            QFile::remove(home.filePath(QDir(home.path()).entryList({u"begun.damaged-*"_s}).value(0)));
            writeTo(path, found);
            draft.emplace(path);
            QCOMPARE(offered().contains(u"You had begun the task"), isOffered);
            QVERIFY(toldIn(*form).contains(u".damaged-"));
        }
    }

    void whatCannotBeKeptIsAskedAbout()
    {
        openAdd();
        auto &due = child<DatePicker>("dtTaskDueDate");
        due.selectAll();
        QTest::keyClicks(&due, u"12/25/2040"_s); // and is still being typed
        for (const QString &answer : {u"Cancel"_s, u"Close All the Same"_s}) {
            const FullDisk full(10);
            const AlertAnswer alert(answer);
            form->close();
            QVERIFY(alert.text.startsWith(u"What you have begun cannot be kept: "));
            QCOMPARE(form->isVisible(), answer == u"Cancel");
        }
        QCOMPARE(Calendar().dayOf(draft->begun()->due), QDate(2040, 12, 25)); // until the program ends
    }

    void sharingStoresFirstAndKeepsTheFormOpen()
    {
        const task edited{.key = u"KEY"_s, .name = u"old"_s, .hidden = true};
        const task other{.key = u"other"_s};
        for (const bool hasGone : {false, true}) {
            openEdit(edited);
            // While the form is open, a merge selects another task, or the file is changed by others.
            showTasks(hasGone ? QList<task>{other} : QList<task>{other, edited});
            child<QLineEdit>("txtTaskName").setText(u"new"_s);
            int reloads = 0;
            QObject observer;
            notices.observe(notice::reload, &observer, [&] { ++reloads; });
            if (hasGone) {
                click("resetButton"); // to nothing
                const AlertAnswer cancel(u"Cancel"_s);
                click("shareButton");
                QVERIFY(cancel.text.startsWith(u"This task was deleted elsewhere") && tasks().size() == 1);
            }
            const AlertAnswer answer(u"Store as a New Task"_s);
            click("shareButton");
            QVERIFY(tasks().size() == 2 && haveEqualFields(*tasks()[0], other) && tasks()[1]->hidden);
            QCOMPARE(tasks()[1]->name, u"new"_s);
            QCOMPARE(tasks()[1]->key == u"KEY", !hasGone);
            QCOMPARE(child<QLineEdit>("key").text(), tasks()[1]->key);
            QCOMPARE(reloads, 1);
            QCoreApplication::processEvents();
            QVERIFY(QApplication::activePopupWidget() && form->isVisible());
        }
    }

    void asksBeforeTheWorkOfOthersIsReplaced()
    {
        const task edited{
            .key = u"KEY"_s, .date = moment(laterNoon), .name = u"old"_s, .color = {0.8, 0.1, 0.7}};
        for (const auto &[others, answer, list, isOpen] :
             {std::tuple(u"old"_s, QString(), u"mine"_s, false),
              {u"mine"_s, QString(), u"mine"_s, false},
              {u"theirs"_s, u"Store Mine"_s, u"mine theirs"_s, false},
              {u"theirs"_s, u"Keep the Other"_s, u"theirs mine"_s, true},
              {u"theirs"_s, u"Cancel"_s, u"theirs"_s, true}}) {
            Appearance appearance;
            openEdit(edited);
            child<QLineEdit>("txtTaskName").setText(u"mine"_s);
            appearance.set(true, systemNotices);
            showTasks({{.key = u"KEY"_s,
                        .date = moment(laterEvening),
                        .name = others,
                        .color = edited.color.inverted()}});
            const AlertAnswer alert(answer);
            child<QPushButton>("storeButton").click();
            QCOMPARE(alert.text.section(u' ', -1), answer.isEmpty() ? QString() : u"Name."_s);
            QCOMPARE(namesOf(tasks()).join(u' '), list);
            manager->endStep();
            const QString step = answer == u"Keep the Other" ? u"Add 'mine'"_s : u"Edit '%1'"_s.arg(others);
            QVERIFY(answer == u"Cancel" || manager->history().steps().undoText() == step);
            QCOMPARE(form->isVisible(), isOpen);
            QVERIFY(!isOpen ||
                    child<QLineEdit>("txtTaskName").text() == (list == others ? u"mine"_s : others));
        }
    }

private:
    static void enter(DatePicker &picker, QDate day)
    {
        picker.selectAll();
        QTest::keyClicks(&picker, day.toString(u"M/d/yyyy"));
        QTest::keyClick(&picker, Qt::Key_Return);
    }

    template <typename Form>
    void open()
    {
        form = std::make_unique<Form>(
            TaskFormServices{*manager, notices, systemNotices, colorPanel, *draft, home.path()});
        form->show();
        form->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(form.get()));
    }

    void openAdd() { open<ViewControllerAdd>(); }

    void openEdit(const task &edited)
    {
        showTasks({edited});
        open<ViewControllerEdit>();
    }

    void showTasks(const QList<task> &list)
    {
        setTasks(*manager, list);
        manager->select(0);
    }

    const TaskList &tasks() const { return manager->tasks(); }

    template <typename Child>
    Child &child(const char *name) const
    {
        return *form->findChild<Child *>(QString::fromLatin1(name));
    }

    Color well() const { return child<ColorWell>("color").color(); }
    Color text() const { return child<TextView>("txtTaskDescription").textColor(); }

    void click(const char *button) { QTest::mouseClick(&child<QAbstractButton>(button), Qt::LeftButton); }

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
        click("color");
        auto &panel = *form->findChild<QColorDialog *>();
        panel.setCurrentColor(color);
        panel.accept();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    QTemporaryDir home;
    Preferences preferences{u"/nonexistent/preferences.ini"_s};
    NotificationCenter notices;
    NotificationCenter systemNotices;
    ColorPanel colorPanel;
    std::optional<TaskDraft> draft;
    std::optional<TaskManager> manager;
    std::unique_ptr<TaskForm> form;
};

static const TestClass<FormsTest> registered;
#include "FormsTest.moc"
