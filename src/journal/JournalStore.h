#pragma once

#include "journal/SentMessage.h"

#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

#include <set>
#include <vector>

#include <sys/types.h>

class QSqlError;

/// Which messages are looked for; as it is made, all of them.
struct JournalSearch
{
    QString words = {};            ///< stand in person, number or text, whatever their case
    QString person = {};           ///< whose messages alone; empty for everybody's
    std::optional<QDate> day = {}; ///< in the user's time zone
};

/// One connection to the journal of messages: the SQLite file `Messages.sqlite`, which only the user may
/// read. Made, used and destroyed on one thread; others may have connections of their own.
class JournalStore
{
public:
    /// \param folder  where the file is; made when needed
    explicit JournalStore(const QString &folder);
    ~JournalStore();
    JournalStore(const JournalStore &) = delete;
    JournalStore &operator=(const JournalStore &) = delete;

    /// Opens the file, or makes it; true when it is open.
    bool open();
    const QString &filePath() const { return path; }
    /// Why the last operation failed, in plain words; empty when it has not.
    const QString &problem() const { return reason; }
    /// It was that the file is damaged.
    bool isDamaged() const;
    /// Where a damaged file was put, since this was last asked; empty for none.
    QString takeAsidePath() { return std::exchange(asidePath, QString()); }

    /// When what is written is safe: at once from a crash of the program, or also from a power cut.
    enum class Durability { Process, Machine };
    /// Writes messages that are about to be handed over, and what has become of others; all of it or nothing.
    /// A journal that turns out to be damaged is put aside, and it is written to another one.
    bool write(const std::vector<SentMessage> &begun, const std::vector<SentMessage> &ended,
               Durability durability);
    /// Removes what is older than a year. \param now  in milliseconds since 1970 in UTC
    bool removeOld(qint64 now);
    /// Removes what went to the person, or everything, and overwrites it in the file.
    /// \param person  nothing for everything
    /// \param except  identifiers of what stays
    bool forget(const std::optional<QString> &person, const std::set<qint64> &except = {});
    /// The number is no longer one of those that said no.
    bool tryAgain(const QString &number);

    /// The identifiers of the messages, the newest first.
    std::vector<qint64> find(const JournalSearch &search);
    /// Another one as soon as another connection has written something.
    std::pair<int, int> stamp();
    /// The messages with these identifiers, in no order; those that are gone are left out.
    std::vector<SentMessage> messages(const std::vector<qint64> &identifiers);
    /// What was sent to people for days in this range and may have arrived, the oldest first.
    std::vector<SentMessage> sentFor(QDate firstDay, QDate lastDay);
    /// To whom messages went, in alphabetical order.
    QStringList people();
    /// On which days, in the user's time zone, the newest first.
    QList<QDate> days();
    /// The numbers whose owners have said that they want no messages.
    QSet<QString> declinedNumbers();

private:
    bool connect();
    void close();
    bool prepare();
    bool chooseLog();
    bool createTables();
    bool putAside();
    bool beginAnother();
    bool isStillThere() const;
    bool run(QSqlQuery &query);
    bool run(QSqlQuery &prepared, const QVariantList &values);
    bool run(const QString &statement);
    bool fail(const QSqlError &error);
    bool writeOnce(const std::vector<SentMessage> &begun, const std::vector<SentMessage> &ended,
                   Durability durability);
    bool writeAll(const std::vector<SentMessage> &begun, const std::vector<SentMessage> &ended);
    bool lookForDeclined();
    bool noteDeclined(const SentMessage &message);
    std::vector<SentMessage> select(QSqlQuery &query);
    std::optional<qint64> newestBefore(qint64 moment);

    QString path;
    QString connection;
    QSqlDatabase database;
    std::pair<dev_t, ino_t> opened; ///< the file, by which it is known from another one under its name
    int timesOpened = 0;
    bool isLogged = false; ///< changes go to a log first, beside which everybody can read
    std::optional<QSqlQuery> insert;
    std::optional<QSqlQuery> update;
    std::optional<QSqlQuery> decline;
    std::optional<QSqlQuery> undecline;
    bool isAnyDeclined = false; ///< while a transaction is made
    QString reason;
    int errorCode = 0; ///< of SQLite
    QString asidePath;
};
