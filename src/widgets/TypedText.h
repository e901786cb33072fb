#pragma once

#include <QDate>
#include <QLocale>
#include <QTime>

#include <optional>

/// Dates and times of day as people type them.
namespace typedText {

/// The locale's short form of a date, with the whole year.
QString dateFormat(const QLocale &locale);
/// The locale's short form of a time of day: hour and minute.
QString timeFormat(const QLocale &locale);

/// The day that the text names: in the order of the locale's short form with any of the usual separators,
/// with or without leading zeros and with a year of two digits or more; without a year, this or the next one,
/// whichever day is nearer; as an ISO date; as "today", "tomorrow" or "yesterday"; or as a number of days
/// from today, such as "+3". Nothing when it could not be meant so.
std::optional<QDate> day(const QString &text, QDate today, const QLocale &locale);

/// The time of day that the text names, by 24 hours or with AM and PM in the locale's words or in English:
/// 9, 930, 9:30, 2:45 pm, 14:45. Nothing when it could not be meant so.
std::optional<QTime> time(const QString &text, const QLocale &locale);

} // namespace typedText
