#pragma once

#include "journal/SentMessage.h"

#include <QVariantList>

class QSqlQuery;

/// A message as a row of the journal's table `message`.
namespace journalRow {

/// The statement that makes the table.
QString table();
constexpr int columns = 20;
/// The values in the order of the columns.
QVariantList values(const SentMessage &message);
/// The message of a query's current row, which has all columns in their order.
SentMessage message(const QSqlQuery &query);

} // namespace journalRow
