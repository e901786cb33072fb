#include "taskfile/TaskListFile.h"

#include "model/Appearance.h"
#include "model/TaskManager.h"
#include "platform/Diagnostics.h"
#include "taskfile/RowKeys.h"
#include "taskfile/TaskRowReader.h"
#include "taskfile/TaskRowWriter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTimeZone>

using namespace Qt::StringLiterals;

TaskListFile::TaskListFile(TaskManager &taskManager, const QString &documentsFolder,
                           const QString &stateFolder, TaskListHistory listHistory)
    : manager(taskManager)
    , trace(stateFolder + u"/last-list"_s)
    , history(std::move(listHistory))
{
    if (!documentsFolder.isEmpty())
        file.emplace(pathIn(documentsFolder), stateFolder);
}

QString TaskListFile::pathIn(const QString &documentsFolder)
{
    return documentsFolder + u"/zandulist.txt"_s;
}

QByteArray TaskListFile::text()
{
    constexpr qsizetype usualRow = 240;
    const TaskList &tasks = manager.workingList();
    TaskRowWriter writer(separatorFieldsFile, separatorRowsFile);
    QByteArray rows;
    rows.reserve(tasks.size() * usualRow);
    QList<qsizetype> ends;
    ends.reserve(tasks.size());
    rowTexts.useOnlyFor(QTimeZone::systemTimeZoneId() + (invertedColors ? " inverted" : ""));
    for (const SharedTask &entry : tasks) {
        color = storedOrHeld(entry->color, invertedColors);
        if (invertedColors)
            diagnostics::line("Inverted -> Switch to original");
        if (const QByteArrayView known = rowTexts.find(entry); !known.isEmpty())
            rows += known;
        else
            writer.append(rows, *entry, color);
        ends.append(rows.size());
    }
    rowTexts.keep(tasks, rows, std::move(ends));
    return rows;
}

bool TaskListFile::writeFile()
{
    const QByteArray rows = text();
    if (file) {
        lastWriteFailed = !readProblem().isEmpty() || !file->write(rows, history.makeRoom);
        if (lastWriteFailed) {
            diagnostics::line("Error");
            return false;
        }
        diagnostics::line("Write File", rows);
        filedChanges = manager.changeCount();
        leaveTrace();
        history.keep(rows);
    }
    invertedColors = isDarkMode();
    return true;
}

QString TaskListFile::readFile()
{
    const std::optional<QString> text = read();
    wasGone = file && !text && QFile::symLinkTarget(trace) == path() && !QFileInfo::exists(path());
    return text.value_or(QString());
}

/// Later starts know by it that a file that is missing has been there.
void TaskListFile::leaveTrace() const
{
    if (QFile::symLinkTarget(trace) == path())
        return;
    QDir().mkpath(QFileInfo(trace).path());
    QFile::remove(trace);
    QFile::link(path(), trace);
}

std::optional<QString> TaskListFile::read()
{
    if (!file)
        return std::nullopt;
    const std::optional<QString> text = file->read();
    if (text) {
        diagnostics::line("Read File", *text);
        leaveTrace();
    } else
        diagnostics::line("Error");
    return text;
}

void TaskListFile::parseFile(const QString &text)
{
    const QChar rowEnd(separatorRowsFile);
    const bool isDark = isDarkMode();
    const qsizetype rows = text.count(rowEnd);
    diagnostics::line("No of Rows:", rows + 1);
    skipped = 0;
    TaskRowReader reader(separatorFieldsFile, separatorRowsFile);
    const QStringView whole(text);
    RowKeys keys(run, whole, separatorRowsFile);
    qsizetype start = 0;
    for (qsizetype number = 1; number <= rows; ++number) {
        const qsizetype end = whole.indexOf(rowEnd, start);
        parseRow(number, whole.sliced(start, end - start), reader, keys, isDark);
        start = end + 1;
    }
    if (file && !whole.sliced(start).trimmed().isEmpty())
        file->keepCopy(); // what follows the last row end is part of a row
    if (file && !text.isEmpty())
        history.keep(text.toUtf8());
    manager.setListAside();
    manager.setColorsInverted(isDark);
    invertedColors = isDark;
    filedChanges = manager.changeCount();
}

