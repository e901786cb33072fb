#include "TaskListFileTest.h"

#include "mainwindow/TaskTable.h"
#include "support/CapturedOutput.h"
#include "support/ScratchHome.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

namespace {

const QByteArray fenceRow = "3/7/24|Paint fence|Two coats|1.0|0.5|0.0|1.0|3/9/24|0|1|Open|High|"
                            "3F2504E0-4F89-41D3-9A0C-0305E82C3301|false|8|0|17|0|Smith|Anna^";
/// The first twelve fields of a row, which every version has written.
const QString head = u"3/7/24|old|desc|0.1|0.2|0.3|1.0|3/9/24|-1|2|Open|High"_s;

Instant startOf(int year, int month, int day)
{
    return Calendar().startOfDay(QDate(year, month, day));
}

QString described(const task &entry)
{
    const Color &color = entry.color;
    return QString::asprintf("%lld %lld %lld %lld %d %lld:%lld-%lld:%lld %.17g %.17g %.17g %.17g",
                             qlonglong(entry.date.time_since_epoch().count()),
                             qlonglong(entry.due.time_since_epoch().count()), entry.status, entry.priority,
                             entry.hidden, entry.startHour, entry.startMin, entry.endHour, entry.endMin,
                             color.red, color.green, color.blue, color.alpha) +
           QStringList({entry.key, entry.name, entry.desc, entry.client, entry.teamMember, entry.statusName,
                        entry.priorityName})
               .join(u"\v"_s);
}

} // namespace

void TaskListFileTest::init()
{
    home = std::make_unique<QTemporaryDir>();
    setDark(false);
    reopen();
}

void TaskListFileTest::cleanup()
{
    setDark(false);
}

void TaskListFileTest::reopen()
{
    manager = std::make_unique<TaskManager>(preferences);
    file =
        std::make_unique<TaskListFile>(*manager, home->filePath(u"Documents"_s), home->filePath(u"state"_s));
}

void TaskListFileTest::setDark(bool dark)
{
    Preferences::standard().setGlobalText(u"AppleInterfaceStyle"_s,
                                          dark ? std::optional(u"Dark"_s) : std::nullopt);
}

void TaskListFileTest::writesTheRow()
{
    CapturedOutput output;
    QVERIFY(file->writeFile());
    QVERIFY(QFile::exists(filePath()));
    QCOMPARE(contentOf(filePath()), QByteArray());
    writeTo(filePath(), fenceRow + fenceRow);
    const QString text = file->readFile();
    output.takeLines();
    file->parseFile(text);
    const QString row = QString::fromUtf8(fenceRow.chopped(1));
    const QStringList rowLines = {u"No of Fields: 20"_s, u"Add Task, hidden: false"_s, u"20 fields"_s,
                                  u"Row: "_s + row,
                                  u"Fields: ["_s + QString(row).replace(u"|"_s, u", "_s) + u"]"_s};
    QCOMPARE(output.takeLines(), QStringList(u"No of Rows: 3"_s) + rowLines + rowLines);
    QCOMPARE(manager->backupTasks.size(), 2);
    QVERIFY(file->writeFile());
    QCOMPARE(contentOf(filePath()), fenceRow + fenceRow);
    QCOMPARE(output.takeLines(), QStringList(u"Write File "_s + QString::fromUtf8(fenceRow + fenceRow)));
}

void TaskListFileTest::realNumbers_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("one") << 1.0 << QByteArray("1.0");
    QTest::newRow("zero") << 0.0 << QByteArray("0.0");
    QTest::newRow("half") << 0.5 << QByteArray("0.5");
    QTest::newRow("64/255") << 64.0 / 255 << QByteArray("0.25098039215686274");
    QTest::newRow("rounded") << 1 - 0.8 << QByteArray("0.19999999999999996");
    QTest::newRow("smallest without exponent") << 1e-4 << QByteArray("0.0001");
    QTest::newRow("smaller") << 1e-5 << QByteArray("1e-05");
    QTest::newRow("small") << 1.25e-7 << QByteArray("1.25e-07");
    QTest::newRow("largest without exponent") << 1234567890123456.0 << QByteArray("1234567890123456.0");
    QTest::newRow("larger") << 1e16 << QByteArray("1e+16");
    QTest::newRow("negative") << -0.25 << QByteArray("-0.25");
}

