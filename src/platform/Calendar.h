#pragma once

#include <QDateTime>
#include <QTimeZone>

#include <chrono>

/// A point in time, in whole milliseconds of UTC.
using Instant = std::chrono::sys_time<std::chrono::milliseconds>;

/// Calendar questions about instants, answered in the user's time zone.
///
/// Takes the time zone when it is made, so it is made for one command and not kept. Qt's local time would
/// look at the system's settings again for every single date.
class Calendar
{
public:
    Calendar();

    static Instant now();
    static Instant instantOf(const QDateTime &dateTime);
    /// The moment in the user's time zone, for pickers.
    static QDateTime localTime(Instant instant);

    QDate dayOf(Instant instant) const;
    /// The first instant of the day; not always midnight where clocks change.
    Instant startOfDay(QDate day) const;

    /// One calendar day as the half-open span of its instants.
    struct Day
    {
        Instant begin;
        Instant end;
        bool contains(Instant instant) const { return begin <= instant && instant < end; }
    };
    Day day(QDate date) const { return {startOfDay(date), startOfDay(date.addDays(1))}; }

private:
    QTimeZone zone;
};

/// The first of the hundred years that two digits stand for: 80 years before the year in which the program
/// was started or, by a clock that is wrong, the one in which it was built. The same one as long as the
/// program runs, so that a clock put right does not change what has been read.
int firstShortYear();

/// The day in the short form of the user's locale.
QString shortDate(QDate day);
/// A time of day in two-digit numbers, such as 08:05.
QString clockTime(qint64 hour, qint64 minute);

/// In a diagnostic line, an instant is written in UTC, such as 2026-03-07 08:00:00 +0000.
void appendItem(QByteArray &line, Instant instant);
