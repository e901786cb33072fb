#include "widgets/TypedText.h"

#include "platform/Calendar.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace typedText {

namespace {

/// The text with digits of any script in ASCII, and without the marks that only steer its direction.
QString withPlainDigits(const QString &text)
{
    QString plain;
    for (const QChar unit : text.trimmed()) {
        if (unit.isDigit())
            plain += QString::number(unit.digitValue());
        else if (unit.category() != QChar::Other_Format)
            plain += unit.isSpace() ? QChar(u' ') : unit;
    }
    return plain;
}

/// The groups of digits in a text that has nothing else but separators; none when it has.
QStringList groupsOf(const QString &text, const QString &separators)
{
    QStringList groups;
    bool isInGroup = false;
    for (const QChar unit : text) {
        const bool isDigit = unit.isDigit();
        if (!isDigit && !separators.contains(unit))
            return {};
        if (isDigit && !isInGroup)
            groups.append(QString());
        if (isDigit)
            groups.last() += unit;
        isInGroup = isDigit;
    }
    return groups;
}

const QRegularExpression literal(u"'[^']*'"_s);

/// What may stand between the numbers: the usual, and the words of the format.
QString separatorsIn(const QString &format)
{
    QString separators = u"/.-, \u060c"_s;
    for (const QRegularExpressionMatch &match : literal.globalMatch(format))
        separators += match.captured();
    return separators;
}

/// The order in which the format has day, month and year, such as "dMy".
QString orderIn(const QString &format)
{
    const QString letters = QString(format).remove(literal);
    QString order;
    for (const QChar unit : letters)
        if (u"dMy"_s.contains(unit) && !order.contains(unit))
            order += unit;
    return order;
}

std::optional<QDate> valid(QDate date)
{
    return date.isValid() ? std::optional(date) : std::nullopt;
}

/// The day with this number in the month, this or the next year.
std::optional<QDate> nearest(int month, int day, QDate today)
{
    const QDate sooner(today.year(), month, day);
    const QDate later(today.year() + 1, month, day);
    if (!sooner.isValid() || !later.isValid())
        return valid(sooner.isValid() ? sooner : later);
    return qAbs(today.daysTo(sooner)) <= qAbs(today.daysTo(later)) ? sooner : later;
}

std::optional<QDate> dayOfGroups(const QStringList &groups, QString order, QDate today)
{
    constexpr qsizetype wholeYear = 4;
    constexpr qsizetype longestYear = 6;
    if (groups.size() == 3 && groups[0].size() >= wholeYear)
        order = u"yMd"_s;
    else if (groups.size() == 3 && groups[2].size() >= wholeYear)
        order = order.remove(u'y') + u'y';
    else if (groups.size() == 2)
        order.remove(u'y');
    if (order.size() != groups.size())
        return std::nullopt;
    int day = 0;
    int month = 0;
    int year = 0;
    for (qsizetype i = 0; i < groups.size(); ++i) {
        const bool isYear = order[i] == u'y';
        const qsizetype digits = groups[i].size();
        if (isYear ? digits != 2 && (digits < wholeYear || digits > longestYear) : digits > 2)
            return std::nullopt;
        (isYear ? year : order[i] == u'M' ? month : day) = groups[i].toInt();
        if (isYear && digits == 2) {
            const int first = firstShortYear();
            year += first - first % 100 + (year < first % 100 ? 100 : 0);
        }
    }
    return groups.size() == 2 ? nearest(month, day, today) : valid(QDate(year, month, day));
}

std::optional<QDate> dayFromToday(const QString &text, QDate today)
{
    static const QStringList words{u"yesterday"_s, u"today"_s, u"tomorrow"_s};
    static const QRegularExpression number(u"^[+-]\\d{1,5}$"_s);
    if (const qsizetype word = words.indexOf(text.toLower()); word >= 0)
        return today.addDays(word - 1);
    return number.match(text).hasMatch() ? std::optional(today.addDays(text.toInt())) : std::nullopt;
}

/// Takes the first of the words that the text has off it.
bool takeWord(QString &text, const QStringList &words)
{
    for (const QString &word : words)
        if (const qsizetype place = word.isEmpty() ? -1 : text.indexOf(word, 0, Qt::CaseInsensitive);
            place >= 0) {
            text.remove(place, word.size());
            return true;
        }
    return false;
}

} // namespace

QString dateFormat(const QLocale &locale)
{
    QString format = locale.dateFormat(QLocale::ShortFormat);
    if (!format.contains(u"yyyy"))
        format.replace(u"yy"_s, u"yyyy"_s);
    return format;
}

QString timeFormat(const QLocale &locale)
{
    static const QRegularExpression others(
        u"[^A-Za-z' ]?ss?|B"_s); // seconds, and a mark that Qt does not know
    return locale.timeFormat(QLocale::ShortFormat).remove(others);
}

std::optional<QDate> day(const QString &text, QDate today, const QLocale &locale)
{
    const QString format = dateFormat(locale);
    if (const QDate shown = locale.toDate(text.trimmed(), format); shown.isValid())
        return shown; // also where the form has words in it
    const QString plain = withPlainDigits(text);
    if (const std::optional<QDate> counted = dayFromToday(plain, today))
        return counted;
    return dayOfGroups(groupsOf(plain, separatorsIn(format)), orderIn(format), today);
}

std::optional<QTime> time(const QString &text, const QLocale &locale)
{
    constexpr int noon = 12;
    if (const QTime shown = locale.toTime(text.trimmed(), timeFormat(locale)); shown.isValid())
        return shown; // also where the form has other words in it
    QString plain = withPlainDigits(text);
    const bool isAfternoon = takeWord(plain, {locale.pmText(), u"p.m."_s, u"pm"_s, u"p"_s});
    const bool isMorning = !isAfternoon && takeWord(plain, {locale.amText(), u"a.m."_s, u"am"_s, u"a"_s});
    QStringList groups = groupsOf(plain.trimmed(), u":.h "_s);
    if (groups.size() == 1 && groups[0].size() > 2) // without a separator, as 930
        groups = {groups[0].chopped(2), groups[0].last(2)};
    const auto isShort = [](const QString &group) {
        return group.size() <= 2;
    };
    if (groups.isEmpty() || groups.size() > 2 || !std::ranges::all_of(groups, isShort))
        return std::nullopt;
    int hour = groups[0].toInt();
    const int minute = groups.size() == 2 ? groups[1].toInt() : 0;
    if (isMorning && hour > noon)
        return std::nullopt;
    if (isMorning && hour == noon)
        hour = 0;
    if (isAfternoon && hour < noon)
        hour += noon;
    const QTime time(hour, minute);
    return time.isValid() ? std::optional(time) : std::nullopt;
}

} // namespace typedText
