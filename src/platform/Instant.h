#pragma once

#include <QDateTime>

#include <chrono>

/// A point in time, in whole milliseconds of UTC.
using Instant = std::chrono::sys_time<std::chrono::milliseconds>;

/// Calendar questions about instants, answered in the user's current time zone.
namespace calendar {

Instant now();
Instant instantOf(const QDateTime &dateTime);
QDateTime localTime(Instant instant);
/// The first instant of the day; not always midnight where clocks change.
Instant startOfDay(QDate day);
QDate dayOf(Instant instant);

/// One calendar day as the half-open span of its instants.
struct Day
{
    Instant begin;
    Instant end;

    explicit Day(QDate day);
    bool contains(Instant instant) const { return begin <= instant && instant < end; }
};

} // namespace calendar
