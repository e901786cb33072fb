#include "model/TaskColumn.h"

#include "app/UIUtil.h"
#include "model/task.h"
#include "platform/Diagnostics.h"

#include <algorithm>
#include <array>
#include <charconv>

using namespace Qt::StringLiterals;

namespace {

template <auto Field>
QString text(const task &entry)
{
    return entry.*Field;
}

template <auto Field>
qint64 number(const task &entry)
{
    return entry.*Field;
}

template <auto Field>
qint64 moment(const task &entry)
{
    return (entry.*Field).time_since_epoch().count();
}

template <auto Field>
QString day(const task &entry)
{
    return shortDate(Calendar::localTime(entry.*Field).date());
}

QString startTime(const task &entry)
{
    const QString text = clockTime(entry.startHour, entry.startMin);
    diagnostics::line("Start Time", text);
    return text;
}

QString endTime(const task &entry)
{
    const QString text = clockTime(entry.endHour, entry.endMin);
    diagnostics::line("End Time", text);
    return text;
}

/// The time of day as an unpadded text, so that 10:0 is sorted before 8:30.
template <auto Hour, auto Minute>
QString unpadded(const task &entry)
{
    constexpr int longest = 20; // characters of a number of 64 bits
    std::array<char, 2 * longest + 1> text;
    char *end = std::to_chars(text.begin(), text.begin() + longest, entry.*Hour).ptr;
    *end++ = ':';
    end = std::to_chars(end, end + longest, entry.*Minute).ptr;
    return QString::fromLatin1(text.data(), end - text.data());
}

QString firstLine(const task &entry)
{
    return util().truncateAtLineBreak(entry.desc);
}

} // namespace

const QList<TaskColumnInfo> &taskColumns()
{
    using enum TaskColumn;
    static const QList<TaskColumnInfo> columns = {
        {Date, u"DateCellID"_s, u"Start Date"_s, 90, day<&task::date>, moment<&task::date>},
        {StartTime, u"StartTimeID"_s, u"Start"_s, 52, startTime, unpadded<&task::startHour, &task::startMin>},
        {EndTime, u"EndTimeID"_s, u"End"_s, 52, endTime, unpadded<&task::endHour, &task::endMin>},
        {Name, u"NameCellID"_s, u"Task"_s, 190, text<&task::name>, text<&task::name>},
        {Client, u"ClientCellID"_s, u"Client"_s, 115, text<&task::client>, text<&task::client>},
        {TeamMember, u"TeamMemberCellID"_s, u"Team Member"_s, 105, text<&task::teamMember>,
         text<&task::teamMember>},
        {Description, u"DescCellID"_s, u"Description"_s, 190, firstLine, text<&task::desc>},
        {Status, u"StatusCellID"_s, u"Status"_s, 64, text<&task::statusName>, number<&task::status>},
        {Priority, u"PriorityCellID"_s, u"Priority"_s, 64, text<&task::priorityName>,
         number<&task::priority>},
        {Due, u"DueCellID"_s, u"Due Date"_s, 108, day<&task::due>, moment<&task::due>},
        {Key, u"KeyCellID"_s, u"Key"_s, 228, text<&task::key>, text<&task::key>},
    };
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
