#include "journal/JournalStore.h"

#include "journal/JournalRow.h"

#include <QSqlError>

using namespace Qt::StringLiterals;

// What is written into the journal.

namespace {

constexpr int declinedCode = 21610; // of the gateway: the number's owner wants no messages

} // namespace

bool JournalStore::run(QSqlQuery &query)
{
    return query.exec() || fail(query.lastError());
}

bool JournalStore::run(QSqlQuery &prepared, const QVariantList &values)
{
    for (int place = 0; place < values.size(); ++place)
        prepared.bindValue(place, values[place]);
    return run(prepared);
}

bool JournalStore::run(const QString &statement)
{
    QSqlQuery query(database);
    return query.exec(statement) || fail(query.lastError());
}

bool JournalStore::removeOld(qint64 now)
{
    // By the time between the messages, of which a month counts at most: a clock that was wrong for a while
    // costs a month of the journal and not all of it.
    constexpr qint64 day = 24LL * 60 * 60 * 1000;
    constexpr qint64 month = 31 * day;
    constexpr qint64 year = 366 * day;
    if (!open())
        return false;
    qint64 age = 0;
    qint64 later = now;
    for (qint64 limit = now; age <= year; limit = later - day) {
        const std::optional<qint64> earlier = newestBefore(limit);
        if (!earlier)
            return reason.isEmpty();
        age += std::min(later - *earlier, month);
        later = *earlier;
    }
    QSqlQuery query(database);
    query.prepare(u"DELETE FROM message WHERE moment <= ?"_s);
    query.addBindValue(later);
    return run(query);
}

bool JournalStore::write(const std::vector<SentMessage> &begun, const std::vector<SentMessage> &ended,
                         Durability durability)
{
    if (writeOnce(begun, ended, durability))
        return true;
    if (isDamaged())
        return beginAnother() && writeOnce(begun, ended, durability);
    close(); // it may be open for reading only, because for a moment there was no way to write it
    return false;
}

bool JournalStore::writeOnce(const std::vector<SentMessage> &begun, const std::vector<SentMessage> &ended,
                             Durability durability)
{
    const bool isForMachine = durability == Durability::Machine || !isLogged;
    if (!open() || !run(isForMachine ? u"PRAGMA synchronous = FULL"_s : u"PRAGMA synchronous = NORMAL"_s) ||
        !run(u"BEGIN IMMEDIATE"_s))
        return false;
    if (writeAll(begun, ended) && run(u"COMMIT"_s))
        return true;
    const auto failure = std::pair(reason, errorCode);
    run(u"ROLLBACK"_s);
    std::tie(reason, errorCode) = failure;
    return false;
}

bool JournalStore::writeAll(const std::vector<SentMessage> &begun, const std::vector<SentMessage> &ended)
{
    for (const SentMessage &message : begun)
        if (!run(*insert, journalRow::values(message)))
            return false;
    if (!ended.empty() && !lookForDeclined())
        return false;
    for (const SentMessage &message : ended)
        if (!run(*update, {message.moment, int(message.state), message.identifier, message.code,
                           message.reason, message.account, message.id}) ||
            !noteDeclined(message))
            return false;
    return true;
}

/// The last digits, by which a number is the same however it is written; the whole text where it has none.
static QString endingOf(const QString &number)
{
    constexpr qsizetype length = 8;
    QString digits;
    for (const QChar unit : number)
        if (unit.isDigit())
            digits += unit;
    return digits.isEmpty() ? number : digits.right(length);
}

/// Most journals mark no number: then an acceptance has no mark to take away.
bool JournalStore::lookForDeclined()
{
    QSqlQuery query(database);
    query.prepare(u"SELECT EXISTS (SELECT 1 FROM declined)"_s);
    if (!run(query) || !query.next())
        return false;
    isAnyDeclined = query.value(0).toBool();
    return true;
}

/// A refusal because its owner wants no messages marks the number, and an acceptance takes the mark away.
bool JournalStore::noteDeclined(const SentMessage &message)
{
    if (message.code == declinedCode) {
        isAnyDeclined = true;
        return run(*decline, {message.number, message.moment, endingOf(message.number)});
    }
    return message.state != MessageState::Accepted || !isAnyDeclined ||
           run(*undecline, {endingOf(message.number)});
}

bool JournalStore::tryAgain(const QString &number)
{
    if (!open())
        return false;
    return run(*undecline, {endingOf(number)});
}

bool JournalStore::forget(const std::optional<QString> &person, const std::set<qint64> &except)
{
    if (!open())
        return false;
    QStringList kept;
    for (const qint64 identifier : except)
        kept.append(QString::number(identifier));
    QSqlQuery query(database);
    query.prepare(u"DELETE FROM message WHERE id NOT IN (%1)"_s.arg(kept.join(u',')) +
                  (person ? u" AND person = ?"_s : QString()));
    if (person)
        query.addBindValue(*person);
    // The log would keep the texts, too.
    QSqlQuery checkpoint(database);
    checkpoint.prepare(u"PRAGMA wal_checkpoint(TRUNCATE)"_s);
    if (!run(query) || !run(checkpoint)) {
        close(); // as above
        return false;
    }
    const bool isEmptied = checkpoint.next() && checkpoint.value(0).toInt() == 0;
    if (!isEmptied)
        reason = u"they are no longer shown, but another program reads the file, and their texts stay in it "
                 "until it has ended"_s;
    return isEmptied;
}
