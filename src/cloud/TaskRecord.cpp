#include "cloud/TaskRecord.h"

#include "model/Appearance.h"
#include "platform/Diagnostics.h"

using namespace Qt::StringLiterals;

namespace {

namespace field {
const QString key = u"key"_s;
const QString date = u"date"_s;
const QString name = u"name"_s;
const QString desc = u"desc"_s;
const QString due = u"due"_s;
const QString status = u"status"_s;
const QString statusName = u"statusName"_s;
const QString priority = u"priority"_s;
const QString priorityName = u"priorityName"_s;
const QString hidden = u"hidden"_s;
const QString startHour = u"startHour"_s;
const QString startMin = u"startMin"_s;
const QString endHour = u"endHour"_s;
const QString endMin = u"endMin"_s;
const QString client = u"client"_s;
const QString teamMember = u"teamMember"_s;
const QString colorRed = u"colorRed"_s;
const QString colorGreen = u"colorGreen"_s;
const QString colorBlue = u"colorBlue"_s;
const QString colorAlpha = u"colorAlpha"_s;
} // namespace field

/// Reads a record's fields, and says which of them could not be had.
class FieldReader
{
public:
    explicit FieldReader(const CloudRecord &source)
        : record(source)
    {
    }

    template <typename Value>
    void read(const QString &name, Value &value) const
    {
        const std::optional<CloudValue> found = record.value(name);
        if (const auto *fitting = found ? std::get_if<Value>(&*found) : nullptr)
            value = *fitting;
        else
            diagnostics::line("CloudKit record without a usable field:", record.recordID().recordName, name);
    }

private:
    const CloudRecord &record;
};

} // namespace

const CloudRecordType &taskRecordType()
{
    using enum CloudRecordType::Value;
    static const CloudRecordType type{
        u"Task"_s, {{field::key, Text},        {field::date, Moment},       {field::name, Text},
                    {field::desc, Text},       {field::due, Moment},        {field::status, Integer},
                    {field::statusName, Text}, {field::priority, Integer},  {field::priorityName, Text},
                    {field::hidden, Integer},  {field::startHour, Integer}, {field::startMin, Integer},
                    {field::endHour, Integer}, {field::endMin, Integer},    {field::client, Text},
                    {field::teamMember, Text}, {field::colorRed, Real},     {field::colorGreen, Real},
                    {field::colorBlue, Real},  {field::colorAlpha, Real}}};
    return type;
}

CloudRecord newTaskRecord()
{
    return {taskRecordType().name, {newKey()}};
}

void fillRecord(CloudRecord &record, const task &entry, bool withKey)
{
    if (withKey)
        record.setValue(field::key, entry.key);
    record.setValue(field::date, entry.date);
    record.setValue(field::name, entry.name);
    record.setValue(field::desc, entry.desc);
    record.setValue(field::due, entry.due);
    record.setValue(field::status, entry.status);
    record.setValue(field::statusName, entry.statusName);
    record.setValue(field::priority, entry.priority);
    record.setValue(field::priorityName, entry.priorityName);
    record.setValue(field::hidden, qint64{entry.hidden});
    record.setValue(field::startHour, entry.startHour);
    record.setValue(field::startMin, entry.startMin);
    record.setValue(field::endHour, entry.endHour);
    record.setValue(field::endMin, entry.endMin);
    record.setValue(field::client, entry.client);
    record.setValue(field::teamMember, entry.teamMember);
    const bool isDark = isDarkMode();
    if (isDark)
        diagnostics::line("Inverted -> Switch to original");
    const Color color = storedOrHeld(entry.color, isDark);
    record.setValue(field::colorRed, color.red);
    record.setValue(field::colorGreen, color.green);
    record.setValue(field::colorBlue, color.blue);
    record.setValue(field::colorAlpha, color.alpha);
    diagnostics::line("Record:", record);
}

task taskOfRecord(const CloudRecord &record, const task &blank)
{
    diagnostics::line("CloudKit record:", record);
    const FieldReader fields(record);
    task entry = blank;
    fields.read(field::colorRed, entry.color.red);
    fields.read(field::colorGreen, entry.color.green);
    fields.read(field::colorBlue, entry.color.blue);
    fields.read(field::colorAlpha, entry.color.alpha);
    const bool isDark = isDarkMode();
    entry.color = storedOrHeld(entry.color, isDark);
    if (isDark)
        diagnostics::line("In dark mode -> Invert");
    fields.read(field::key, entry.key);
    fields.read(field::date, entry.date);
    fields.read(field::name, entry.name);
    fields.read(field::desc, entry.desc);
    fields.read(field::due, entry.due);
    fields.read(field::status, entry.status);
    fields.read(field::priority, entry.priority);
    fields.read(field::statusName, entry.statusName);
    fields.read(field::priorityName, entry.priorityName);
    qint64 hidden = entry.hidden;
    fields.read(field::hidden, hidden);
    entry.hidden = hidden != 0;
    fields.read(field::startHour, entry.startHour);
    fields.read(field::startMin, entry.startMin);
    fields.read(field::endHour, entry.endHour);
    fields.read(field::endMin, entry.endMin);
    fields.read(field::client, entry.client);
    fields.read(field::teamMember, entry.teamMember);
    return entry;
}