void TaskListFile::parseRow(qsizetype number, QStringView row, TaskRowReader &reader, RowKeys &keys,
                            bool isDark)
{
    std::optional<task> entry = reader.read(row, {.startHour = manager.defaultStartHour,
                                                  .startMin = manager.defaultStartMin,
                                                  .endHour = manager.defaultEndHour,
                                                  .endMin = manager.defaultEndMin});
    if (file && (!entry || reader.leavesFieldsOut()))
        file->keepCopy();
    if (!entry) {
        ++skipped;
        diagnostics::line("Row skipped:", number, reader.problem(), row);
        return;
    }
    if (isDark)
        diagnostics::line("In dark mode -> Invert");
    diagnostics::line("No of Fields:", reader.fields().size());
    entry->color = storedOrHeld(entry->color, isDark);
    if (entry->key.isEmpty())
        entry->key = keys.keyFor(row, reader);
    manager.addTask(*entry);
    if (reader.fields().size() == TaskRowReader::fullRow)
        diagnostics::line("20 fields");
    diagnostics::line("Row:", row);
    diagnostics::line("Fields:", reader.fields());
}

void TaskListFile::followAppearance()
{
    const bool mayBeElsewhere = lastWriteFailed || wasGone; // some of what the list holds
    const std::optional<QString> text = mayBeElsewhere ? std::nullopt : read();
    if (text && takeOver(*text))
        return;
    if (const bool isDark = isDarkMode(); isDark != invertedColors) {
        manager.invertColors();
        invertedColors = isDark;
    }
}

bool TaskListFile::followFile()
{
    if (!file)
        return false;
    if (!readProblem().isEmpty())
        return putTogether();
    if (lastWriteFailed || !file->isChangedByOthers())
        return false; // when the list is written, the other content is copied aside
    if (wasGone)
        return putTogether(); // with what was begun in its absence, wherever that has been written to
    const std::optional<QString> text = read();
    return text && takeOver(*text);
}

/// Makes the list what the file holds, unless whoever writes it is not done: what is there then is copied
/// before it is overwritten.
bool TaskListFile::takeOver(const QString &text)
{
    const qsizetype lastRowEnd = text.lastIndexOf(QChar(separatorRowsFile));
    const bool isEmptied = text.isEmpty() && !manager.workingList().isEmpty();
    if (!isEmptied && QStringView(text).sliced(lastRowEnd + 1).trimmed().isEmpty()) {
        manager.load([&] { parseFile(text); });
        filedChanges = manager.changeCount();
        return true;
    }
    if (!isEmptied)
        file->keepCopy();
    return false;
}

bool TaskListFile::putTogether()
{
    const std::optional<QString> text = read();
    if (!readProblem().isEmpty())
        return false;
    const bool isElsewhere =
        std::exchange(wasGone, false); // what the list holds may be in no file that is seen
    if (text && manager.changeCount() == filedChanges && !isElsewhere)
        return takeOver(*text);
    const TaskList added = manager.workingList();
    if (text)
        manager.load([&] {
            parseFile(*text);
            if (addAgain(added))
                file->keepCopy(); // the file's version of those tasks
        });
    writeFile();
    return true;
}

/// Puts what has been done to the list while its file could not be read into the list from the file; true
/// when tasks of the file were replaced.
bool TaskListFile::addAgain(const TaskList &tasks)
{
    QHash<QString, qint64> places;
    for (qint64 place = 0; place < manager.tasks().size(); ++place)
        places.insert(manager.tasks()[place]->key, place);
    bool isReplaced = false;
    for (const SharedTask &entry : tasks) {
        const auto place = places.constFind(entry->key);
        if (place == places.cend()) {
            manager.addTask(*entry);
            continue;
        }
        isReplaced = true;
        manager.select(*place);
        manager.editSelectedTask(*entry);
        if (entry->hidden)
            manager.hideSelectedTask();
        else
            manager.unhideSelectedTask();
    }
    manager.setListAside();
    return isReplaced;
}
