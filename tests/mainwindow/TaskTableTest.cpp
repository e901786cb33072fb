#include "mainwindow/TaskTable.h"
#include "model/TaskManager.h"
#include "platform/Preferences.h"
#include "support/CapturedOutput.h"
#include "support/TestProgram.h"

#include <QAbstractItemModelTester>

using namespace Qt::StringLiterals;

class TaskTableTest : public QObject
{
    Q_OBJECT

private slots:
    void cellsAndColors()
    {
        Preferences preferences(u"/nonexistent/preferences.ini"_s);
        TaskManager manager(preferences);
        const auto startOf = [](int year, int month, int day) {
            return Calendar().startOfDay(QDate(year, month, day));
        };
        const QString longText = u"first line of many\n"_s + QString(100'000, u'x');
        manager.addTask(u"K1"_s, startOf(2024, 3, 7), u"a"_s, longText, {1.0, 1.0, 0.8, 1.0},
                        startOf(2024, 12, 24), 0, 0, u"Open"_s, u"High"_s, false, 7, 5, 12, 30, u"c"_s,
                        u"t"_s);
        manager.addTask(u"K2"_s, {}, u"b"_s, {}, {-3.0, 7.0, 0.2, 0.0}, {}, 0, 0, {}, {}, true, 7, 5, 12, 30,
                        {}, {});
        TaskTable table(manager);
        const QAbstractItemModelTester tester(&table);
        QCOMPARE(table.rowCount(), 0);
        CapturedOutput output;
        table.reloadData(6);
        QCOMPARE(output.takeLines(), QStringList({u"Index of Selected: 6"_s, u"Number if tasks in view: 2"_s,
                                                  u"Number of Rows: 2"_s}));
        QStringList cells;
        for (const TaskColumnInfo &column : taskColumns())
            cells.append(table.cellText(0, column.column));
        QCOMPARE(cells.join(u'|'), u"3/7/24|07:05|12:30|a|c|t|first line of many...|Open|High|12/24/24|K1"_s);
        QVERIFY(output.takeLines().contains(u"Start Time 07:05"_s));
        table.data(table.index(1, 0), Qt::BackgroundRole);
        QCOMPARE(output.takeLines(), QStringList(u"Row: 1"_s));
        QCOMPARE(table.rowOfKey(u"K2"_s), 1);
        table.reloadData(0);
        QCOMPARE(table.rowCount(), 1);
        // The text's contrast is to be 4.5 at least: close to where black and white are equally readable,
        // too.
        for (const char *name : {"white", "#777777", "red", "lime", "#0a000000"})
            QCOMPARE(readableTextColor(QColor(name), Qt::white), QColor(Qt::black));
        for (const char *name : {"black", "#757575", "blue", "maroon"})
            QCOMPARE(readableTextColor(QColor(name), Qt::white), QColor(Qt::white));
    }
};

static const TestClass<TaskTableTest> registered;

#include "TaskTableTest.moc"
