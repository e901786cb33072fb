#pragma once

#include "platform/Calendar.h"

#include <QByteArray>
#include <QHash>
#include <QStringView>

#include <optional>

/// Dates as the task list file holds them: month/day/year without leading zeros, such as 3/7/24, whatever the
/// locale.
///
/// A year of the hundred years that begin with `firstShortYear` has two digits; any other has at least four.
/// Made for one reading or writing of the file: the dates it has met it does not work out again.
class RowDates
{
public:
    /// The start of the day. Takes one- or two-digit month and day and a year of two or of at least four
    /// digits; nothing when the text is no date of that form.
    std::optional<Instant> fromText(QStringView text);

    /// The day on which the instant falls.
    const QByteArray &toText(Instant instant);

private:
    std::optional<QDate> dayFromText(QStringView text) const;
    QByteArray dayToText(QDate day) const;

    Calendar calendar;
    int firstYear = firstShortYear();
    QHash<QDate, Instant> starts;
    QHash<qint64, QByteArray> texts; ///< by milliseconds of the instant
};
