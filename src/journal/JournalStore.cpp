#include "journal/JournalStore.h"

#include "journal/JournalRow.h"
#include "platform/FileDescriptor.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int formatVersion = 1;
constexpr qint64 keptDays = 366;
constexpr int declinedCode = 21610; // of the gateway: the number's owner wants no messages

// SQLite's result codes.
constexpr int busy = 5;
constexpr int corrupt = 11;
constexpr int full = 13;
constexpr int notADatabase = 26;
constexpr int primaryCode = 0xff;

QStringList statementsForTables()
{
    return {journalRow::table(), u"CREATE INDEX message_day ON message (last_day, first_day)"_s,
            u"CREATE TABLE declined (number TEXT PRIMARY KEY, moment INTEGER NOT NULL)"_s,
            u"PRAGMA user_version = %1"_s.arg(formatVersion)};
}

} // namespace

JournalStore::JournalStore(const QString &folder)
    : path(folder + u"/Messages.sqlite"_s)
    , connection(u"Messages "_s + QUuid::createUuid().toString(QUuid::WithoutBraces))
{
}

JournalStore::~JournalStore()
{
    close();
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(connection);
}

bool JournalStore::open()
{
    if (database.isOpen() && QFileInfo::exists(path))
        return true;
    if (!connect())
        return false;
    if (prepare())
        return true;
    const bool isDamaged = errorCode == corrupt || errorCode == notADatabase;
    close();
    return isDamaged && putAside() && connect() && prepare();
}

void JournalStore::close()
{
    for (std::optional<QSqlQuery> *query : {&insert, &update, &decline, &undecline})
        query->reset();
    database.close();
}

bool JournalStore::connect()
{
    if (!QDir().mkpath(QFileInfo(path).path())) {
        reason = u"the folder cannot be made"_s;
        return false;
    }
    // SQLite would wait for a pipe, open a file for reading that cannot be written, and let others read it.
    if (const FileDescriptor file(path, O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR); !file.isOpen()) {
        reason = qt_error_string(errno);
        return false;
    }
    if (!database.isValid())
        database = QSqlDatabase::addDatabase(u"QSQLITE"_s, connection);
    database.setDatabaseName(path);
    database.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=2000"_s); // milliseconds
    return database.open() || fail(database.lastError());
}

bool JournalStore::prepare()
{
    // What is removed is overwritten. Readers do not hold the writer up.
    for (const QString &statement : {u"PRAGMA secure_delete = ON"_s, u"PRAGMA journal_mode = WAL"_s})
        if (!run(statement))
            return false;
    QSqlQuery version(database);
    version.prepare(u"PRAGMA user_version"_s);
    if (!run(version) || !version.next())
        return false;
    const int found = version.value(0).toInt();
    version.finish();
    if (found > formatVersion)
        reason = u"it was written by a newer version of the program"_s;
    if (found > formatVersion || (found == 0 && !createTables()))
        return false;
    for (const auto &[query, statement] :
         {std::pair(&insert, u"INSERT OR REPLACE INTO message VALUES (%1)"_s.arg(
                                 QStringList(journalRow::columns, u"?"_s).join(u','))),
          {&update, u"UPDATE message SET moment = ?, state = ?, identifier = ?, code = ?, reason = ?, "
                    "account = ? WHERE id = ?"_s},
          {&decline, u"INSERT OR REPLACE INTO declined VALUES (?, ?)"_s},
          {&undecline, u"DELETE FROM declined WHERE number = ?"_s}}) {
        query->emplace(database);
        if (!(*query)->prepare(statement))
            return fail((*query)->lastError());
    }
    return true;
}

bool JournalStore::createTables()
{
    if (!run(u"BEGIN IMMEDIATE"_s))
        return false;
    bool isMade = true;
    for (const QString &statement : statementsForTables())
        isMade = isMade && run(statement);
    if (isMade && run(u"COMMIT"_s))
        return true;
    database.rollback();
    return false;
}

bool JournalStore::putAside()
{
    const QString moment = QDateTime::currentDateTime().toString(u"yyyyMMdd-HHmmss"_s);
    const QString aside = path + u".damaged-"_s + moment;
    for (const QString &ending : {u"-wal"_s, u"-shm"_s})
        if (QFileInfo::exists(path + ending))
            QFile::rename(path + ending, aside + ending);
    if (!QFile::rename(path, aside))
        return false;
    asidePath = aside;
    return true;
}

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

/// Keeps why something failed; always false.
bool JournalStore::fail(const QSqlError &error)
{
    errorCode = error.nativeErrorCode().toInt() & primaryCode;
    switch (errorCode) {
    case busy:
        reason = u"another program keeps it to itself"_s;
        break;
    case full:
        reason = u"the disk is full"_s;
        break;
    default:
        reason = error.databaseText();
    }
    return false;
}

bool JournalStore::removeOld()
{
    // By the newest message where the clock is ahead of it, lest a wrong clock cost the whole journal.
    QSqlQuery query(database);
    query.prepare(u"DELETE FROM message WHERE moment < min(?, (SELECT max(moment) FROM message)) - ?"_s);
    query.addBindValue(QDateTime::currentMSecsSinceEpoch());
    query.addBindValue(keptDays * 24 * 60 * 60 * 1000);
    return run(query);
}

bool JournalStore::write(const std::vector<SentMessage> &begun, const std::vector<SentMessage> &ended,
                         Durability durability)
{
    if (!open() ||
        !run(durability == Durability::Machine ? u"PRAGMA synchronous = FULL"_s
                                               : u"PRAGMA synchronous = NORMAL"_s) ||
        !run(u"BEGIN IMMEDIATE"_s))
        return false;
    if (writeAll(begun, ended) && run(u"COMMIT"_s))
        return true;
    const QString failure = reason;
    run(u"ROLLBACK"_s);
    reason = failure;
    return false;
}

bool JournalStore::writeAll(const std::vector<SentMessage> &begun, const std::vector<SentMessage> &ended)
{
    for (const SentMessage &message : begun)
        if (!run(*insert, journalRow::values(message)))
            return false;
    for (const SentMessage &message : ended)
        if (!run(*update, {message.moment, int(message.state), message.identifier, message.code,
                           message.reason, message.account, message.id}) ||
            !noteDeclined(message))
            return false;
    return true;
}

/// A refusal because its owner wants no messages marks the number, and an acceptance takes the mark away.
bool JournalStore::noteDeclined(const SentMessage &message)
{
    if (message.code == declinedCode)
        return run(*decline, {message.number, message.moment});
    return message.state != MessageState::Accepted || run(*undecline, {message.number});
}

bool JournalStore::tryAgain(const QString &number)
{
    if (!open())
        return false;
    return run(*undecline, {number});
}

bool JournalStore::forget(const std::optional<QString> &person)
{
    if (!open())
        return false;
    QSqlQuery query(database);
    query.prepare(person ? u"DELETE FROM message WHERE person = ?"_s : u"DELETE FROM message"_s);
    if (person)
        query.addBindValue(*person);
    // The write-ahead log would keep the texts, too.
    return run(query) && run(u"PRAGMA wal_checkpoint(TRUNCATE)"_s);
}
