#include "mainwindow/ViewController.h"
#include "cloud/CloudSync.h"
#include "cloud/SqlCloudContainer.h"
#include "cloud/TaskRecord.h"
#include "mainwindow/Screens.h"
#include "messaging/ScheduleRuns.h"
#include "model/TaskManager.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "support/CapturedOutput.h"
#include "support/Dialogs.h"
#include "support/ScratchHome.h"
#include "support/TestProgram.h"
#include "widgets/ColorWell.h"

#include <QComboBox>
#include <QDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

/// A row of the file, by its letter: key and name, start day, status, hidden.
QByteArray row(const char *key, int day, int status = 0, bool hidden = false)
{
    return "3/" + QByteArray::number(day) + "/24|task " + key + "||1.0|1.0|0.8|1.0|3/9/24|" +
           QByteArray::number(status) + "|0|" + (status == 1 ? "Closed" : "Open") + "|None|" + key + '|' +
           (hidden ? "true" : "false") + "|8|0|17|0|Smith|Anna^";
}

} // namespace

class ViewControllerTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        home = std::make_unique<QTemporaryDir>();
        writeTo(home->filePath(u"zandulist.txt"_s),
                row("c", 3) + row("a", 1) + row("H", 2, 0, true) + row("b", 2, 1));
        output = std::make_unique<CapturedOutput>();
        open();
    }

    void cleanup()
    {
        closeAll();
        output.reset();
        Preferences::standard().setGlobalText(u"AppleInterfaceStyle"_s, std::nullopt);
    }

    void startsSortedByDate()
    {
        QCOMPARE(rows(), u"abc"_s);
        QVERIFY(output->takeLines().contains(u"Dark Mode: false"_s));
        QCOMPARE(fileContent().at(2), '3'); // sorting does not write
        chooseView(6);
        QCOMPARE(rows(), u"aHbc"_s);
    }

    void buttonsFollowTheSelection()
    {
        output->takeLines();
        selectRow(1);
        QCOMPARE(manager->selectedTask().key, u"b"_s);
        QCOMPARE(enabledButtons(), u"edit delete hide share close clone upper downer"_s);
        QCOMPARE(output->takeLines().filter(QRegularExpression(u"^(Sel|Ind|Hid|b$|Row: 1$)"_s)).first(7),
                 QStringList({u"Selection changed"_s, u"Selected Row: 1"_s, u"b"_s, u"Index: 2"_s,
                              u"Selected: 2"_s, u"Hidden: false"_s, u"Row: 1"_s}));
        const QRect cell = table->visualRect(table->model()->index(1, 3));
        QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::ControlModifier, cell.center());
        QCOMPARE(manager->selected, 2); // the commands stay with the task last selected
        QCOMPARE(enabledButtons(), u"edit delete hide share close clone upper downer"_s);
    }

    void commandsWithoutATask()
    {
        const QByteArray before = fileContent();
        selectRow(0);
        const auto press = [this](const char *name) {
            const AlertAnswer alert(u"OK"_s);
            QTest::mouseClick(button(name), Qt::LeftButton);
            return alert.informativeText;
        };
        manager->selected = -1;
        output->takeLines();
        window->hideClicked(nullptr);
        QCOMPARE(output->takeLines(), QStringList(u"-1"_s));
        chooseView(6);
        QCOMPARE(press("upper"), u"Select a Task."_s);
        QCOMPARE(press("downer"), u"Select a Task."_s);
        QCOMPARE(fileContent(), before);
    }

    void sortingKeepsTheSelectedTask()
    {
        QHeaderView *header = table->horizontalHeader();
        const auto clickHeader = [header](TaskColumn column) {
            const QPoint place(header->sectionViewportPosition(int(column)) + 20, header->height() / 2);
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, place);
        };
        selectRow(0);
        output->takeLines();
        clickHeader(TaskColumn::Name);
        QVERIFY(output->takeLines().contains(u"Sorting: NameCellID ascending"_s));
        clickHeader(TaskColumn::Name);
        QCOMPARE(rows(), u"cba"_s);
        QCOMPARE(manager->selectedTask().key, u"a"_s);
        QCOMPARE(table->selectionModel()->selectedRows().value(0).row(), 2);
        QTest::mouseClick(button("close"), Qt::LeftButton);
        QVERIFY(fileContent().contains(row("a", 1, 1)));
        // With no row highlighted the remembered task is still the same one.
        clickHeader(TaskColumn::Name);
        QCOMPARE(manager->selectedTask().key, u"a"_s);
    }

    void searchKeepsTheSelectedTask()
    {
        auto *field = window->findChild<QLineEdit *>(u"searchField"_s);
        selectRow(0);
        field->setFocus();
        QTest::keyClicks(field, u"TASK B"_s);
        QCOMPARE(rows(), u"b"_s);
        QCOMPARE(enabledButtons(), u"edit delete hide share close clone upper downer"_s); // as they were
        chooseView(1);
        QCOMPARE(rows(), QString());
        field->setFocus();
        QTest::keyClick(field, Qt::Key_Escape);
        QVERIFY(!manager->isSearching);
    }

    void doubleClickBesideTheTasksOpensNothing()
    {
        output->takeLines();
        QTest::mouseDClick(table->viewport(), Qt::LeftButton, {},
                           table->viewport()->rect().bottomLeft() + QPoint(5, -5));
        QCOMPARE(output->takeLines().filter(u"ouble"_s),
                 QStringList({u"Double Click"_s, u"doubleClickOnResultRow  -1"_s}));
        QVERIFY(!QApplication::activeModalWidget());
    }

    void addsDuringASearch()
    {
        window->findChild<QLineEdit *>(u"searchField"_s)->setText(u"plum"_s);
        QCOMPARE(rows(), QString());
        window->findChild<QAction *>(u"actionAdd"_s)->trigger();
        auto *form = window->findChild<QDialog *>();
        auto *name = form->findChild<QLineEdit *>(u"txtTaskName"_s);
        name->setText(u"Plums"_s);
        window->findChild<QAction *>(u"actionAdd"_s)->trigger(); // raises the form that is open
        QCOMPARE(window->findChildren<QDialog *>().size(), 1);
        QTest::keyClick(name, Qt::Key_Return);
        QCOMPARE(table->model()->rowCount(), 1);
        QCOMPARE(fileContent().count('^'), 5);
    }

    void deletesOnlyWhenConfirmed()
    {
        const QByteArray before = fileContent();
        window->findChild<QLineEdit *>(u"searchField"_s)->setText(u"task"_s);
        selectRow(1);
        {
            const AlertAnswer answer(u"No"_s);
            QTest::mouseClick(button("delete"), Qt::LeftButton);
            QCOMPARE(answer.text,
                     u"The task will be deleted locally as well as from the Cloud if present. Are you "
                     "sure you want to delete ?"_s);
            QCOMPARE(answer.informativeText, u"task b"_s);
        }
        QCOMPARE(rows(), u"abc"_s);
        QCOMPARE(enabledButtons(), u"upper downer"_s);
        QCOMPARE(fileContent().count('^'), before.count('^'));
        selectRow(1);
        output->takeLines();
        // While the question is open, a merge selects another task.
        QTimer::singleShot(0, window.get(), [&] { manager->selected = 0; });
        const AlertAnswer answer(u"Yes"_s);
        QTest::mouseClick(button("delete"), Qt::LeftButton);
        QVERIFY(output->takeLines().contains(u"Tasks: 4"_s)); // the hits, before they are searched again
        QCOMPARE(rows(), u"ac"_s);
        QVERIFY(!fileContent().contains("|task b|") && fileContent().count('^') == 3);
    }

    void updatesFromTheCloudOnlyWhenConfirmed()
    {
        const AlertAnswer answer(u"No"_s);
        window->findChild<QAction *>(u"actionUpdateFromCloud"_s)->trigger();
        QCOMPARE(answer.text, u"Do you want to update from the Cloud?"_s);
        QVERIFY(!output->takeLines().contains(u"Ok Pressed!"_s));
    }

