#include "taskfile/TaskRowReader.h"

#include "taskfile/TaskRowWriter.h"

#include <charconv>
#include <cmath>

namespace {

/// The fields by their position in a row.
enum Field {
    Date,
    Name,
    Desc,
    Red,
    Green,
    Blue,
    Alpha,
    Due,
    Status,
    Priority,
    StatusName,
    PriorityName,
    Key,
    Hidden,
    StartHour,
    StartMin,
    EndHour,
    EndMin,
    Client,
    TeamMember
};

/// Reads the whole field as a decimal number; a plus sign before it is taken too.
template <typename Number>
bool readNumber(QStringView field, Number &number)
{
    char digits[400];
    if (field.startsWith(u'+') && !field.startsWith(u"+-"))
        field = field.sliced(1);
    if (field.isEmpty() || field.size() > qsizetype(sizeof digits))
        return false;
    for (qsizetype i = 0; i < field.size(); ++i)
        digits[i] = field[i].toLatin1();
    const auto [end, error] = std::from_chars(digits, digits + field.size(), number);
    return error == std::errc() && end == digits + field.size();
}

bool readReal(QStringView field, double &number)
{
    return readNumber(field, number) && std::isfinite(number);
}

} // namespace

TaskRowReader::TaskRowReader(char16_t separatorOfFields, char16_t separatorOfRows)
    : fieldSeparator(separatorOfFields)
    , rowSeparator(separatorOfRows)
{
}

std::optional<task> TaskRowReader::read(QStringView row, const Times &times)
{
    split(row);
    const qsizetype count = rowFields.size();
    task entry{.startHour = times.startHour,
               .startMin = times.startMin,
               .endHour = times.endHour,
               .endMin = times.endMin};
    if (count <= PriorityName || (count > StartHour && count <= EndMin))
        reason = "no known number of fields";
    else if (!readDates(entry))
        reason = "not a date";
    else if (!readReal(rowFields[Red], entry.color.red) || !readReal(rowFields[Green], entry.color.green) ||
             !readReal(rowFields[Blue], entry.color.blue) || !readReal(rowFields[Alpha], entry.color.alpha))
        reason = "not a colour component";
    else if (!readNumbers(entry))
        reason = "not an integer";
    else {
        readTexts(entry);
        return entry;
    }
    return std::nullopt;
}

QStringView TaskRowReader::keyOf(QStringView row) const
{
    qsizetype start = 0;
    for (int field = 0; field < Key; ++field) {
        start = row.indexOf(fieldSeparator, start) + 1;
        if (start == 0)
            return {};
    }
    const qsizetype end = row.indexOf(fieldSeparator, start);
    return row.sliced(start, (end < 0 ? row.size() : end) - start);
}

void TaskRowReader::split(QStringView row)
{
    rowFields.clear();
    // Somebody's editor may have put every row on a line of its own.
    while (row.startsWith(u'\n') || row.startsWith(u'\r'))
        row = row.sliced(1);
    qsizetype start = 0;
    for (qsizetype end = row.indexOf(fieldSeparator); end >= 0; end = row.indexOf(fieldSeparator, start)) {
        rowFields.append(row.sliced(start, end - start));
        start = end + 1;
    }
    rowFields.append(row.sliced(start));
}

bool TaskRowReader::readDates(task &entry)
{
    const std::optional<Instant> date = dates.fromText(rowFields[Date]);
    const std::optional<Instant> due = dates.fromText(rowFields[Due]);
    entry.date = date.value_or(Instant());
    entry.due = due.value_or(Instant());
    return date && due;
}

bool TaskRowReader::readNumbers(task &entry)
{
    if (!readNumber(rowFields[Status], entry.status) || !readNumber(rowFields[Priority], entry.priority))
        return false;
    const bool hasTimes = rowFields.size() > EndMin && !leavesFieldsOut();
    return !hasTimes ||
           (readNumber(rowFields[StartHour], entry.startHour) &&
            readNumber(rowFields[StartMin], entry.startMin) &&
            readNumber(rowFields[EndHour], entry.endHour) && readNumber(rowFields[EndMin], entry.endMin));
}

void TaskRowReader::readTexts(task &entry)
{
    entry.name = textOf(rowFields[Name]);
    entry.desc = textOf(rowFields[Desc]);
    entry.statusName = commonText(rowFields[StatusName]);
    entry.priorityName = commonText(rowFields[PriorityName]);
    if (leavesFieldsOut())
        return;
    if (rowFields.size() > Key)
        entry.key = textOf(rowFields[Key]);
    if (rowFields.size() > Hidden)
        entry.hidden = rowFields[Hidden] == u"true";
    if (rowFields.size() == fullRow) {
        entry.client = commonText(rowFields[Client]);
        entry.teamMember = commonText(rowFields[TeamMember]);
    }
}

QString TaskRowReader::textOf(QStringView field) const
{
    QString text = field.toString();
    text.replace(QChar(rowmark::fieldSeparator), QChar(fieldSeparator));
    text.replace(QChar(rowmark::rowSeparator), QChar(rowSeparator));
    return text;
}

QString TaskRowReader::commonText(QStringView field)
{
    // Beyond this many different texts they are not so common after all.
    constexpr qsizetype mostKept = 10'000;
    const auto known = commonTexts.constFind(field);
    if (known != commonTexts.cend())
        return *known;
    const QString text = textOf(field);
    if (commonTexts.size() < mostKept && text == field)
        commonTexts.insert(text, text);
    return text;
}
