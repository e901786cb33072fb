#pragma once

#include <QByteArray>
#include <QDate>
#include <QStringView>

#include <optional>

/// Dates as the task list file holds them: month/day/year without leading zeros, such as 3/7/24, whatever the locale.
///
/// A year of the hundred years that begin 80 years before this one has two digits; any other has at least four.
namespace rowdate {

/// Reads one- or two-digit month and day and a year of two or of at least four digits; nothing when the text is no
/// date of that form.
std::optional<QDate> fromText(QStringView text);

QByteArray toText(QDate date);

} // namespace rowdate
