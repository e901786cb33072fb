#include "platform/Instant.h"

namespace calendar {

Instant instantOf(const QDateTime &dateTime)
{
    return Instant(std::chrono::milliseconds(dateTime.toMSecsSinceEpoch()));
}

QDateTime localTime(Instant instant)
{
    return QDateTime::fromMSecsSinceEpoch(instant.time_since_epoch().count());
}

Instant now()
{
    return instantOf(QDateTime::currentDateTimeUtc());
}

Instant startOfDay(QDate day)
{
    return instantOf(day.startOfDay());
}

QDate dayOf(Instant instant)
{
    return localTime(instant).date();
}

Day::Day(QDate day)
    : begin(startOfDay(day))
    , end(startOfDay(day.addDays(1)))
{
}

} // namespace calendar
