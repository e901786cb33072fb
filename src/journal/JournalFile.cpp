#include "journal/JournalStore.h"

#include "journal/JournalRow.h"
#include "platform/FileDescriptor.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSqlError>
#include <QUuid>

#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

// The journal's file: how it is opened, made, and put aside, and why that fails.

namespace {

constexpr int formatVersion = 1;

// SQLite's result codes.
constexpr int busy = 5;
constexpr int corrupt = 11;
constexpr int full = 13;
constexpr int notADatabase = 26;
constexpr int primaryCode = 0xff;

constexpr mode_t forUserOnly = S_IRUSR | S_IWUSR;

QStringList statementsForTables()
{
    return {
        journalRow::table(),
        u"CREATE INDEX IF NOT EXISTS message_day ON message (last_day, first_day)"_s,
        u"CREATE INDEX IF NOT EXISTS message_moment ON message (moment)"_s,
        u"CREATE INDEX IF NOT EXISTS message_person ON message (person)"_s,
        u"CREATE TABLE IF NOT EXISTS declined (number TEXT PRIMARY KEY, moment INTEGER NOT NULL, ending TEXT NOT NULL)"_s,
        u"PRAGMA user_version = %1"_s.arg(formatVersion)};
}

struct stat entryOf(const QString &path)
{
    struct stat entry = {};
    ::stat(QFile::encodeName(path).constData(), &entry); // all zero when there is none
    return entry;
}

/// Makes a file that nobody else may read, or takes that from one that is there; why it cannot be a journal
/// otherwise.
QString makeReady(const QString &path)
{
    // A file that is there is not opened: closing it would take SQLite's locks from this program's other
    // connections. So none may be made while another connection could open it.
    static std::mutex making;
    const std::lock_guard lock(making);
    if (entryOf(path).st_nlink == 0)
        return FileDescriptor(path, O_RDWR | O_CREAT | O_EXCL, forUserOnly).isOpen() ? QString()
                                                                                     : qt_error_string(errno);
    // SQLite would wait for a pipe, and open a file for reading that cannot be written.
    for (const QString &ending : {u""_s, u"-wal"_s, u"-shm"_s, u"-journal"_s}) {
        const QByteArray name = QFile::encodeName(path + ending);
        const struct stat entry = entryOf(path + ending);
        if (entry.st_nlink == 0)
            continue;
        if (!S_ISREG(entry.st_mode))
            return u"something else is in place of Messages.sqlite%1"_s.arg(ending);
        if (::access(name.constData(), R_OK | W_OK) != 0)
            return qt_error_string(errno);
        if ((entry.st_mode & (S_IRWXG | S_IRWXO)) != 0)
            ::chmod(name.constData(), forUserOnly); // fails where files have no modes
    }
    return {};
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
    reason.clear();
    errorCode = 0;
    if (database.isOpen() && isStillThere())
        return true;
    if (!connect())
        return false;
    if (prepare())
        return true;
    close();
    return false;
}

/// Puts a damaged file aside, unless another connection has done so, and begins another one.
bool JournalStore::beginAnother()
{
    close();
    return (!isStillThere() || putAside()) && open();
}

void JournalStore::close()
{
    for (std::optional<QSqlQuery> *query : {&insert, &update, &decline, &undecline})
        query->reset();
    database.close();
}

bool JournalStore::isDamaged() const
{
    return errorCode == corrupt || errorCode == notADatabase;
}

/// Whether the file that was opened is the one under its name.
bool JournalStore::isStillThere() const
{
    const struct stat entry = entryOf(path);
    return opened == std::pair(entry.st_dev, entry.st_ino);
}

bool JournalStore::connect()
{
    close();
    if (!QDir().mkpath(QFileInfo(path).path())) {
        reason = u"the folder cannot be made"_s;
        return false;
    }
    reason = makeReady(path);
    if (!reason.isEmpty())
        return false;
    const struct stat entry = entryOf(path);
    opened = {entry.st_dev, entry.st_ino};
    ++timesOpened;
    if (!database.isValid())
        database = QSqlDatabase::addDatabase(u"QSQLITE"_s, connection);
    database.setDatabaseName(path);
    database.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=2000"_s); // milliseconds
    return database.open() || fail(database.lastError());
}

/// Has changes go to a log first, so that readers do not hold the writer up, where the file system can do
/// that.
bool JournalStore::chooseLog()
{
    QSqlQuery query(database);
    query.prepare(u"PRAGMA journal_mode = WAL"_s);
    const bool isChosen = run(query) && query.next();
    isLogged = isChosen && query.value(0).toString() == u"wal";
    query.finish();
    if (isChosen || isDamaged() || errorCode == busy)
        return isChosen;
    reason.clear();
    errorCode = 0;
    return run(u"PRAGMA journal_mode = DELETE"_s);
}

bool JournalStore::prepare()
{
    // What is removed is overwritten.
    if (!run(u"PRAGMA secure_delete = ON"_s) || !chooseLog())
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
          {&decline, u"INSERT OR REPLACE INTO declined VALUES (?, ?, ?)"_s},
          {&undecline, u"DELETE FROM declined WHERE ending = ?"_s}}) {
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
    case corrupt:
    case notADatabase:
        reason = u"the file is damaged"_s;
        break;
    default:
        reason = error.databaseText();
    }
    return false;
}
