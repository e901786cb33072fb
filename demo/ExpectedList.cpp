#include "ExpectedList.h"

#include "TourFailure.h"

#include <QFile>

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
    QFile file(filePath);
    const bool found = file.open(QIODevice::ReadOnly);
    require(found, filePath + u": "_s + file.errorString());
    const QStringList texts = QString::fromUtf8(file.readAll()).split(u'^');
    require(texts.last().trimmed().isEmpty(), filePath + u": the last row does not end"_s);
    QList<ListRow> rows;
    for (const QString &text : texts.first(texts.size() - 1))
        rows.append({text.split(u'|')});
    return rows;
}

ExpectedList::ExpectedList(const QString &filePath, QDate day)
    : listRows(readRows(filePath))
    , today(day.toString(u"M/d/yy"_s))
{
    for (ListRow &row : listRows)
        if (row.fields.size() < ListRow::fullRow && row.fields.size() > ListRow::Client)
            row.fields.resize(ListRow::Client); // a client without a team member is not taken
}

const ListRow &ExpectedList::row(const QString &name) const
{
    const auto found =
        std::ranges::find(listRows, name, [](const ListRow &row) { return row.field(ListRow::Name); });
    require(found != listRows.cend(), name + u": not in the sample"_s);
    return *found;
}

ListRow &ExpectedList::find(const QString &name)
{
    return listRows[&row(name) - listRows.constData()];
}

bool ExpectedList::isIn(TaskView view, const ListRow &row) const
{
    switch (view) {
    case TaskView::All:
        return !row.isHidden();
    case TaskView::Open:
        return !row.isHidden() && row.isOpen();
    case TaskView::Closed:
        return !row.isHidden() && !row.isOpen();
    case TaskView::Hidden:
        return row.isHidden();
    case TaskView::HiddenOpen:
        return row.isHidden() && row.isOpen();
    case TaskView::HiddenClosed:
        return row.isHidden() && !row.isOpen();
    case TaskView::GlobalAll:
        return true;
    case TaskView::GlobalOpen:
        return row.isOpen();
    case TaskView::GlobalClosed:
        return !row.isOpen();
    case TaskView::DueToday:
        return row.field(ListRow::Due) == today;
    }
    return false;
}

QStringList ExpectedList::namesIn(TaskView view) const
{
    return namesHolding(QString(), view);
}

QStringList ExpectedList::namesHolding(const QString &text, TaskView view) const
{
    QStringList names;
    for (const ListRow &row : listRows)
        if (isIn(view, row) && holds(row, text))
            names.append(row.field(ListRow::Name));
    names.sort();
    return names;
}

void ExpectedList::setHidden(const QString &name, bool hidden)
{
    find(name).fields[ListRow::Hidden] = hidden ? u"true"_s : u"false"_s;
}

void ExpectedList::close(const QString &name)
{
    ListRow &row = find(name);
    row.fields[ListRow::Status] = u"1"_s;
    row.fields[ListRow::StatusName] = u"Closed"_s;
}

void ExpectedList::clone(const QString &name, const QString &newKey)
{
    ListRow copy = row(name);
    copy.fields[ListRow::Key] = newKey;
    listRows.append(copy);
}

void ExpectedList::change(const QString &name, ListRow::Field position, const QString &text)
{
    find(name).fields[position] = text;
}

void ExpectedList::remove(const QString &name)
{
    listRows.removeAt(&row(name) - listRows.constData());
}
