#include "taskfile/RowDates.h"

#include <cstdlib>

namespace {

/// Takes the leading digits off the text; −1 when there are fewer or more than asked for.
int takeNumber(QStringView &text, qsizetype fewest, qsizetype most)
{
    int number = 0;
    qsizetype digits = 0;
    while (digits < text.size() && text[digits] >= u'0' && text[digits] <= u'9') {
        if (++digits > most)
            return -1;
        number = number * 10 + (text[digits - 1].unicode() - u'0');
    }
    text = text.sliced(digits);
    return digits < fewest ? -1 : number;
}

bool takeSlash(QStringView &text)
{
    const bool found = text.startsWith(u'/');
    if (found)
        text = text.sliced(1);
    return found;
}

} // namespace

std::optional<Instant> RowDates::fromText(QStringView text)
{
    const std::optional<QDate> day = dayFromText(text);
    if (!day)
        return std::nullopt;
    const auto known = starts.constFind(*day);
    return known != starts.cend() ? *known : *starts.insert(*day, calendar.startOfDay(*day));
}

const QByteArray &RowDates::toText(Instant instant)
{
    QByteArray &text = texts[instant.time_since_epoch().count()];
    if (text.isNull())
        text = dayToText(calendar.dayOf(instant));
    return text;
}

std::optional<QDate> RowDates::dayFromText(QStringView text) const
{
    const int month = takeNumber(text, 1, 2);
    if (month < 0 || !takeSlash(text))
        return std::nullopt;
    const int day = takeNumber(text, 1, 2);
    if (day < 0 || !takeSlash(text))
        return std::nullopt;
    const bool beforeChrist = text.startsWith(u'-');
    if (beforeChrist)
        text = text.sliced(1);
    const qsizetype yearDigits = text.size();
    int year = takeNumber(text, 2, 7);
    if (year < 0 || !text.isEmpty() || yearDigits == 3 || (beforeChrist && yearDigits < 4))
        return std::nullopt;
    if (yearDigits == 2) {
        year += firstYear - firstYear % 100;
        if (year < firstYear)
            year += 100;
    }
    const QDate date(beforeChrist ? -year : year, month, day);
    return date.isValid() ? std::optional(date) : std::nullopt;
}

QByteArray RowDates::dayToText(QDate day) const
{
    const int year = day.year();
    QByteArray text = QByteArray::number(day.month()) + '/' + QByteArray::number(day.day()) + '/';
    if (year >= firstYear && year < firstYear + 100)
        return text + QByteArray::number(year % 100).rightJustified(2, '0');
    if (year < 0)
        text += '-';
    return text + QByteArray::number(std::abs(year)).rightJustified(4, '0');
}
