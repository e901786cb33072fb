#include "mainwindow/TaskTable.h"
#include "model/TaskManager.h"
#include "platform/Preferences.h"
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
        const auto startOf = [](int month, int day) {
            return Calendar().startOfDay(QDate(2024, month, day));
        };
        const QString longText = u"first <b> of many\n"_s + QString(100'000, u'x');
        manager.addTask(task(u"K1"_s, startOf(3, 7), u"a"_s, longText, u"c"_s, u"t"_s,
                             Color(1.0, 1.0, 0.8, 1.0), startOf(12, 24), 0, 0, u"Open"_s, u"High"_s, false, 7,
                             5, 12, 30));
        manager.addTask({.key = u"K2"_s, .color = {-3.0, 7.0, 0.2, 0.0}, .hidden = true});
        TaskTable table(manager);
        const QAbstractItemModelTester tester(&table);
        QCOMPARE(table.rowCount(), 0);
        table.reloadData(6);
        QStringList cells;
        for (const TaskColumnInfo &column : taskColumns())
            cells.append(table.cellText(0, column.column));
        QCOMPARE(cells.join(u'|'), u"3/7/24|07:05|12:30|a|c|t|first <b> of many...|Open|High|12/24/24|K1"_s);
        const QString toolTip =
            table.data(table.index(0, int(TaskColumn::Description)), Qt::ToolTipRole).toString();
        QVERIFY(toolTip.contains(u"&lt;b&gt;"_s) && toolTip.size() < 2000);
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
