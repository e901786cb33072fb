#include "journal/JournalRow.h"
#include "journal/JournalStore.h"

#include <QSqlQuery>
#include <QVariant>

using namespace Qt::StringLiterals;

// What is asked of the journal.

std::vector<SentMessage> JournalStore::select(QSqlQuery &query)
{
    std::vector<SentMessage> found;
    query.setForwardOnly(true);
    if (run(query))
        while (query.next())
            found.push_back(journalRow::message(query));
    return found;
}

std::vector<qint64> JournalStore::find(const QString &words, const QString &person)
{
    std::vector<qint64> found;
    if (!open())
        return found;
    QSqlQuery query(database);
    query.setForwardOnly(true);
    QStringList conditions;
    if (!words.isEmpty())
        conditions.append(u"instr(searched, :words) > 0"_s);
    if (!person.isEmpty())
        conditions.append(u"person = :person"_s);
    query.prepare(u"SELECT id FROM message "_s +
                  (conditions.isEmpty() ? QString() : u"WHERE "_s + conditions.join(u" AND "_s)) +
                  u" ORDER BY id DESC"_s);
    if (!words.isEmpty())
        query.bindValue(u":words"_s, words.toCaseFolded());
    if (!person.isEmpty())
        query.bindValue(u":person"_s, person);
    if (run(query))
        while (query.next())
            found.push_back(query.value(0).toLongLong());
    return found;
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
                  "AND state NOT IN (%1, %2, %3) ORDER BY id"_s.arg(int(MessageState::Waiting))
                      .arg(int(MessageState::Refused))
                      .arg(int(MessageState::NotSent)));
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
    query.prepare(u"SELECT DISTINCT person FROM message ORDER BY person COLLATE NOCASE"_s);
    if (run(query))
        while (query.next())
            names.append(query.value(0).toString());
    return names;
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
