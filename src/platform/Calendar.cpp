#include "platform/Calendar.h"

#include "platform/Diagnostics.h"

#include <QLocale>

#include <algorithm>

Calendar::Calendar()
    : zone(QTimeZone::systemTimeZone())
{
}

Instant Calendar::now()
{
    return instantOf(QDateTime::currentDateTimeUtc());
}

Instant Calendar::instantOf(const QDateTime &dateTime)
{
    return Instant(std::chrono::milliseconds(dateTime.toMSecsSinceEpoch()));
}

QDateTime Calendar::localTime(Instant instant)
{
    return QDateTime::fromMSecsSinceEpoch(instant.time_since_epoch().count());
}

QDate Calendar::dayOf(Instant instant) const
{
    if (!zone.isValid()) // what the system says of it could not be read
        return localTime(instant).date();
    return QDateTime::fromMSecsSinceEpoch(instant.time_since_epoch().count(), zone).date();
}

Instant Calendar::startOfDay(QDate day) const
{
    return instantOf(zone.isValid() ? day.startOfDay(zone) : day.startOfDay());
}

int firstShortYear()
{
    static const int first = std::max(QDate::currentDate().year(), QUORVANE_BUILD_YEAR) - 80;
    return first;
}

QString shortDate(QDate day)
{
    return QLocale().toString(day, QLocale::ShortFormat);
}

QString clockTime(qint64 hour, qint64 minute)
{
    return QString::asprintf("%02lld:%02lld", qlonglong{hour}, qlonglong{minute});
}

void appendItem(QByteArray &line, Instant instant)
{
    const QDateTime utc = QDateTime::fromMSecsSinceEpoch(instant.time_since_epoch().count(), Qt::UTC);
    diagnostics::appendItem(line, utc.toString(u"yyyy-MM-dd HH:mm:ss +0000"));
}
