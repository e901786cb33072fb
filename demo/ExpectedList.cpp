#include "ExpectedList.h"

#include "Stage.h"
#include "support/ScratchHome.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

bool holds(const ListRow &row, const QString &text)
{
    constexpr std::array searched = {ListRow::Name, ListRow::Desc, ListRow::Client, ListRow::TeamMember};
    return std::ranges::any_of(searched, [&](ListRow::Field position) {
        return row.field(position).contains(text, Qt::CaseInsensitive);
    });
}

} // namespace

QList<ListRow> ExpectedList::readRows(const QString &filePath)
{
    const QStringList texts = QString::fromUtf8(contentOf(filePath)).split(u'^');
    require(texts.last().trimmed().isEmpty(), filePath + u": the last row does not end"_s);
    QList<ListRow> rows;
    for (const QString &text : texts.first(texts.size() - 1))
        rows.append({text.split(u'|')});
    return rows;
}

ExpectedList::ExpectedList(const QString &filePath, QDate day)
    : rows(readRows(filePath))
    , today(day.toString(u"M/d/yy"_s))
{
    for (ListRow &row : rows)
        if (row.fields.size() < ListRow::fullRow && row.fields.size() > ListRow::Client)
            row.fields.resize(ListRow::Client); // a client without a team member is not taken
}

ListRow &ExpectedList::row(const QString &name)
{
    const auto found =
        std::ranges::find(rows, name, [](const ListRow &row) { return row.field(ListRow::Name); });
    require(found != rows.end(), name + u": not in the sample"_s);
    return *found;
}

void ExpectedList::setHidden(const QString &name, bool hidden)
{
    row(name).fields[ListRow::Hidden] = hidden ? u"true"_s : u"false"_s;
}

void ExpectedList::remove(const QString &name)
{
    rows.removeIf([&name](const ListRow &row) { return row.field(ListRow::Name) == name; });
}

bool ExpectedList::isIn(TaskView view, const ListRow &row) const
{
    if (view == TaskView::DueToday)
        return row.field(ListRow::Due) == today;
    // The others come in threes, of every status, open, and closed: first those of the tasks that are not
    // hidden, then of those that are, and last of both.
    const int visibility = int(view) / 3;
    const int status = int(view) % 3;
    return (visibility == 2 || row.isHidden() == (visibility == 1)) &&
           (status == 0 || row.isOpen() == (status == 1));
}

QStringList ExpectedList::namesHolding(const QString &text, TaskView view) const
{
    QStringList names;
    for (const ListRow &row : rows)
        if (isIn(view, row) && holds(row, text))
            names.append(row.field(ListRow::Name));
    names.sort();
    return names;
}
