#include "cloud/CloudDatabase.h"

#include "platform/Diagnostics.h"

#include <algorithm>

using namespace Qt::StringLiterals;

QString CloudError::plainWords() const
{
    switch (reason) {
    case Reason::Unreachable:
        return u"the cloud cannot be reached"_s;
    case Reason::Lost:
        return u"the connection to the cloud was lost"_s;
    case Reason::SignedOut:
        return u"nobody is signed in to the cloud"_s;
    case Reason::Refused:
        return u"the cloud does not allow it"_s;
    case Reason::Busy:
        return u"another program keeps the cloud's database busy"_s;
    case Reason::NoSpace:
        return u"there is no room left for the cloud's database"_s;
    case Reason::Unsuitable:
        return u"the cloud's database cannot hold it"_s;
    case Reason::Gone:
        return u"it was deleted in the cloud meanwhile"_s;
    case Reason::Damaged:
        return u"the cloud's database is damaged"_s;
    case Reason::Stopped:
        return u"it was stopped"_s;
    case Reason::Other:
        return u"the cloud's database answered: "_s + text;
    }
    return {};
}

std::optional<CloudValue> CloudRecord::value(const QString &field) const
{
    const auto found = std::ranges::find(values, field, &std::pair<QString, CloudValue>::first);
    return found == values.cend() ? std::nullopt : std::optional(found->second);
}

void CloudRecord::setValue(const QString &field, CloudValue value)
{
    const auto found = std::ranges::find(values, field, &std::pair<QString, CloudValue>::first);
    if (found == values.cend())
        values.emplace_back(field, std::move(value));
    else
        found->second = std::move(value);
}

static void appendValue(QByteArray &line, const CloudValue &value)
{
    if (const auto *text = std::get_if<QString>(&value))
        diagnostics::appendItem(line, *text);
    else if (const auto *number = std::get_if<qint64>(&value))
        diagnostics::appendItem(line, *number);
    else if (const auto *real = std::get_if<double>(&value))
        line += QByteArray::number(*real, 'g', QLocale::FloatingPointShortest);
    else
        appendItem(line, std::get<Instant>(value));
}

void appendItem(QByteArray &line, const CloudRecord &record)
{
    diagnostics::appendItem(line, record.recordType());
    line += ' ';
    diagnostics::appendItem(line, record.recordID().recordName);
    for (const auto &[field, value] : record.fields()) {
        line += ' ';
        diagnostics::appendItem(line, field);
        line += '=';
        appendValue(line, value);
    }
}
