#include "mainwindow/RowDate.h"

#include <cstdlib>

namespace rowdate {

namespace {

/// The first of the hundred years that two digits can tell apart.
int firstShortYear()
{
    return QDate::currentDate().year() - 80;
}

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

std::optional<QDate> fromText(QStringView text)
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
    if (year < 0 || !text.isEmpty() || yearDigits == 3)
        return std::nullopt;
    if (yearDigits == 2) {
        const int first = firstShortYear();
        year += first - first % 100;
        if (year < first)
            year += 100;
    }
    const QDate date(beforeChrist ? -year : year, month, day);
    return date.isValid() ? std::optional(date) : std::nullopt;
}

QByteArray toText(QDate date)
{
    const int year = date.year();
    const int first = firstShortYear();
    QByteArray text = QByteArray::number(date.month()) + '/' + QByteArray::number(date.day()) + '/';
    if (year >= first && year < first + 100)
        return text + QByteArray::number(year % 100).rightJustified(2, '0');
    if (year < 0)
        text += '-';
    return text + QByteArray::number(std::abs(year)).rightJustified(4, '0');
}

} // namespace rowdate