private:
    void open()
    {
        closeAll();
        notices = std::make_unique<NotificationCenter>();
        systemNotices = std::make_unique<NotificationCenter>();
        manager = std::make_unique<TaskManager>(preferences);
        screens = std::make_unique<Screens>(
            TaskFormServices{*manager, *notices, *systemNotices, colorPanel, home->filePath(u"data"_s)},
            scheduleRuns, Screens::Folders{home->path(), home->path()});
        container = std::make_unique<SqlCloudContainer>(
            CloudHome::read(home->filePath(u"cloud.ini"_s), home->filePath(u"data"_s)), taskRecordType());
        cloud = std::make_unique<CloudSync>(*manager, *notices, *container);
        window = std::make_unique<ViewController>(*manager, *notices, *systemNotices, *screens, *cloud,
                                                  home->path(), home->filePath(u"state"_s));
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        table = window->findChild<QTableView *>(u"tblView"_s);
    }

    void closeAll()
    {
        window.reset();
        cloud.reset();
        container.reset();
    }

    QToolButton *button(const char *name) const
    {
        return window->findChild<QToolButton *>(QString::fromLatin1(name) + u"Button"_s);
    }

    QString enabledButtons() const
    {
        QStringList enabled;
        for (const char *name : {"edit", "delete", "hide", "share", "close", "clone", "upper", "downer"})
            if (button(name)->isEnabled())
                enabled.append(QString::fromLatin1(name));
        return enabled.join(u' ');
    }

    QString rows() const
    {
        QString keys;
        for (int shown = 0; shown < table->model()->rowCount(); ++shown)
            keys += table->model()->index(shown, int(TaskColumn::Key)).data().toString().at(0);
        return keys;
    }

    void selectRow(int shown)
    {
        const QRect cell = table->visualRect(table->model()->index(shown, 3));
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, cell.center());
    }

    void chooseView(int view)
    {
        auto *chooser = window->findChild<QComboBox *>(u"viewSelection"_s);
        chooser->setFocus();
        QTest::keyClick(chooser, Qt::Key_Home);
        for (int step = 0; step < view; ++step)
            QTest::keyClick(chooser, Qt::Key_Down);
    }

    QByteArray fileContent() const { return contentOf(home->filePath(u"zandulist.txt"_s)); }

    std::unique_ptr<QTemporaryDir> home;
    Preferences preferences{QStringLiteral("/nonexistent/preferences.ini")};
    std::unique_ptr<NotificationCenter> notices;
    std::unique_ptr<NotificationCenter> systemNotices;
    std::unique_ptr<TaskManager> manager;
    ColorPanel colorPanel;
    ScheduleRuns scheduleRuns{preferences,
                              {.host = QStringLiteral("127.0.0.1"), .port = 1}}; // where nobody listens
    std::unique_ptr<Screens> screens;
    std::unique_ptr<SqlCloudContainer> container;
    std::unique_ptr<CloudSync> cloud;
    std::unique_ptr<ViewController> window;
    std::unique_ptr<CapturedOutput> output;
    QTableView *table = nullptr;
};

static const TestClass<ViewControllerTest> registered;

#include "ViewControllerTest.moc"
