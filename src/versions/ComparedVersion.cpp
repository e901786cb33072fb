#include "versions/ComparedVersion.h"

#include "model/Appearance.h"
#include "taskfile/TaskRowReader.h"
#include "taskfile/TaskRowWriter.h"

#include <QHash>
#include <QSet>

namespace {

constexpr char16_t fieldSeparator = u'|';
constexpr char16_t rowSeparator = u'^';

QByteArray textOf(const TaskList &tasks, bool isDark)
{
    TaskRowWriter writer(fieldSeparator, rowSeparator);
    QByteArray text;
    for (const SharedTask &entry : tasks)
        writer.append(text, *entry, storedOrHeld(entry->color, isDark));
    return text;
}

/// The places of those of the tasks that are not left out, by their keys and by their names.
class Places
{
public:
    Places(const TaskList &tasks, const QSet<qsizetype> &leftOut)
    {
        for (qsizetype place = 0; place < tasks.size(); ++place)
            if (!leftOut.contains(place)) {
                ofKey[tasks[place]->key].append(place);
                ofName[tasks[place]->name].append(place);
            }
    }
    /// The next one of this task, which has no key where early versions of the program have written it; −1
    /// for none.
    qsizetype take(const task &entry)
    {
        QList<qsizetype> &places = entry.key.isEmpty() ? ofName[entry.name] : ofKey[entry.key];
        return places.isEmpty() ? -1 : places.takeFirst();
    }

private:
    QHash<QString, QList<qsizetype>> ofKey;
    QHash<QString, QList<qsizetype>> ofName;
};

/// The same task in the other one of the two forms.
SharedTask exchanged(SharedTask entry, bool isDark)
{
    if (isDark)
        entry.edit().color = entry->color.inverted();
    return entry;
}

} // namespace

ComparedVersion::ComparedVersion(const QByteArray &text, const TaskList &todaysTasks, bool isDark)
    : today(todaysTasks)
{
    constexpr TaskRowReader::Times workingDay{.startHour = 8, .startMin = 0, .endHour = 17, .endMin = 0};
    const ListRows rows(text);
    diff = VersionDiff::between(rows, ListRows(textOf(today, isDark)));
    QHash<qsizetype, const TaskChange *> changes; // by the version's row
    QSet<qsizetype> changedPlaces;
    for (const TaskChange &change : std::as_const(diff.changes)) {
        changedPlaces.insert(change.after);
        if (change.before >= 0)
            changes.insert(change.before, &change);
    }
    Places unchanged(today, changedPlaces);
    TaskRowReader reader(fieldSeparator, rowSeparator);
    allRows.reserve(rows.size());
    for (qsizetype index = 0; index < rows.size(); ++index) {
        std::optional<task> entry = reader.read(rows.textOf(index), workingDay);
        if (!entry) {
            ++skipped;
            continue;
        }
        allRows.append({.entry = std::move(*entry)});
        if (const TaskChange *change = changes.value(index)) {
            allRows.last().sinceThen = change->kind;
            allRows.last().fields = change->fields;
            allRows.last().today = change->after;
        } else {
            allRows.last().today = unchanged.take(*allRows.last().entry);
        }
    }
    for (const TaskChange &change : std::as_const(diff.changes))
        if (change.kind == TaskChange::Kind::Added)
            allRows.append({.entry = exchanged(today[change.after], isDark),
                            .sinceThen = change.kind,
                            .today = change.after});
}

SharedTask ComparedVersion::broughtBack(const Row &row, bool isDark) const
{
    SharedTask entry = exchanged(row.entry, isDark);
    if (entry->key.isEmpty()) // as early versions of the program have written it
        entry.edit().key = row.today < 0 ? newKey() : today[row.today]->key;
    return entry;
}

TaskList ComparedVersion::withTasks(const QList<Row> &chosen, bool isDark) const
{
    TaskList list = today;
    for (const Row &row : chosen)
        if (row.isDifferent() && row.today < 0)
            list.append(broughtBack(row, isDark));
        else if (row.isDifferent())
            list[row.today] = broughtBack(row, isDark);
    return list;
}

TaskList ComparedVersion::wholeList(bool isDark) const
{
    TaskList list;
    for (const Row &row : allRows)
        if (!row.sinceThen && row.today >= 0)
            list.append(today[row.today]); // the very same, which no step has changed
        else if (row.wasThere())
            list.append(broughtBack(row, isDark));
    return list;
}
