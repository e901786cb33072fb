#include "taskfile/TaskListFile.h"
#include "model/TaskManager.h"
#include "platform/Preferences.h"
#include "support/CapturedOutput.h"
#include "support/ScratchHome.h"
#include "support/Tasks.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QTemporaryDir>

#include <memory>
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

} // namespace

class TaskListFileTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        home = std::make_unique<QTemporaryDir>();
        setDark(false);
        reopen();
    }

    void cleanup() { setDark(false); }

    void writesTheRow()
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
        QCOMPARE(manager->backupTasks().size(), 2);
        QVERIFY(file->writeFile());
        QCOMPARE(contentOf(filePath()), fenceRow + fenceRow);
        QCOMPARE(output.takeLines(), QStringList(u"Write File "_s + QString::fromUtf8(fenceRow + fenceRow)));
    }

    void realNumbers()
    {
        for (const auto &[number, text] :
             std::initializer_list<std::pair<double, QByteArray>>{{1.0, "1.0"},
                                                                  {0.0, "0.0"},
                                                                  {64.0 / 255, "0.25098039215686274"},
                                                                  {1 - 0.8, "0.19999999999999996"},
                                                                  {1e-4, "0.0001"},
                                                                  {1e-5, "1e-05"},
                                                                  {1.25e-7, "1.25e-07"},
                                                                  {1234567890123456.0, "1234567890123456.0"},
                                                                  {1e16, "1e+16"},
                                                                  {-0.25, "-0.25"}}) {
            init();
            writeTo(filePath(), fenceRow);
            file->parseFile(file->readFile());
            changeTask(*manager, manager->tasks()[0]->key,
                       [number](task &entry) { entry.color.red = number; });
            QVERIFY(file->writeFile());
            QCOMPARE(contentOf(filePath()).split('|')[3], text);
            reopen();
            file->parseFile(file->readFile());
            QCOMPARE(manager->tasks()[0]->color.red, number);
        }
    }

    void dates()
    {
        const int year = QDate::currentDate().year();
        const auto shortYear = [](int wanted) {
            return QByteArray::number(wanted % 100).rightJustified(2, '0');
        };
        struct Case
        {
            QByteArray text;
            QDate day;
            QByteArray written;
        };
        for (const auto &[text, day, written] : std::initializer_list<Case>{
                 {"03/07/24", QDate(2024, 3, 7), "3/7/24"},
                 {"2/29/24", QDate(2024, 2, 29), "2/29/24"},
                 {"1/1/" + shortYear(year - 80), QDate(year - 80, 1, 1), "1/1/" + shortYear(year - 80)},
                 {"12/31/" + shortYear(year + 19), QDate(year + 19, 12, 31), "12/31/" + shortYear(year + 19)},
                 {"1/1/" + QByteArray::number(year + 20), QDate(year + 20, 1, 1),
                  "1/1/" + QByteArray::number(year + 20)}, // the first that is not short
                 {"1/1/2024", QDate(2024, 1, 1), "1/1/24"},
                 {"1/2/0050", QDate(50, 1, 2), "1/2/0050"},
                 {"1/2/12024", QDate(12024, 1, 2), "1/2/12024"}}) {
            init();
            writeTo(filePath(), text + fenceRow.sliced(6));
            file->parseFile(file->readFile());
            QCOMPARE(manager->tasks().size(), 1);
            QVERIFY(manager->tasks()[0]->date == Calendar().startOfDay(day));
            QVERIFY(file->writeFile());
            QCOMPARE(contentOf(filePath()).split('|')[0], written);
        }
    }

    void textsKeepTheirSeparators()
    {
        writeTo(filePath(), fenceRow);
        file->parseFile(file->readFile());
        changeTask(*manager, manager->tasks()[0]->key, [](task &entry) {
            entry.name = u"a|b^c"_s;
            entry.client = u"a mark \u001f and \u001e within"_s;
        });
        QVERIFY(file->writeFile());
        QCOMPARE(contentOf(filePath()).count('|'), 19);
        reopen();
        file->parseFile(file->readFile());
        QCOMPARE(manager->tasks()[0]->name, u"a|b^c"_s);
        QCOMPARE(manager->tasks()[0]->client, u"a mark  and  within"_s);
    }

    void randomListsComeBack()
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
                             number(4) - 1, number(5) - 1, text(), text(), number(2) == 1, number(24),
                             number(60), number(24), number(60), text(), text());
        const TaskList before = manager->tasks();
        QVERIFY(file->writeFile());
        const QByteArray written = contentOf(filePath());
        reopen();
        file->parseFile(file->readFile());
        QCOMPARE(manager->tasks().size(), before.size());
        for (qsizetype i = 0; i < before.size(); ++i)
            QVERIFY(haveEqualFields(*manager->tasks()[i], *before[i]));
        QVERIFY(file->writeFile());
        QCOMPARE(contentOf(filePath()), written);
    }

    void olderRows()
    {
        // What follows the twelve fields; key, hidden, times, client and team member that it gives.
        for (const auto &[rest, expected] : {std::pair(u""_s, u"new 0 8:0-17:0 "_s),
                                             {u"|"_s, u"new 0 8:0-17:0 "_s},
                                             {u"|KEY"_s, u"KEY 0 8:0-17:0 "_s},
                                             {u"|KEY|true"_s, u"KEY 1 8:0-17:0 "_s},
                                             {u"|KEY|True"_s, u"KEY 0 8:0-17:0 "_s},
                                             {u"|KEY|1"_s, u"KEY 0 8:0-17:0 "_s},
                                             {u"|KEY|true|9|5|11|45"_s, u"KEY 1 9:5-11:45 "_s},
                                             {u"|KEY|false|9|5|11|45|x"_s, u"KEY 0 9:5-11:45 "_s},
                                             {u"|KEY|true|9|5|11|45|c|t"_s, u"KEY 1 9:5-11:45 ct"_s},
                                             {u"|KEY|true|9|5|11|45|c|t|"_s, u"new 0 8:0-17:0 "_s}}) {
            init();
            file->parseFile(head + rest + u"^"_s + head + u"^"_s);
            QCOMPARE(manager->tasks().size(), 2);
            const task &entry = *manager->tasks()[0];
            QCOMPARE(manager->tasks()[1]->endMin,
                     entry.endMin); // an old row takes the times of the row before
            const QString found = QString::asprintf(" %d %lld:%lld-%lld:%lld ", entry.hidden, entry.startHour,
                                                    entry.startMin, entry.endHour, entry.endMin);
            QCOMPARE((entry.key.size() == 36 ? u"new"_s : entry.key) + found + entry.client +
                         entry.teamMember,
                     expected);
            QCOMPARE(entry.name, u"old"_s);
            QCOMPARE(entry.status, -1);
            QVERIFY(entry.color == Color(0.1, 0.2, 0.3, 1.0));
        }
    }

    void skippedRows()
    {
        QStringList rows{QString(), head.section(u'|', 0, 10), head + u"|K|true|9h|5|11|45"_s,
                         QString(1000, QChar(0))};
        for (const int fields : {15, 16, 17})
            rows.append(head + u"|K|true|9|5|11"_s.section(u'|', 0, fields - 12));
        const auto with = [](int field, const QString &text) {
            QStringList fields = head.split(u'|');
            fields[field - 1] = text;
            return fields.join(u'|');
        };
        for (const QString &date : {u""_s, u"7.3.2024"_s, u"2/30/24"_s, u"3/7/4"_s, u"3/7/024"_s,
                                    u"3/7/24 "_s, u"003/7/24"_s, u"13/1/24"_s, u"3/7"_s, u"٣/٧/٢٤"_s})
            rows << with(1, date) << with(8, date);
        for (const QString &real :
             {u""_s, u"red"_s, u" 1.0"_s, u"1,0"_s, u"nan"_s, u"inf"_s, u"0x1p3"_s, u"-"_s})
            rows << with(5, real);
        for (const QString &integer : {u""_s, u"1.0"_s, u"one"_s, u"99999999999999999999"_s, u"1 "_s})
            rows << with(9, integer);
        for (const QString &row : rows) {
            init();
            const QString text = head + u"|A^"_s + row + u"^"_s + head + u"|B^"_s;
            writeTo(filePath(), text.toUtf8());
            CapturedOutput output;
            file->parseFile(file->readFile());
            QVERIFY2(manager->tasks().size() == 2, qPrintable(row));
            QCOMPARE(manager->tasks()[0]->key + manager->tasks()[1]->key, u"AB"_s);
            QCOMPARE(output.takeLines().filter(QRegularExpression(u"^Row skipped: 2 "_s)).size(), 1);
            QVERIFY(file->writeFile());
            QCOMPARE(copied(), text.toUtf8());
        }
        const QByteArray torn = fenceRow + fenceRow.first(30);
        const QByteArray withMore = fenceRow.chopped(1) + "|more^"; // of which a field is left out
        for (const QByteArray &text : {torn, withMore}) {
            init();
            writeTo(filePath(), text);
            file->parseFile(file->readFile());
            QCOMPARE(manager->tasks().size(), 1);
            QVERIFY(file->writeFile());
            QCOMPARE(copied(), text);
        }
    }

    void colorsStayLightInTheFile()
    {
        writeTo(filePath(), QByteArray(fenceRow).replace("1.0|0.5|0.0|1.0", "0.75|0.5|0.25|0.5"));
        const QByteArray stored = contentOf(filePath());
        CapturedOutput output;
        setDark(true);
        file->parseFile(file->readFile());
        QVERIFY(output.takeLines().contains(u"In dark mode -> Invert"_s));
        QVERIFY(manager->tasks()[0]->color == Color(0.25, 0.5, 0.75, 0.5));
        QVERIFY(file->writeFile());
        QVERIFY(output.takeLines().contains(u"Inverted -> Switch to original"_s));
        QCOMPARE(contentOf(filePath()), stored);
    }

    void appearanceKeepsSearchAndSelection()
    {
        writeTo(filePath(),
                (head + u"|A^"_s + head + u"|B|false^"_s + head + u"|C^"_s).toUtf8().replace("old", "pond"));
        file->parseFile(file->readFile());
        changeTask(*manager, u"B"_s, [](task &entry) { entry.name = u"fence"_s; });
        QVERIFY(file->writeFile());
        manager->sortByColumn({u"KeyCellID"_s, false}); // which is not in the file
        manager->startSearch(u"POND"_s);
        manager->selectTaskByKey(u"C"_s);
        setDark(true);
        file->followAppearance();
        QVERIFY(manager->isSearching());
        QCOMPARE(manager->tasks().size(), 2);
        QCOMPARE(manager->backupTasks().size(), 3);
        QCOMPARE(manager->backupTasks()[0]->key, u"A"_s);
        QCOMPARE(manager->selectedTask().key, u"C"_s);
        QVERIFY(manager->tasks()[0]->color == Color(0.1, 0.2, 0.3, 1.0).inverted());
        QVERIFY(file->writeFile());
        QCOMPARE(contentOf(filePath()).count('^'), 3);
    }

    void appearanceKeepsTheListThatCannotBeRead()
    {
        writeTo(filePath(), fenceRow);
        file->parseFile(file->readFile());
        QVERIFY(QFile::remove(filePath()));
        for (const bool dark : {true, true, false, true}) {
            setDark(dark);
            file->followAppearance();
            QVERIFY(manager->tasks()[0]->color ==
                    (dark ? Color(0.0, 0.5, 1.0, 1.0) : Color(1.0, 0.5, 0.0, 1.0)));
        }
        QVERIFY(file->writeFile());
        QCOMPARE(contentOf(filePath()), fenceRow);

        // A list newer than the file, since the last write failed, is not given up for the file's.
        manager->addTask(*manager->tasks()[0]);
        const QString state = home->filePath(u"state"_s);
        QVERIFY(QDir(state).removeRecursively());
        writeTo(state, "in the way");
        CapturedOutput output;
        QVERIFY(!file->writeFile());
        QCOMPARE(output.takeLines().constLast(), u"Error"_s);
        setDark(false);
        file->followAppearance();
        QCOMPARE(manager->tasks().size(), 2);
        QVERIFY(manager->tasks()[1]->color == Color(1.0, 0.5, 0.0, 1.0));
    }

    void failuresAreToldAndLoseNothing()
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

private:
    /// What was copied aside; nothing where that was not one file.
    QByteArray copied() const
    {
        const QDir folder(home->filePath(u"Documents"_s));
        const QStringList copies = folder.entryList({u"zandulist.txt.damaged-*"_s});
        return copies.size() == 1 ? contentOf(folder.filePath(copies[0])) : QByteArray();
    }

    void reopen()
    {
        manager = std::make_unique<TaskManager>(preferences);
        file = std::make_unique<TaskListFile>(*manager, home->filePath(u"Documents"_s),
                                              home->filePath(u"state"_s));
    }

    void setDark(bool dark)
    {
        Preferences::standard().setGlobalText(u"AppleInterfaceStyle"_s,
                                              dark ? std::optional(u"Dark"_s) : std::nullopt);
    }

    QString filePath() const { return home->filePath(QStringLiteral("Documents/zandulist.txt")); }

    std::unique_ptr<QTemporaryDir> home;
    Preferences preferences{QStringLiteral("/nonexistent/preferences.ini")};
    std::unique_ptr<TaskManager> manager;
    std::unique_ptr<TaskListFile> file;
};

static const TestClass<TaskListFileTest> registered;

#include "TaskListFileTest.moc"