void TaskListFileTest::realNumbers()
{
    QFETCH(const double, number);
    QFETCH(const QByteArray, text);
    writeTo(filePath(), fenceRow);
    file->parseFile(file->readFile());
    manager->tasks[0].edit().color.red = number;
    QVERIFY(file->writeFile());
    QCOMPARE(contentOf(filePath()).split('|')[3], text);
    reopen();
    file->parseFile(file->readFile());
    QCOMPARE(manager->tasks[0]->color.red, number);
}

void TaskListFileTest::dates_data()
{
    const int year = QDate::currentDate().year();
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QDate>("day");
    QTest::addColumn<QByteArray>("written");
    const auto shortYear = [](int wanted) {
        return QByteArray::number(wanted % 100).rightJustified(2, '0');
    };
    const auto row = [](const char *name, const QByteArray &text, QDate day, const QByteArray &written) {
        QTest::newRow(name) << text << day << written;
    };
    row("leading zeros", "03/07/24", QDate(2024, 3, 7), "3/7/24");
    row("leap day", "2/29/24", QDate(2024, 2, 29), "2/29/24");
    row("earliest short year", "1/1/" + shortYear(year - 80), QDate(year - 80, 1, 1),
        "1/1/" + shortYear(year - 80));
    row("latest short year", "12/31/" + shortYear(year + 19), QDate(year + 19, 12, 31),
        "12/31/" + shortYear(year + 19));
    row("just after", "1/1/" + QByteArray::number(year + 20), QDate(year + 20, 1, 1),
        "1/1/" + QByteArray::number(year + 20));
    row("long form of a short year", "1/1/2024", QDate(2024, 1, 1), "1/1/24");
    row("antiquity", "1/2/0050", QDate(50, 1, 2), "1/2/0050");
    row("far future", "1/2/12024", QDate(12024, 1, 2), "1/2/12024");
}

void TaskListFileTest::dates()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QDate, day);
    QFETCH(const QByteArray, written);
    writeTo(filePath(), text + fenceRow.sliced(6));
    file->parseFile(file->readFile());
    QCOMPARE(manager->tasks.size(), 1);
    QVERIFY(manager->tasks[0]->date == Calendar().startOfDay(day));
    QVERIFY(file->writeFile());
    QCOMPARE(contentOf(filePath()).split('|')[0], written);
}

void TaskListFileTest::textsKeepTheirSeparators()
{
    writeTo(filePath(), fenceRow);
    file->parseFile(file->readFile());
    task &entry = manager->tasks[0].edit();
    entry.name = u"a|b^c"_s;
    entry.client = u"a mark \u001f and \u001e within"_s;
    QVERIFY(file->writeFile());
    QCOMPARE(contentOf(filePath()).count('|'), 19);
    QVERIFY(contentOf(filePath())
                .contains("|a\x1f"
                          "b\x1e"
                          "c|"));
    reopen();
    file->parseFile(file->readFile());
    QCOMPARE(manager->tasks[0]->name, u"a|b^c"_s);
    QCOMPARE(manager->tasks[0]->client, u"a mark  and  within"_s);
}

void TaskListFileTest::randomListsComeBack()
{
    std::mt19937 random(7);
    const QStringList bits = {u"\n"_s, u"|"_s,    u"^"_s,  u"🌱"_s,    u"é"_s,
                              u" "_s,  u"\r\n"_s, u"\""_s, u"true"_s, u"0"_s};
    const auto number = [&random](int limit) {
        return qint64(random() % unsigned(limit));
    };
    const auto text = [&] {
        QString made;
        for (qint64 left = number(6); left > 0; --left)
            made += bits[number(int(bits.size()))];
        return made;
    };
    const auto real = [&] {
        return double(random()) / double(std::mt19937::max());
    };
    for (int i = 0; i < 500; ++i)
        manager->addTask(text() + QString::number(i % 100),
                         startOf(int(1990 + number(50)), 5, 1 + int(number(28))), text(), text(),
                         {real(), real(), real(), real()}, startOf(int(1900 + number(300)), 11, 3),
                         number(4) - 1, number(5) - 1, text(), text(), number(2) == 1, number(24), number(60),
                         number(24), number(60), text(), text());
    QStringList before;
    for (const SharedTask &entry : std::as_const(manager->tasks))
        before.append(described(*entry));
    QVERIFY(file->writeFile());
    const QByteArray written = contentOf(filePath());
    reopen();
    file->parseFile(file->readFile());
    QCOMPARE(manager->tasks.size(), before.size());
    for (qsizetype i = 0; i < before.size(); ++i)
        QCOMPARE(described(*manager->tasks[i]), before[i]);
    QVERIFY(file->writeFile());
    QCOMPARE(contentOf(filePath()), written);
}

