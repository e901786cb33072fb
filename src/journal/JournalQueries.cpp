#include "journal/JournalRow.h"
#include "journal/JournalStore.h"
#include "platform/Calendar.h"

#include <QSqlError>

#include <limits>

using namespace Qt::StringLiterals;

// What is asked of the journal.

std::vector<SentMessage> JournalStore::select(QSqlQuery &query)
{
    std::vector<SentMessage> found;
    query.setForwardOnly(true);
    if (run(query))
        while (query.next())
            found.push_back(journalRow::message(query));
    if (query.lastError().isValid()) // damage may be met on the way
        fail(query.lastError());
    return found;
}

std::vector<qint64> JournalStore::find(const JournalSearch &search)
{
    std::vector<qint64> found;
    if (!open())
        return found;
    QStringList conditions;
    QVariantList values;
    if (!search.words.isEmpty()) {
        conditions.append(u"instr(searched, ?) > 0"_s);
        values.append(search.words.toCaseFolded());
    }
    if (!search.person.isEmpty()) {
        conditions.append(u"person = ?"_s);
        values.append(search.person);
    }
    if (search.day) {
        const Calendar::Day day = Calendar().day(*search.day);
        conditions.append(u"moment >= ? AND moment < ?"_s);
        values << qint64(day.begin.time_since_epoch().count()) << qint64(day.end.time_since_epoch().count());
    }
    QSqlQuery query(database);
    query.setForwardOnly(true);
    query.prepare(u"SELECT id FROM message "_s +
                  (conditions.isEmpty() ? QString() : u"WHERE "_s + conditions.join(u" AND "_s)) +
                  u" ORDER BY moment DESC, id DESC"_s);
    if (run(query, values))
        while (query.next())
            found.push_back(query.value(0).toLongLong());
    return found;
}

std::pair<int, int> JournalStore::stamp()
{
    int version = 0;
    if (open()) {
        QSqlQuery query(database);
        query.prepare(u"PRAGMA data_version"_s);
        version = run(query) && query.next() ? query.value(0).toInt() : 0;
    }
    return {timesOpened, version};
}

std::vector<SentMessage> JournalStore::messages(const std::vector<qint64> &identifiers)
{
    if (!open() || identifiers.empty())
        return {};
    QStringList numbers;
    for (const qint64 identifier : identifiers)
        numbers.append(QString::number(identifier));
    QSqlQuery query(database);
    query.prepare(u"SELECT * FROM message WHERE id IN (%1)"_s.arg(numbers.join(u',')));
    return select(query);
}

std::vector<SentMessage> JournalStore::sentFor(QDate firstDay, QDate lastDay)
{
    if (!open())
        return {};
    QSqlQuery query(database);
    query.prepare(u"SELECT * FROM message WHERE last_day >= ? AND first_day <= ? AND test = 0 "
                  "AND state NOT IN (%1, %2, %3, %4) ORDER BY id"_s.arg(int(MessageState::Waiting))
                      .arg(int(MessageState::Refused))
                      .arg(int(MessageState::NotSent))
                      .arg(int(MessageState::Undelivered)));
    query.addBindValue(firstDay.toString(Qt::ISODate));
    query.addBindValue(lastDay.toString(Qt::ISODate));
    return select(query);
}

QStringList JournalStore::people()
{
    QStringList names;
    if (!open())
        return names;
    QSqlQuery query(database);
    query.setForwardOnly(true);
    query.prepare(u"SELECT DISTINCT person FROM message WHERE person <> '' ORDER BY person COLLATE NOCASE"_s);
    if (run(query))
        while (query.next())
            names.append(query.value(0).toString());
    return names;
}

/// When the newest message before this moment was handed over; nothing when there is none.
std::optional<qint64> JournalStore::newestBefore(qint64 moment)
{
    QSqlQuery query(database);
    query.prepare(u"SELECT max(moment) FROM message WHERE moment < ?"_s);
    const bool isFound = run(query, {moment}) && query.next() && !query.value(0).isNull();
    return isFound ? std::optional(query.value(0).toLongLong()) : std::nullopt;
}

QList<QDate> JournalStore::days()
{
    QList<QDate> found;
    if (!open())
        return found;
    // From day to day, instead of looking at every message.
    const Calendar calendar;
    std::optional<qint64> moment = newestBefore(std::numeric_limits<qint64>::max());
    while (moment) {
        found.append(calendar.dayOf(Instant(std::chrono::milliseconds(*moment))));
        moment = newestBefore(
            std::min(*moment, qint64(calendar.startOfDay(found.last()).time_since_epoch().count())));
    }
    return found;
}

QSet<QString> JournalStore::declinedNumbers()
{
    QSet<QString> numbers;
    if (!open())
        return numbers;
    QSqlQuery query(database);
    query.prepare(u"SELECT number FROM declined"_s);
    if (run(query))
        while (query.next())
            numbers.insert(query.value(0).toString());
    return numbers;
}
