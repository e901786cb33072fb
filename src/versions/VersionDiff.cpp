#include "versions/VersionDiff.h"

#include "taskfile/RowDates.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr char fieldEnd = '|';
constexpr char rowEnd = '^';
constexpr qsizetype nameField = 1;
constexpr qsizetype keyField = 12;

constexpr quint32 bits(auto... positions)
{
    return ((1U << positions) | ...);
}
constexpr quint32 colorFields = bits(3, 4, 5, 6);
constexpr quint32 dateFields = bits(0, 7);

struct FieldTitle
{
    quint32 fields;
    std::optional<TaskColumn> column;
    QString title = {}; ///< where it has no column
};

const QList<FieldTitle> &fieldTitles()
{
    using enum TaskColumn;
    static const QList<FieldTitle> titles = {
        {bits(0), Date},
        {bits(14, 15), StartTime},
        {bits(16, 17), EndTime},
        {bits(1), Name},
        {bits(18), Client},
        {bits(19), TeamMember},
        {bits(2), Description},
        {bits(8, 10), Status},
        {bits(9, 11), Priority},
        {bits(7), Due},
        {colorFields, std::nullopt, u"Color"_s},
        {bits(13), std::nullopt, u"Hidden"_s},
    };
    return titles;
}

/// Takes the next field off the row; nothing at the row's end.
std::optional<QByteArrayView> takeField(std::optional<QByteArrayView> &row)
{
    if (!row)
        return std::nullopt;
    const qsizetype end = row->indexOf(fieldEnd);
    const QByteArrayView field = end < 0 ? *row : row->first(end);
    row = end < 0 ? std::nullopt : std::optional(row->sliced(end + 1));
    return field;
}

QByteArrayView fieldOf(QByteArrayView whole, qsizetype position)
{
    std::optional row(whole);
    while (position-- > 0)
        takeField(row);
    return takeField(row).value_or(QByteArrayView());
}

/// Tells which fields of a row are others than in an earlier row.
class FieldComparison
{
public:
    /// Rows of different versions have the fields in common that the shorter one has.
    quint32 changedFields(QByteArrayView rowBefore, QByteArrayView rowAfter)
    {
        quint32 changed = 0;
        std::optional before(rowBefore);
        std::optional after(rowAfter);
        for (quint32 bit = 1; before && after && bit != 0; bit <<= 1) {
            const QByteArrayView a = *takeField(before);
            const QByteArrayView b = *takeField(after);
            if (a != b && bit != bits(keyField) && !isSame(bit, a, b))
                changed |= bit;
        }
        return changed;
    }

private:
    /// Whether different texts are the same to the reader.
    bool isSame(quint32 bit, QByteArrayView a, QByteArrayView b)
    {
        constexpr double rounding = 1e-9; // by inverting a colour twice, as dark appearance does
        if (bit & colorFields)
            return std::abs(a.toByteArray().toDouble() - b.toByteArray().toDouble()) < rounding;
        if (bit & dateFields)
            return dates.fromText(QString::fromUtf8(a)) == dates.fromText(QString::fromUtf8(b));
        return false;
    }

    RowDates dates;
};

/// Finds the row of the earlier list that goes with each row of the later one: the first with the same key or
/// the first without a key, as early versions of the program have written, with the same name.
class Pairing
{
public:
    Pairing(const ListRows &before, qsizetype begin, qsizetype end)
        : firstRow(begin)
        , nextOfSame(end - begin)
    {
        byKey.reserve(end - begin);
        for (qsizetype row = end; row-- > begin;) {
            const QByteArrayView key = fieldOf(before[row], keyField);
            qsizetype &first = key.isEmpty() ? byName[fieldOf(before[row], nameField)] : byKey[key];
            nextOfSame[row - begin] = std::exchange(first, row + 1);
        }
    }

    /// The earlier row, which is not taken again; −1 for none.
    qsizetype take(QByteArrayView later)
    {
        const qsizetype row = takeFrom(byKey, fieldOf(later, keyField));
        return row >= 0 || byName.isEmpty() ? row : takeFrom(byName, fieldOf(later, nameField));
    }

private:
    using FirstRows = QHash<QByteArrayView, qsizetype>; // counted from 1; 0 stands for none

    qsizetype takeFrom(FirstRows &rows, QByteArrayView text)
    {
        const auto first = rows.find(text);
        if (first == rows.end() || *first == 0)
            return -1;
        const qsizetype row = *first - 1;
        *first = nextOfSame[row - firstRow];
        return row;
    }

    qsizetype firstRow;
    FirstRows byKey;
    FirstRows byName;
    QList<qsizetype> nextOfSame;
};

/// How many have to be taken out so that the others ascend.
qsizetype outOfOrder(const QList<qsizetype> &numbers)
{
    QList<qsizetype> ends; // by length, the least number with which an ascending sequence ends
    for (const qsizetype number : numbers) {
        const auto place = std::ranges::lower_bound(ends, number);
        if (place == ends.end())
            ends.append(number);
        else
            *place = number;
    }
    return numbers.size() - ends.size();
}

} // namespace

ListRows::ListRows(const QByteArray &whole)
    : text(whole)
{
    QByteArrayView rest(text);
    for (qsizetype end; (end = rest.indexOf(rowEnd)) >= 0; rest = rest.sliced(end + 1)) {
        QByteArrayView row = rest.first(end);
        while (row.startsWith('\n') || row.startsWith('\r')) // an editor has put rows on lines
            row = row.sliced(1);
        rows.append(row);
    }
}

QString ListRows::nameOf(qsizetype index) const
{
    return QString::fromUtf8(fieldOf(rows[index], nameField)).simplified();
}

VersionDiff VersionDiff::between(const ListRows &before, const ListRows &after)
{
    using enum TaskChange::Kind;
    const qsizetype shorter = std::min(before.size(), after.size());
    qsizetype begin = 0;
    while (begin < shorter && before[begin] == after[begin])
        ++begin;
    qsizetype same = 0; // rows at the end
    while (same < shorter - begin && before[before.size() - 1 - same] == after[after.size() - 1 - same])
        ++same;

    VersionDiff diff;
    FieldComparison comparison;
    Pairing pairing(before, begin, before.size() - same);
    QList<qsizetype> pairs;
    std::vector<bool> isPaired(size_t(before.size()));
    for (qsizetype row = begin; row < after.size() - same; ++row) {
        const qsizetype former = pairing.take(after[row]);
        if (former < 0) {
            diff.changes.append({Added, -1, row});
            continue;
        }
        pairs.append(former);
        isPaired[size_t(former)] = true;
        if (before[former] == after[row])
            continue;
        if (const quint32 fields = comparison.changedFields(before[former], after[row]))
            diff.changes.append({Changed, former, row, fields});
    }
    for (qsizetype row = begin; row < before.size() - same; ++row)
        if (!isPaired[size_t(row)])
            diff.changes.append({Removed, row, -1});
    diff.moved = outOfOrder(pairs);
    return diff;
}

qsizetype VersionDiff::count(TaskChange::Kind kind) const
{
    return std::ranges::count(changes, kind, &TaskChange::kind);
}

QStringList taskFields::titlesOf(quint32 fields)
{
    QStringList titles;
    for (const FieldTitle &entry : fieldTitles())
        if (entry.fields & fields)
            titles.append(entry.column ? infoOf(*entry.column).title : entry.title);
    return titles;
}

bool taskFields::areIn(TaskColumn column, quint32 fields)
{
    return std::ranges::any_of(fieldTitles(), [&](const FieldTitle &entry) {
        return entry.column == column && (entry.fields & fields);
    });
}