void TaskListFileTest::olderRows_data()
{
    QTest::addColumn<QString>("rest");
    QTest::addColumn<QString>("expected"); // key, hidden, times, client, team member
    QTest::newRow("12 fields") << u""_s << u"new no 8:0-17:0 - -"_s;
    QTest::newRow("13 fields") << u"|KEY"_s << u"KEY no 8:0-17:0 - -"_s;
    QTest::newRow("13 fields, empty key") << u"|"_s << u"new no 8:0-17:0 - -"_s;
    QTest::newRow("14 fields") << u"|KEY|true"_s << u"KEY yes 8:0-17:0 - -"_s;
    QTest::newRow("14 fields, True") << u"|KEY|True"_s << u"KEY no 8:0-17:0 - -"_s;
    QTest::newRow("14 fields, 1") << u"|KEY|1"_s << u"KEY no 8:0-17:0 - -"_s;
    QTest::newRow("18 fields") << u"|KEY|true|9|5|11|45"_s << u"KEY yes 9:5-11:45 - -"_s;
    QTest::newRow("19 fields") << u"|KEY|false|9|5|11|45|x"_s << u"KEY no 9:5-11:45 - -"_s;
    QTest::newRow("20 fields") << u"|KEY|true|9|5|11|45|c|t"_s << u"KEY yes 9:5-11:45 c t"_s;
    QTest::newRow("21 fields") << u"|KEY|true|9|5|11|45|c|t|"_s << u"new no 8:0-17:0 - -"_s;
}

void TaskListFileTest::olderRows()
{
    QFETCH(const QString, rest);
    QFETCH(const QString, expected);
    file->parseFile(head + rest + u"^"_s + head + u"^"_s);
    QCOMPARE(manager->tasks.size(), 2);
    QCOMPARE(manager->tasks[1]->endMin,
             manager->tasks[0]->endMin); // an old row takes the times of the row before it
    const task &entry = *manager->tasks[0];
    const auto dash = [](const QString &text) {
        return text.isEmpty() ? u"-"_s : text;
    };
    const QString found = (entry.key.size() == 36 ? u"new"_s : entry.key) +
                          (entry.hidden ? u" yes "_s : u" no "_s) +
                          QString::asprintf("%lld:%lld-%lld:%lld ", entry.startHour, entry.startMin,
                                            entry.endHour, entry.endMin) +
                          dash(entry.client) + u' ' + dash(entry.teamMember);
    QCOMPARE(found, expected);
    QCOMPARE(entry.name, u"old"_s);
    QCOMPARE(entry.status, -1);
    QVERIFY(entry.color == Color(0.1, 0.2, 0.3, 1.0));
}

void TaskListFileTest::skippedRows_data()
{
    QTest::addColumn<QString>("row");
    QTest::newRow("empty") << QString();
    QTest::newRow("11 fields") << head.section(u'|', 0, 10);
    for (const int fields : {15, 16, 17})
        QTest::addRow("%d fields", fields) << head + u"|K|true|9|5|11"_s.section(u'|', 0, fields - 12);
    const auto with = [](int field, const QString &text) {
        QStringList fields = head.split(u'|');
        fields[field - 1] = text;
        return fields.join(u'|');
    };
    for (const QString &date : {u""_s, u"7.3.2024"_s, u"2/30/24"_s, u"3/7/4"_s, u"3/7/024"_s, u"3/7/24 "_s,
                                u"003/7/24"_s, u"13/1/24"_s, u"3/7"_s, u"٣/٧/٢٤"_s}) {
        QTest::addRow("date %s", qPrintable(date)) << with(1, date);
        QTest::addRow("due %s", qPrintable(date)) << with(8, date);
    }
    for (const QString &real : {u""_s, u"red"_s, u" 1.0"_s, u"1,0"_s, u"nan"_s, u"inf"_s, u"0x1p3"_s, u"-"_s})
        QTest::addRow("colour %s", qPrintable(real)) << with(5, real);
    for (const QString &integer : {u""_s, u"1.0"_s, u"one"_s, u"99999999999999999999"_s, u"1 "_s})
        QTest::addRow("status %s", qPrintable(integer)) << with(9, integer);
    QTest::newRow("hour") << head + u"|K|true|9h|5|11|45"_s;
}

