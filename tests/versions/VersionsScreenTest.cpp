#include "model/Appearance.h"
#include "model/TaskManager.h"
#include "platform/Preferences.h"
#include "support/Appearance.h"
#include "support/Dialogs.h"
#include "support/Tasks.h"
#include "support/TestProgram.h"
#include "versions/VersionStore.h"
#include "versions/ViewControllerVersions.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTreeWidget>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The real screen over a real store and list.
class VersionsScreenTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        home = std::make_unique<QTemporaryDir>();
        manager = std::make_unique<TaskManager>(preferences);
        store = std::make_unique<VersionStore>(home->path());
        file = std::make_unique<TaskListFile>(*manager, home->path(), home->path(), store->history());
    }

    void cleanup() { screen.reset(); }

    void saysWhereNothingIsKeptYet()
    {
        open();
        QTRY_VERIFY(child<QLabel>("emptyLabel")->isVisible());
        QVERIFY(!child<QPushButton>("bringBackListButton")->isEnabled());
        QTest::keyClick(screen.get(), Qt::Key_Escape);
        QVERIFY(!screen->isVisible());
    }

    void bringsBackInTheDark() { bringsBackTasksAndLists(true); }

    void bringsBackTasksAndLists(bool isDark = false)
    {
        Appearance appearance(isDark);
        file->parseFile({}); // takes the appearance over
        change({task{.key = u"a"_s, .name = u"Mow lawn"_s, .color = held({1.0, 0.5, 0.25, 1.0})},
                task{.key = u"b"_s, .name = u"Trim hedge"_s}, task{.key = u"c"_s, .name = u"Clean pond"_s}});
        const QByteArray before = contentOf(file->path());
        change({task{.key = u"a"_s, .name = u"Mow meadow"_s, .color = held({0.0, 0.0, 0.0, 1.0})},
                task{.key = u"c"_s, .name = u"Clean pond"_s}, task{.key = u"d"_s, .name = u"New"_s}});
        open();
        QTRY_COMPARE(rows(), u"Mow meadow,Clean pond,New"_s);
        QVERIFY(!button("bringBackListButton")->isEnabled()); // it is today's list
        auto *tree = child<QTreeWidget>("versionsTree");
        QCOMPARE(tree->topLevelItemCount(), 3);
        QCOMPARE(tree->currentItem()->text(1),
                 u"1 added: New; 1 changed: Mow meadow; 1 removed: Trim hedge"_s);
        QTest::keyClick(tree, Qt::Key_Down);
        QTRY_COMPARE(rows(), u"Mow lawn,Trim hedge,Clean pond"_s);
        const QColor shown = table->model()->index(0, 1).data(Qt::BackgroundRole).value<QColor>();
        QCOMPARE(shown.toRgb().rgb(), painted(held({1.0, 0.5, 0.25, 1.0})).rgb());

        child<QCheckBox>("compareBox")->click();
        QCOMPARE(rows(0), u"~ changed: Task, Color,− removed,,+ added"_s);
        child<QLineEdit>("filterField")->setText(u"MOW"_s);
        QCOMPARE(rows(), u"Mow lawn"_s);
        child<QLineEdit>("filterField")->clear();
        table->selectRow(2);
        QVERIFY(!button("bringBackTasksButton")->isEnabled()); // that one is as it was
        table->selectAll();
        QTest::mouseClick(button("bringBackTasksButton"), Qt::LeftButton);
        QCOMPARE(steps, QStringList(u"Bring Back 2 Tasks"_s));
        QCOMPARE(namesOf(manager->tasks()).join(u','), u"Mow lawn,Clean pond,New,Trim hedge"_s);

        QTRY_COMPARE(rows(0), u",,,+ added"_s); // the list was written and has another version
        QTest::mouseClick(button("bringBackListButton"), Qt::LeftButton);
        QVERIFY(steps.last().startsWith(u"Bring Back the List of "_s));
        QCOMPARE(contentOf(file->path()), before);
        QTRY_VERIFY(!button("bringBackListButton")->isEnabled());
    }

    void noStepGoesOverWhatWasDoneMeanwhile()
    {
        change({task{.key = u"a"_s, .name = u"a"_s}});
        change({});
        open();
        auto *tree = child<QTreeWidget>("versionsTree");
        QTRY_COMPARE(tree->topLevelItemCount(), 3);
        QTest::keyClick(tree, Qt::Key_Down);
        QTRY_VERIFY(button("bringBackListButton")->isEnabled());
        manager->addTask({.key = u"b"_s});
        const AlertAnswer alert(u"OK"_s);
        button("bringBackListButton")->click();
        QVERIFY(steps.isEmpty() && alert.informativeText.startsWith(u"The list has been changed"_s));
        QTRY_VERIFY(child<QLabel>("changesLabel")->text().contains(u"1 task added"_s));
        button("bringBackListButton")->click();
        QCOMPARE(namesOf(manager->tasks()), QStringList(u"a"_s));
    }

    void damagedFilesAreNamed()
    {
        change({task{.key = u"a"_s, .name = u"a"_s}});
        writeTo(store->folder() + u"/letter.txt"_s, "Dear");
        const QString path = versionFile::pathOf(store->folder(), 1);
        writeTo(path, contentOf(path).chopped(4) + "abcd");
        open();
        QTRY_VERIFY(child<QLabel>("unreadableLabel")->text().endsWith(u": letter.txt"_s));
        QTRY_VERIFY(child<QLabel>("skippedLabel")->text().contains(u"damaged"_s));
        QVERIFY(!button("bringBackListButton")->isEnabled());
    }

private:
    static Color held(const Color &color) { return storedOrHeld(color, isDarkMode()); }

    /// Makes the list these tasks, written and kept.
    void change(const QList<task> &tasks)
    {
        setTasks(*manager, tasks);
        QVERIFY(file->writeFile() && store->finish(60s));
    }

    void open()
    {
        const auto bringBack = [this](const TaskList &list, const QString &stepName) {
            steps.append(stepName);
            manager->replaceList(list, stepName);
            file->writeFile();
        };
        steps.clear();
        screen = std::make_unique<ViewControllerVersions>(
            ViewControllerVersions::Services{*manager, *store, systemNotices, bringBack});
        screen->show();
        table = child<QTableView>("tasksTable");
        new QAbstractItemModelTester(table->model(), table);
        QVERIFY(QTest::qWaitForWindowActive(screen.get()));
    }

    template <typename Child>
    Child *child(const char *name) const
    {
        return screen->findChild<Child *>(QString::fromLatin1(name));
    }
    QPushButton *button(const char *name) const { return child<QPushButton>(name); }

    /// The texts of a column, by default of the names.
    QString rows(int column = int(TaskColumn::Name) + 1) const
    {
        QStringList texts;
        for (int row = 0; row < table->model()->rowCount(); ++row)
            texts.append(table->model()->index(row, column).data().toString());
        return texts.join(u',');
    }

    Preferences preferences{u"/nonexistent/preferences.ini"_s};
    NotificationCenter systemNotices;
    std::unique_ptr<QTemporaryDir> home;
    std::unique_ptr<TaskManager> manager;
    std::unique_ptr<VersionStore> store;
    std::unique_ptr<TaskListFile> file;
    std::unique_ptr<ViewControllerVersions> screen;
    QTableView *table = nullptr;
    QStringList steps;
};

static const TestClass<VersionsScreenTest> registered;
#include "VersionsScreenTest.moc"
