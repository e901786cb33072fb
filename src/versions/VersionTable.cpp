#include "versions/VersionTable.h"

#include "model/Appearance.h"
#include "model/TaskCell.h"
#include "model/TaskSearch.h"

#include <QFont>

using namespace Qt::StringLiterals;

using enum TaskChange::Kind;

void VersionTable::show(const ComparedVersion &version)
{
    beginResetModel();
    shown = version;
    chooseRows();
    endResetModel();
}

void VersionTable::setComparing(bool isWanted)
{
    beginResetModel();
    isComparing = isWanted;
    chooseRows();
    endResetModel();
}

void VersionTable::setFilter(const QString &text)
{
    beginResetModel();
    filter = text;
    chooseRows();
    endResetModel();
}

void VersionTable::chooseRows()
{
    visible.clear();
    TaskSearch search(filter);
    for (qsizetype place = 0; place < shown.rows().size(); ++place) {
        const ComparedVersion::Row &row = shown.rows()[place];
        if ((isComparing || row.wasThere()) && (filter.isEmpty() || search.matches(*row.entry)))
            visible.append(place);
    }
}

int VersionTable::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(visible.size());
}

int VersionTable::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(taskColumns().size()) + 1;
}

QVariant VersionTable::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const ComparedVersion::Row &row = rowAt(index.row());
    const bool isText = role == Qt::DisplayRole || role == Qt::ToolTipRole;
    if (index.column() == sinceThenColumn && isText)
        return sinceThen(row);
    const auto column = TaskColumn(std::max(index.column() - 1, 0));
    const bool isOther = isComparing && row.sinceThen == Changed && taskFields::areIn(column, row.fields);
    if (role == Qt::FontRole && isComparing && (isOther || row.sinceThen == Added)) {
        QFont font;
        font.setBold(isOther);
        font.setItalic(!isOther);
        return font;
    }
    if (role == Qt::ToolTipRole && isOther)
        return u"Today: %1"_s.arg(infoOf(column).cellText(*shown.todaysList()[row.today]));
    return taskCell(*row.entry, column, storedOrHeld(row.entry->color, isDarkMode()), role);
}

QString VersionTable::sinceThen(const ComparedVersion::Row &row) const
{
    if (!row.sinceThen)
        return {};
    switch (*row.sinceThen) {
    case Added:
        return u"+ added"_s;
    case Removed:
        return u"− removed"_s;
    case Changed:
        return u"~ changed: "_s + taskFields::titlesOf(row.fields).join(u", "_s);
    }
    return {};
}

QVariant VersionTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= columnCount())
        return {};
    return section == sinceThenColumn ? u"Since Then"_s : taskColumns()[section - 1].title;
}