void TaskListFileTest::skippedRows()
{
    QFETCH(const QString, row);
    const QString text = head + u"|A^"_s + row + u"^"_s + head + u"|B^"_s;
    writeTo(filePath(), text.toUtf8());
    CapturedOutput output;
    file->parseFile(file->readFile());
    QCOMPARE(manager->tasks.size(), 2);
    QCOMPARE(manager->tasks[0]->key, u"A"_s);
    QCOMPARE(manager->tasks[1]->key, u"B"_s);
    QCOMPARE(output.takeLines().filter(QRegularExpression(u"^Row skipped: 2 "_s)).size(), 1);
    QVERIFY(file->writeFile());
    const QDir folder(home->filePath(u"Documents"_s));
    const QStringList copies = folder.entryList({u"zandulist.txt.damaged-*"_s});
    QCOMPARE(copies.size(), 1);
    QCOMPARE(contentOf(folder.filePath(copies.constFirst())), text.toUtf8());
}

void TaskListFileTest::damagedFileIsCopiedBeforeTheNextWrite()
{
    const QByteArray notUtf8 = "3/7/24|caf\xe9|";
    const QByteArray torn = fenceRow + fenceRow.first(30);
    const QByteArray binary = QByteArray(1000, '\0') + fenceRow;
    for (const QByteArray &bytes : {notUtf8, torn, binary}) {
        init();
        writeTo(filePath(), bytes);
        CapturedOutput output;
        file->parseFile(file->readFile());
        if (bytes == notUtf8)
            QCOMPARE(output.takeLines(), QStringList({u"Error"_s, u"No of Rows: 1"_s}));
        QCOMPARE(manager->tasks.size(), bytes == torn ? 1 : 0);
        QVERIFY(file->writeFile());
        const QDir folder(home->filePath(u"Documents"_s));
        QCOMPARE(folder.entryList({u"*.damaged-*"_s}).size(), 1);
        QCOMPARE(contentOf(folder.filePath(folder.entryList({u"*.damaged-*"_s}).constFirst())), bytes);
    }
}

void TaskListFileTest::colorsStayLightInTheFile()
{
    writeTo(filePath(), QByteArray(fenceRow).replace("1.0|0.5|0.0|1.0", "0.75|0.5|0.25|0.5"));
    const QByteArray stored = contentOf(filePath());
    CapturedOutput output;
    setDark(true);
    file->parseFile(file->readFile());
    QVERIFY(output.takeLines().contains(u"In dark mode -> Invert"_s));
    QVERIFY(manager->tasks[0]->color == Color(0.25, 0.5, 0.75, 0.5));
    QVERIFY(file->writeFile());
    QVERIFY(output.takeLines().contains(u"Inverted -> Switch to original"_s));
    QCOMPARE(contentOf(filePath()), stored);
    for (const bool dark : {false, true, true, false, false}) {
        setDark(dark);
        file->followAppearance();
        QVERIFY(manager->tasks[0]->color ==
                (dark ? Color(0.25, 0.5, 0.75, 0.5) : Color(0.75, 0.5, 0.25, 0.5)));
        if (dark)
            QVERIFY(file->writeFile());
        QCOMPARE(contentOf(filePath()), stored);
    }
}

