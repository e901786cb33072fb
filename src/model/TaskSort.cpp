#include "model/TaskSort.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <vector>

namespace {

/// What one task is sorted by. Most comparisons are settled by the rank alone; equal ranks fall back on the
/// texts.
struct SortEntry
{
    quint64 rank;
    qsizetype index;
};

struct SortKeys
{
    std::vector<SortEntry> entries;
    std::vector<QString> texts; ///< by index; empty when the ranks say everything
    bool inUnitOrder = true;    ///< comparing the texts' UTF-16 units compares their code points
};

/// Makes surrogates compare above the rest of the basic plane, so that units compare as code points do.
constexpr quint16 codePointOrder(char16_t unit)
{
    if (unit < 0xd800)
        return unit;
    return quint16(unit >= 0xe000 ? unit - 0x800 : unit + 0x2000);
}

/// The beginning of the text as a number, with so many bits for each unit.
quint64 textRank(QStringView text, int bitsPerUnit)
{
    const qsizetype units = 64 / bitsPerUnit;
    quint64 rank = 0;
    for (qsizetype i = 0; i < units; ++i)
        rank = rank << bitsPerUnit | (i < text.size() ? codePointOrder(text[i].unicode()) : 0U);
    return rank;
}

char16_t highestUnit(QStringView text)
{
    char16_t highest = 0;
    for (const QChar unit : text)
        highest = std::max(highest, unit.unicode());
    return highest;
}

bool textLess(QStringView a, QStringView b)
{
    return std::ranges::lexicographical_compare(
        a, b, {}, [](QChar unit) { return codePointOrder(unit.unicode()); },
        [](QChar unit) { return codePointOrder(unit.unicode()); });
}

constexpr quint64 numberRank(qint64 number)
{
    return quint64(number) + (quint64{1} << 63);
}

SortKeys numberKeys(const TaskList &tasks, qint64 (*numberOf)(const task &))
{
    SortKeys keys;
    keys.entries.reserve(size_t(tasks.size()));
    for (qsizetype i = 0; i < tasks.size(); ++i)
        keys.entries.push_back({numberRank(numberOf(*tasks[i])), i});
    return keys;
}

SortKeys textKeys(const TaskList &tasks, QString (*textOf)(const task &))
{
    SortKeys keys;
    keys.texts.reserve(size_t(tasks.size()));
    char16_t highest = 0;
    for (const SharedTask &entry : tasks) {
        const QString &text =
            keys.texts.emplace_back(textOf(*entry).normalized(QString::NormalizationForm_C));
        highest = std::max(highest, highestUnit(text));
    }
    keys.inUnitOrder = highest < 0xd800;
    keys.entries.reserve(keys.texts.size());
    for (qsizetype i = 0; i < tasks.size(); ++i)
        keys.entries.push_back({textRank(keys.texts[size_t(i)], highest < 0x100 ? 8 : 16), i});
    return keys;
}

SortKeys keysOf(const TaskList &tasks, TaskColumn column)
{
    const TaskColumnInfo::SortValue &value = infoOf(column).sortValue;
    if (const auto *numberOf = std::get_if<qint64 (*)(const task &)>(&value))
        return numberKeys(tasks, *numberOf);
    return textKeys(tasks, std::get<QString (*)(const task &)>(value));
}

bool isIdentity(const std::vector<SortEntry> &entries)
{
    for (qsizetype i = 0; i < std::ssize(entries); ++i)
        if (entries[size_t(i)].index != i)
            return false;
    return true;
}

/// Sorts by the ranks alone, keeping the order of equal ones: byte by byte from the lowest, leaving out bytes
/// that all ranks share (a radix sort).
void sortByRank(std::vector<SortEntry> &entries)
{
    quint64 varying = 0;
    for (const SortEntry &entry : entries)
        varying |= entry.rank ^ entries.front().rank;
    std::vector<SortEntry> sorted(entries.size());
    for (int shift = 0; shift < 64; shift += 8) {
        if ((varying >> shift & 0xff) == 0)
            continue;
        std::array<size_t, 256> places{};
        for (const SortEntry &entry : entries)
            ++places[entry.rank >> shift & 0xff];
        std::exclusive_scan(places.begin(), places.end(), places.begin(), size_t{0});
        for (const SortEntry &entry : entries)
            sorted[places[entry.rank >> shift & 0xff]++] = entry;
        entries.swap(sorted);
    }
}

/// Puts each run of equal ranks into the order of their texts.
void sortRunsByText(SortKeys &keys, bool ascending)
{
    const auto less = [&keys](const SortEntry &a, const SortEntry &b) {
        const QString &textA = keys.texts[size_t(a.index)];
        const QString &textB = keys.texts[size_t(b.index)];
        return keys.inUnitOrder ? textA < textB : textLess(textA, textB);
    };
    for (auto run = keys.entries.begin(); run != keys.entries.end();) {
        const auto end = std::find_if(run, keys.entries.end(),
                                      [run](const auto &entry) { return entry.rank != run->rank; });
        if (ascending)
            std::stable_sort(run, end, less);
        else
            std::stable_sort(run, end, [&less](const auto &a, const auto &b) { return less(b, a); });
        run = end;
    }
}

} // namespace

void sortTasks(TaskList &tasks, TaskColumn column, bool ascending)
{
    SortKeys keys = keysOf(tasks, column);
    if (!ascending)
        for (SortEntry &entry : keys.entries)
            entry.rank = ~entry.rank;
    sortByRank(keys.entries);
    if (!keys.texts.empty())
        sortRunsByText(keys, ascending);
    if (isIdentity(keys.entries))
        return;
    TaskList unsorted = std::exchange(tasks, {});
    const bool isOwn = unsorted.isDetached();
    tasks.reserve(unsorted.size());
    for (const SortEntry &entry : keys.entries)
        if (isOwn)
            tasks.append(std::move(unsorted[entry.index]));
        else
            tasks.append(unsorted.at(entry.index));
}
