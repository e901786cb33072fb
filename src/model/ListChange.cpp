#include "model/ListChange.h"

#include "model/FiledFields.h"

#include <QHash>

#include <algorithm>

namespace {

using TaskOfKey = QHash<QString, const SharedTask *>;

bool isShared(const SharedTask &a, const SharedTask &b)
{
    return &*a == &*b;
}

/// Of tasks with one key, the last.
TaskOfKey byKey(const TaskList &tasks)
{
    TaskOfKey found;
    found.reserve(tasks.size());
    for (const SharedTask &entry : tasks)
        found.insert(entry->key, &entry);
    return found;
}

} // namespace

/// The tasks from the one place to the other; where that is all of them, the list is shared.
static TaskList part(const TaskList &list, qsizetype start, qsizetype end)
{
    return start == 0 && end == list.size() ? list : list.sliced(start, end - start);
}

ListChange ListChange::between(const TaskList &before, const TaskList &after, bool inverted)
{
    const auto [beforeStart, afterStart] = std::ranges::mismatch(before, after, isShared);
    qsizetype start = beforeStart - before.begin();
    qsizetype behind = 0; // so many are the same at the end
    const qsizetype most = std::min(before.size(), after.size()) - start;
    while (behind < most && isShared(before[before.size() - 1 - behind], after[after.size() - 1 - behind]))
        ++behind;
    if (2 * (start + behind) < before.size())
        start = behind = 0;
    ListChange change;
    change.isInverted = inverted;
    change.place = start;
    change.sizeBefore = before.size();
    change.sizeAfter = after.size();
    change.before = part(before, start, before.size() - behind);
    change.after = part(after, start, after.size() - behind);
    return change;
}

ListChange ListChange::reversed() const
{
    ListChange back = *this;
    std::swap(back.before, back.after);
    std::swap(back.sizeBefore, back.sizeAfter);
    return back;
}

QStringList ListChange::changedKeys() const
{
    const TaskOfKey old = byKey(before);
    QStringList keys;
    for (const SharedTask &entry : after)
        if (const SharedTask *known = old.value(entry->key); !known || !isShared(*known, entry))
            keys.append(entry->key);
    return keys;
}

bool ListChange::fits(const TaskList &list) const
{
    return list.size() == sizeBefore &&
           std::equal(before.begin(), before.end(), list.begin() + place, isShared);
}

SharedTask ListChange::held(SharedTask entry, bool inverted) const
{
    if (inverted != isInverted)
        entry.edit().color = entry->color.inverted();
    return entry;
}

TaskList ListChange::applyTo(TaskList &list, bool inverted, bool isReadAnew) const
{
    const bool isAboutAll = before.size() == list.size();
    if ((!isReadAnew || isAboutAll) && fits(list)) {
        replacePart(list, inverted);
        return {};
    }
    const TaskList changedElsewhere = removeAndReplace(list, inverted, isReadAnew);
    reorder(list);
    insert(list, inverted);
    return changedElsewhere;
}

void ListChange::replacePart(TaskList &list, bool inverted) const
{
    TaskList changed = list.first(place);
    changed.reserve(sizeAfter);
    for (const SharedTask &entry : after)
        changed.append(held(entry, inverted));
    changed.append(list.sliced(place + before.size()));
    list = std::move(changed);
}

/// Returns those that are neither what they were nor what they are to be.
TaskList ListChange::removeAndReplace(TaskList &list, bool inverted, bool isReadAnew) const
{
    const auto isAs = [&](const SharedTask &entry, const SharedTask *known) {
        return known && (isShared(entry, *known) || areFiledAlike(*entry, *held(*known, inverted)));
    };
    TaskList changedElsewhere;
    TaskOfKey old = byKey(before);
    const TaskOfKey wanted = byKey(after);
    TaskList kept;
    kept.reserve(list.size());
    std::for_each(list.crbegin(), list.crend(), [&](const SharedTask &entry) {
        const SharedTask *const known = old.take(entry->key); // the last of equal keys only
        const SharedTask *const replacement = wanted.value(entry->key);
        if (!known || (replacement && isShared(*known, *replacement)))
            kept.append(entry);
        else if (isReadAnew && !isAs(entry, known) && !isAs(entry, replacement))
            changedElsewhere.append(kept.emplace_back(entry));
        else if (replacement)
            kept.append(held(*replacement, inverted));
    });
    std::ranges::reverse(kept);
    list = std::move(kept);
    return changedElsewhere;
}

/// Exchanges the tasks that stand in both parts among their places, unless the change has left their order.
void ListChange::reorder(TaskList &list) const
{
    const auto commonKeys = [](const TaskList &tasks, const TaskOfKey &others) {
        QStringList keys;
        for (const SharedTask &entry : tasks)
            if (others.contains(entry->key))
                keys.append(entry->key);
        return keys;
    };
    const TaskOfKey old = byKey(before);
    const QStringList wanted = commonKeys(after, old);
    if (wanted == commonKeys(before, byKey(after)))
        return;
    QHash<QString, TaskList> standing;
    QList<qsizetype> places;
    for (qsizetype index = 0; index < list.size(); ++index)
        if (const QString &key = list.at(index)->key; old.contains(key)) {
            standing[key].append(list.at(index));
            places.append(index);
        }
    TaskList ordered;
    for (const QString &key : wanted)
        if (TaskList &tasks = standing[key]; !tasks.isEmpty())
            ordered.append(tasks.takeFirst());
    for (const qsizetype index : places) // those that have got a second one meanwhile
        if (TaskList &tasks = standing[list.at(index)->key]; !tasks.isEmpty())
            ordered.append(tasks.takeFirst());
    for (qsizetype index = 0; index < places.size(); ++index)
        list[places[index]] = ordered[index];
}

/// Puts each task that only the second part has, and the list has not, behind the one that it follows there.
void ListChange::insert(TaskList &list, bool inverted) const
{
    const TaskOfKey old = byKey(before);
    const TaskOfKey present = byKey(list);
    QHash<QString, TaskList> followers;
    TaskList first;
    TaskList *group = &first;
    for (const SharedTask &entry : after)
        if (old.contains(entry->key))
            group = &followers[entry->key];
        else if (!present.contains(entry->key))
            group->append(held(entry, inverted));
    TaskList result;
    result.reserve(list.size() + after.size());
    for (qsizetype index = 0; index < list.size(); ++index) {
        if (index == place)
            result.append(std::exchange(first, {}));
        result.append(list.at(index));
        result.append(followers.take(list.at(index)->key));
    }
    result.append(first);
    for (const SharedTask &entry : after) // whatever they followed has gone
        result.append(followers.take(entry->key));
    list = std::move(result);
}