void TaskListFileTest::appearanceKeepsSearchAndSelection()
{
    writeTo(filePath(),
            (head + u"|A^"_s + head + u"|B|false^"_s + head + u"|C^"_s).toUtf8().replace("old", "pond"));
    file->parseFile(file->readFile());
    manager->tasks[1].edit().name = u"fence"_s;
    QVERIFY(file->writeFile());
    manager->tasks.swapItemsAt(0, 2); // a sort that is not in the file
    manager->startSearch(u"POND"_s);
    manager->selectTaskByKey(u"C"_s);
    setDark(true);
    file->followAppearance();
    QVERIFY(manager->isSearching);
    QCOMPARE(manager->tasks.size(), 2);
    QCOMPARE(manager->backupTasks.size(), 3);
    QCOMPARE(manager->backupTasks[0]->key, u"A"_s);
    QCOMPARE(manager->selectedTask().key, u"C"_s);
    QVERIFY(manager->tasks[0]->color == Color(0.1, 0.2, 0.3, 1.0).inverted());
    QVERIFY(file->writeFile());
    QCOMPARE(contentOf(filePath()).count('^'), 3);
}

void TaskListFileTest::appearanceKeepsTheListThatCannotBeRead()
{
    writeTo(filePath(), fenceRow);
    file->parseFile(file->readFile());
    QVERIFY(QFile::remove(filePath()));
    for (const bool dark : {true, true, false, true}) {
        setDark(dark);
        file->followAppearance();
        QVERIFY(manager->tasks[0]->color == (dark ? Color(0.0, 0.5, 1.0, 1.0) : Color(1.0, 0.5, 0.0, 1.0)));
    }
    QVERIFY(file->writeFile());
    QCOMPARE(contentOf(filePath()), fenceRow);

    // A list newer than the file, since the last write failed, is not given up for the file's.
    manager->tasks.append(manager->tasks[0]);
    const QString state = home->filePath(u"state"_s);
    QVERIFY(QDir(state).removeRecursively());
    writeTo(state, "in the way");
    CapturedOutput output;
    QVERIFY(!file->writeFile());
    QCOMPARE(output.takeLines().constLast(), u"Error"_s);
    setDark(false);
    file->followAppearance();
    QCOMPARE(manager->tasks.size(), 2);
    QVERIFY(manager->tasks[1]->color == Color(1.0, 0.5, 0.0, 1.0));
}

void TaskListFileTest::failuresAreToldAndLoseNothing()
{
    CapturedOutput output;
    QCOMPARE(file->readFile(), QString());
    QCOMPARE(output.takeLines(), QStringList(u"Error"_s));

    TaskListFile nowhere(*manager, QString(), home->filePath(u"state"_s));
    QVERIFY(nowhere.writeFile());
    QCOMPARE(nowhere.readFile(), QString());
    QVERIFY(!QFile::exists(filePath()));

    manager->startSearch(u"nothing"_s); // the file gets the whole list, not the hits
    manager->addTask(u"K"_s, {}, u"a"_s, {}, {}, {}, 0, 0, {}, {}, false, 0, 0, 0, 0, {}, {});
    QVERIFY(file->writeFile());
    QCOMPARE(contentOf(filePath()).count('^'), 1);
}

void TaskListFileTest::sampleModel()
{
    const QString longText = u"first line of many\n"_s + QString(100'000, u'x');
    manager->addTask(u"K1"_s, startOf(2024, 3, 7), u"a"_s, longText, {1.0, 1.0, 0.8, 1.0},
                     startOf(2024, 12, 24), 0, 0, u"Open"_s, u"High"_s, false, 7, 5, 12, 30, u"c"_s, u"t"_s);
    manager->addTask(u"K2"_s, {}, u"b"_s, {}, {-3.0, 7.0, 0.2, 0.0}, {}, 0, 0, {}, {}, true, 7, 5, 12, 30, {},
                     {});
    TaskTable table(*manager);
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
    for (int step = 0; step <= 0xfff; ++step) {
        const QColor color((step >> 8) * 17, (step >> 4 & 15) * 17, (step & 15) * 17);
        const auto part = [](double value) {
            return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        const double light =
            0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
        const bool black = readableTextColor(color, Qt::white) == QColor(Qt::black);
        QVERIFY((black ? (light + 0.05) / 0.05 : 1.05 / (light + 0.05)) >= 4.5);
    }
    QCOMPARE(readableTextColor(QColor(0, 0, 0, 10), Qt::white), QColor(Qt::black));
}
