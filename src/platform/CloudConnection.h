#pragma once

#include "platform/CloudDatabase.h"
#include "platform/CloudHome.h"

#include <QList>
#include <QSqlQuery>

#include <memory>

class QSqlDatabase;
class QSqlError;

/// The fields that records of a type have in the database. A field "key" is what they are found by.
struct CloudRecordType
{
    enum class Value { Text, Integer, Real, Moment };
    struct Field
    {
        QString name;
        Value value;
    };

    QString name;
    QList<Field> fields;
};

/// A connection to the private database: a table of the record type's name with a column for each field,
/// moments in milliseconds since 1970. Made, used and destroyed on one thread; every call waits for the
/// database.
class CloudConnection
{
public:
    CloudConnection(CloudHome home, const CloudRecordType &type);
    ~CloudConnection();
    CloudConnection(const CloudConnection &) = delete;
    CloudConnection &operator=(const CloudConnection &) = delete;

    /// Opens the connection unless it is open.
    bool open();
    void close();
    /// False when the connection has been lost. Not to be asked in a transaction that has failed.
    bool isAlive();
    /// The account's state, as the last attempt to open the connection has shown it.
    /// Looked up once in a transaction.
    CloudAccount account();
    /// Why the connection could not be opened.
    const QString &problem() const { return openProblem; }

    bool begin();
    bool commit();
    void rollback();

    CloudAnswer<std::vector<CloudRecord>> find(const CloudQuery &query);
    CloudAnswer<CloudRecord> save(const CloudRecord &record);
    CloudAnswer<CloudRecordID> remove(const CloudRecordID &id);

private:
    struct Statements
    {
        QSqlQuery all;
        QSqlQuery byKey;
        QSqlQuery insert;
        QSqlQuery update;
        QSqlQuery remove;
    };

    QSqlDatabase database() const;
    bool openEmbedded();
    bool openOnServer();
    bool createTable();
    bool prepare();
    bool hasRights() const;
    bool fail(CloudAccount state, const QString &problem);
    bool run(const QString &sql) const;
    CloudRecord recordOf(const QSqlQuery &query) const;
    void bind(QSqlQuery &statement, const CloudRecord &record) const;

    CloudHome home;
    const CloudRecordType &type;
    QString name;                           ///< of the QSqlDatabase connection
    std::unique_ptr<Statements> statements; ///< while the connection is open
    CloudAccount state = CloudAccount::CouldNotDetermine;
    bool isStateCurrent = false;
    QString openProblem;
};
