#include "app/UIUtil.h"
#include "contacts/Contact.h"
#include "contacts/PersistentContainer.h"
#include "gateway/MessagingSettings.h"
#include "mainwindow/TaskTable.h"
#include "model/TaskManager.h"
#include "platform/DayWatch.h"
#include "platform/FileDescriptor.h"
#include "platform/Preferences.h"
#include "platform/RedoFile.h"
#include "program/Program.h"
#include "support/Dialogs.h"
#include "support/FullDisk.h"
#include "support/TestProgram.h"

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QTableView>
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
    void initTestCase()
    {
        QCoreApplication::addLibraryPath(u"" MODULES ""_s); // with a sound module that counts
        writeTo(bundle.filePath(u"ding.mp3"_s), {});
        QDir::setSearchPaths(u"bundle"_s, {bundle.path()});
    }

    void init()
    {
        home = std::make_unique<QTemporaryDir>();
        writeTo(home->filePath(u"zandulist.txt"_s),
                row("c", 3) + row("a", 1) + row("b", 2, 1) + row("H", 2, 0, true));
        open();
    }

    void open()
    {
        program.reset();
        manager = std::make_unique<TaskManager>(preferences);
        program = std::make_unique<Program>(
            *manager, systemNotices,
            Program::Folders{home->path(), home->path(), home->filePath(u"data"_s),
                             home->filePath(u"state"_s)},
            GatewayAddress{.host = u"127.0.0.1"_s, .port = 1}); // where nobody listens
        window = &program->mainWindow();
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        table = window->findChild<QTableView *>(u"tblView"_s);
        new QAbstractItemModelTester(table->model(), table);
        searchField = window->findChild<QLineEdit *>(u"searchField"_s);
    }

    void cleanupTestCase() { program.reset(); }

    void buttonsFollowTheSelection()
    {
        selectRow(1);
        QCOMPARE(manager->selectedTask().key, u"b"_s);
        QCOMPARE(enabledButtons(), allButtons);
        selectRow(1, Qt::ControlModifier);
        QVERIFY(table->selectionModel()->selectedRows().isEmpty());
        QCOMPARE(manager->selected(), 1); // the commands stay with the task last selected
        QCOMPARE(enabledButtons(), allButtons);
        chooseView(6);
        QCOMPARE(enabledButtons(), u"upper downer"_s);
        selectRow(1);
        systemNotices.post(notice::appearanceChanged);
        QCOMPARE(enabledButtons(), u"upper downer"_s);
    }

    void movesAndCopiesAreFiled()
    {
        chooseView(6);
        QCOMPARE(filed(), u"cabH"_s); // sorting does not write
        selectRow(0);
        press("upper"); // moves nothing: the order stays that of a column
        QCOMPARE(table->horizontalHeader()->sortIndicatorSection(), int(TaskColumn::Date));
        selectRow(2);
        for (const auto &[name, expected] :
             {std::pair("downer", u"abcH"_s), {"upper", u"abHc"_s}, {"upper", u"aHbc"_s}}) {
            press(name);
            QCOMPARE(rows(), expected);
            QCOMPARE(filed(), expected);
            QCOMPARE(manager->selectedTask().key, u"H"_s);
            QCOMPARE(enabledButtons(), allButtons);
        }
        const QString order = filed();
        open(); // the order made by hand is no column's, and stays
        chooseView(6);
        QCOMPARE(rows(), order);
    }

    void theTableStaysWhereItIs()
    {
        for (int number = 0; number < 200; ++number)
            manager->addTask({.key = QString::number(number)});
        chooseView(6);
        table->scrollToBottom();
        const int place = table->verticalScrollBar()->value();
        QVERIFY(place > 0);
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->viewport()->rect().center());
        press("hide");
        QCOMPARE(table->verticalScrollBar()->value(), place);
    }

    void theFirstStepSelectsTheFirstRow()
    {
        QVERIFY(table->currentIndex().row() == 0 && manager->selected() < 0);
        for (const QString &key : {u"a"_s, u"b"_s}) {
            QTest::keyClick(window->focusWidget(), Qt::Key_Down);
            QCOMPARE(manager->selectedTask().key, key);
        }
    }

    void noTwoCommandsShareTheirKeys()
    {
        for (const char *opener : {"", "actionAdd", "actionClients", "actionTeamMembers", "actionMessages",
                                   "actionJournal", "actionSettings", "actionNotes", "actionWhiteboard"}) {
            if (auto *action = window->findChild<QAction *>(QString::fromLatin1(opener)); *opener)
                action->trigger();
            const QWidget *screen = window;
            for (const QDialog *dialog : window->findChildren<QDialog *>())
                if (*opener && dialog->isVisible())
                    screen = dialog;
            QStringList keys;
            for (const QAction *action : screen->findChildren<QAction *>())
                if (screen == window || action->parent() == screen)
                    for (const QKeySequence &sequence : action->shortcuts())
                        keys += sequence.toString();
            for (const QShortcut *shortcut : screen->findChildren<QShortcut *>())
                if (shortcut->parent() == screen && shortcut->context() == Qt::WindowShortcut)
                    keys += shortcut->key().toString();
            QCOMPARE(keys.removeDuplicates(), 0);
            if (screen != window)
                delete screen;
        }
    }

    void commandsAnswerToTheirKeysInModalWindows()
    {
        selectRow(0);
        press("edit");
        auto *form = window->findChild<QDialog *>(u"ViewControllerEdit"_s);
        QTest::keyClick(form, Qt::Key_N, Qt::ControlModifier);
        auto *added = window->findChild<QDialog *>(u"ViewControllerAdd"_s);
        QCOMPARE(QApplication::activeModalWidget(), added);     // or it could not be used
        QTest::keyClick(added, Qt::Key_N, Qt::ControlModifier); // raises the form that is open
        QCOMPARE(window->findChildren<QDialog *>().size(), 2);
        QTest::keyClick(added, Qt::Key_Q, Qt::ControlModifier);
        QVERIFY(!form->isVisible() && !added->isVisible() && !window->isVisible());
    }

    void theViewOfTheDayFollowsTheDay()
    {
        chooseView(9);
        manager->addTask({.key = u"n"_s, .due = Calendar::now()}); // as if its day had come
        QCOMPARE(rows(), QString());
        emit window->findChild<DayWatch *>()->dayMayHaveChanged();
        QCOMPARE(rows(), u"n"_s);
    }

    void notesThatStayOpenKeepTheProgram()
    {
        auto *notes = openNotes();
        notes->resize(701, 499);
        notes->close();
        open();
        notes = openNotes();
        QCOMPARE(notes->size(), QSize(701, 499)); // as it was left
        notes->findChild<QPlainTextEdit *>()->insertPlainText(QString(5000, u'x'));
        const FullDisk full(1000);
        const AlertAnswer answer(u"Cancel"_s);
        window->close();
        QVERIFY(answer.wasShown() && notes->isVisible() && window->isVisible());
    }

    void whatIsNotSavedIsTold()
    {
        QCOMPARE(toldIn(*window), QString());
        selectRow(0);
        {
            const FullDisk full(10);
            press("clone");
            QVERIFY(toldIn(*window).startsWith(u"The task list could not be saved to "_s + home->path()));
            const AlertAnswer answer(u"Cancel"_s);
            window->close();
            QVERIFY(answer.wasShown() && window->isVisible());
        }
        choose(*window, u"Try Again"_s);
        QVERIFY(
            !toldIn(*window).contains(u"could not be saved")); // versions may have found the disk full, too
        QCOMPARE(filed().size(), 5);
        program.reset();
        writeTo(home->filePath(u"zandulist.txt"_s), row("a", 1) + "broken^");
        open();
        QVERIFY(toldIn(*window).startsWith(u"1 of the rows in "_s + home->path()));
        writeTo(home->filePath(u"zandulist.txt"_s), row("a", 1)); // somebody repairs it
        QTRY_COMPARE(toldIn(*window), QString());
        program.reset();
        const QString state = home->filePath(u"state"_s);
        QVERIFY(redoFile::write(redoFile::pathFor(state, state), state, {}, {}, redoFile::digestOf({})));
        QVERIFY(QFile::remove(home->filePath(u"zandulist.txt"_s)));
        open();
        QVERIFY(toldIn(*window).contains(u"no task list in "_s + home->path()));
        writeTo(home->filePath(u"zandulist.txt"_s), row("a", 1));
        QTRY_VERIFY(!toldIn(*window).contains(u"no task list"));
        QVERIFY(toldIn(*window).startsWith(u"What was last changed in "_s + state));
    }

    void theListFollowsItsFile()
    {
        searchField->setText(u"task"_s);
        selectRow(1);
        writeTo(home->filePath(u"zandulist.txt"_s), row("b", 2, 1) + row("x", 1));
        QTRY_COMPARE(rows(), u"bx"_s);
        QCOMPARE(manager->selectedTask().key, u"b"_s);
        QCOMPARE(table->selectionModel()->selectedRows().value(0).row(), 0);
    }

    void aCopyIsShownToItsEnd()
    {
        auto *copy = window->findChild<QAction *>(u"actionCopyToCloud"_s);
        const auto *progress = window->findChild<QWidget *>(u"cloudProgress"_s);
        const auto *status = window->findChild<QLabel *>(u"statusMessageLabel"_s);
        copy->trigger();
        QVERIFY(!copy->isEnabled() && progress->isVisible());
        QTest::keyClick(table, Qt::Key_Escape);
        QTRY_VERIFY(copy->isEnabled() && !progress->isVisible());
        QCOMPARE(status->text(), u"Stopped: 0 of 4 tasks were copied to the cloud."_s);
        copy->trigger();
        QVERIFY(!window->close()); // before the copy has ended
        QVERIFY(window->findChild<QLabel *>(u"cloudProgressLabel"_s)->text().startsWith(u"Quorvane quits"));
        QTRY_VERIFY(!window->isVisible());
        QCOMPARE(status->text(), u"4 tasks were copied to the cloud."_s);
    }

    void quittingAsksWhileMessagesAreSent()
    {
        preferences.store({{messagingKey::accountId, u"a"_s},
                           {messagingKey::secret, u"b"_s},
                           {messagingKey::sendingPhoneNo, u"1"_s},
                           {messagingKey::notifications, true},
                           {messagingKey::delay, 3'600'000}});
        PersistentContainer store(contactModel(), home->filePath(u"data"_s));
        store.loadPersistentStores();
        Clients(store.viewContext()).setValue(Contact::Name, u"Ann"_s);
        QVERIFY(store.save());
        manager->addTask({.date = Calendar::now(), .client = u"Ann"_s});
        window->findChild<QAction *>(u"actionMessages"_s)->trigger();
        const auto *sending = window->findChild<QWidget *>(u"ViewControllerSending"_s);
        sending->findChild<QAbstractButton *>(u"allClients"_s)->click();
        sending->findChild<QAbstractButton *>(u"sendMsgClients"_s)->click();
        for (const QString &choice : {u"No"_s, u"Yes"_s}) {
            const AlertAnswer answer(choice);
            QCOMPARE(window->close(), choice == u"Yes");
            QVERIFY(answer.text.startsWith(u"Messages are still being sent."));
        }
    }

    void closesATaskOnceWithASound()
    {
        QTRY_VERIFY_WITH_TIMEOUT(player, 20'000);
        qApp->setProperty("plays", 0);
        selectRow(0);
        press("close");
        QVERIFY(contentOf(home->filePath(u"zandulist.txt"_s)).contains(row("a", 1, 1)));
        QTest::keyClick(table, Qt::Key_Down); // goes on from where the selection was
        QCOMPARE(manager->selectedTask().key, u"b"_s);
        QCOMPARE(press("close"), u"Task already closed"_s);
        player->play(); // after which those before it have been played
        QTRY_COMPARE_WITH_TIMEOUT(qApp->property("plays").toInt(), 2, 20'000);
    }

    void sortingKeepsTheSelectedTask()
    {
        const auto sortByName = [header = table->horizontalHeader()] {
            const QPoint place(header->sectionViewportPosition(int(TaskColumn::Name)) + 20,
                               header->height() / 2);
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, place);
        };
        selectRow(0);
        sortByName();
        sortByName();
        QCOMPARE(rows(), u"cba"_s);
        QCOMPARE(manager->selectedTask().key, u"a"_s);
        QCOMPARE(table->selectionModel()->selectedRows().value(0).row(), 2);
        press("close");
        // With no row highlighted the remembered task is still the same one.
        sortByName();
        QCOMPARE(manager->selectedTask().key, u"a"_s);
        sortByName();
        open(); // in the order that was kept, which is no step of this run's
        QCOMPARE(rows(), u"cba"_s);
        QVERIFY(!window->findChild<QAction *>(u"actionUndo"_s)->isEnabled());
    }

    void searchKeepsTheSelectedTask()
    {
        selectRow(1);
        searchField->setFocus();
        QTest::keyClicks(searchField, u"TASK B"_s);
        QCOMPARE(rows(), u"b"_s);
        QCOMPARE(table->selectionModel()->selectedRows().size(), 1);
        QCOMPARE(enabledButtons(), allButtons); // as they were
        chooseView(1);
        QCOMPARE(rows(), QString());
        searchField->setFocus();
        QTest::keyClick(searchField, Qt::Key_Escape);
        QVERIFY(!manager->isSearching());
    }

    void onlyADoubleClickOnATaskOpensIt()
    {
        const QPoint below = table->viewport()->rect().bottomLeft() + QPoint(5, -5);
        QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, below);
        QVERIFY(!QApplication::activeModalWidget());
        QTest::mouseDClick(table->viewport(), Qt::RightButton, {}, placeOf(0));
        QVERIFY(!QApplication::activeModalWidget());
    }

    void deletesTheTaskThatWasAskedAbout()
    {
        searchField->setText(u"task"_s);
        selectRow(1);
        // While the question is open, a merge selects another task.
        QTimer::singleShot(0, window, [&] { manager->select(0); });
        QVERIFY(press("delete", u"Yes"_s).endsWith(u"?task b"));
        QCOMPARE(rows(), u"ac"_s);
        QCOMPARE(filed(), u"aHc"_s);
        searchField->clear();
        chooseView(6);
        QCOMPARE(press("downer"), u"Select a Task."_s); // not the one in the place of the deleted one
        QCOMPARE(filed(), u"aHc"_s);
    }

    void cellsAndColors()
    {
        const Instant start = Calendar().startOfDay(QDate(2024, 3, 7));
        const QString longText = u"first <b> of many\n"_s + QString(100'000, u'x');
        manager->addTask({.key = u"wild"_s, .color = {-3.0, 7.0, 0.2, 0.0}});
        manager->addTask(task(u"K1"_s, start, u"a"_s, longText, u"c"_s, u"t"_s, {},
                              start + std::chrono::hours(30), 0, 0, u"Open"_s, u"High"_s, false, 7, 5, 12,
                              30));
        chooseView(6);
        QStringList cells;
        for (const TaskColumnInfo &column : taskColumns())
            cells.append(table->model()->index(5, int(column.column)).data().toString());
        QCOMPARE(cells.join(u'|'), u"3/7/24|07:05|12:30|a|c|t|first <b> of many...|Open|High|3/8/24|K1"_s);
        const QString toolTip =
            table->model()->index(5, int(TaskColumn::Description)).data(Qt::ToolTipRole).toString();
        QVERIFY(toolTip.contains(u"&lt;b&gt;"_s) && toolTip.size() < 2000);
        // The text's contrast is to be 4.5 at least: close to where black and white are equally readable,
        // too.
        for (const char *name : {"white", "#777777", "red", "lime", "#0a000000"})
            QCOMPARE(readableTextColor(QColor(name), Qt::white), QColor(Qt::black));
        for (const char *name : {"black", "#757575", "blue", "maroon"})
            QCOMPARE(readableTextColor(QColor(name), Qt::white), QColor(Qt::white));
    }

private:
    QToolButton *button(const QString &name) const
    {
        return window->findChild<QToolButton *>(name + u"Button"_s);
    }

    QDialog *openNotes() const
    {
        window->findChild<QAction *>(u"actionNotes"_s)->trigger();
        return window->findChild<QDialog *>(u"ViewControllerNotes"_s);
    }

    /// Presses the button and answers the alert that comes up; what that says.
    QString press(const char *name, const QString &answer = u"OK"_s) const
    {
        const AlertAnswer alert(answer);
        QTest::mouseClick(button(QString::fromLatin1(name)), Qt::LeftButton);
        return alert.text + alert.informativeText;
    }

    QString enabledButtons() const
    {
        QStringList enabled = allButtons.split(u' ');
        enabled.removeIf([this](const QString &name) { return !button(name)->isEnabled(); });
        return enabled.join(u' ');
    }

    QString rows() const
    {
        QString keys;
        for (int shown = 0; shown < table->model()->rowCount(); ++shown)
            keys += table->model()->index(shown, int(TaskColumn::Key)).data().toString().at(0);
        return keys;
    }

    QPoint placeOf(int shown) const
    {
        return table->visualRect(table->model()->index(shown, int(TaskColumn::Name))).center();
    }

    void selectRow(int shown, Qt::KeyboardModifiers keys = {}) const
    {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, keys, placeOf(shown));
    }

    void chooseView(int view)
    {
        auto *chooser = window->findChild<QComboBox *>(u"viewSelection"_s);
        chooser->setCurrentIndex(view);
        emit chooser->activated(view);
    }

    /// The keys' first letters in the order of the file.
    QString filed() const
    {
        QString keys;
        for (const QByteArray &line : contentOf(home->filePath(u"zandulist.txt"_s)).split('^'))
            keys += QString::fromUtf8(line.split('|').value(12).first(line.isEmpty() ? 0 : 1));
        return keys;
    }

    const QString allButtons = u"edit delete hide share close clone upper downer"_s;
    const QTemporaryDir bundle;
    std::unique_ptr<QTemporaryDir> home;
    Preferences preferences{u"/nonexistent/preferences.ini"_s};
    NotificationCenter systemNotices;
    std::unique_ptr<TaskManager> manager;
    std::unique_ptr<Program> program;
    ViewController *window = nullptr;
    QTableView *table = nullptr;
    QLineEdit *searchField = nullptr;
};

static const TestClass<ViewControllerTest> registered;
#include "ViewControllerTest.moc"
