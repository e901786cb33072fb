#include "model/TaskColumn.h"

#include "platform/Diagnostics.h"

#include <algorithm>

using namespace Qt::StringLiterals;

const std::array<TaskColumnInfo, 11> &taskColumns()
{
    static const std::array<TaskColumnInfo, 11> columns = {{
        {TaskColumn::Date, u"DateCellID"_s, u"Start Date"_s},
        {TaskColumn::StartTime, u"StartTimeID"_s, u"Start"_s},
        {TaskColumn::EndTime, u"EndTimeID"_s, u"End"_s},
        {TaskColumn::Name, u"NameCellID"_s, u"Task"_s},
        {TaskColumn::Client, u"ClientCellID"_s, u"Client"_s},
        {TaskColumn::TeamMember, u"TeamMemberCellID"_s, u"Team Member"_s},
        {TaskColumn::Description, u"DescCellID"_s, u"Description"_s},
        {TaskColumn::Status, u"StatusCellID"_s, u"Status"_s},
        {TaskColumn::Priority, u"PriorityCellID"_s, u"Priority"_s},
        {TaskColumn::Due, u"DueCellID"_s, u"Due Date"_s},
        {TaskColumn::Key, u"KeyCellID"_s, u"Key"_s},
    }};
    return columns;
}

std::optional<TaskColumn> columnOfSortKey(const QString &sortKey)
{
    const auto &columns = taskColumns();
    const auto found = std::ranges::find(columns, sortKey, &TaskColumnInfo::sortKey);
    return found == columns.end() ? std::nullopt : std::optional(found->column);
}

void appendItem(QByteArray &line, const SortDescriptor &descriptor)
{
    diagnostics::appendItem(line, descriptor.key);
    line += descriptor.ascending ? " ascending" : " descending";
}
