#pragma once

#include "cloud/CloudDatabase.h"
#include "cloud/CloudHome.h"

#include <memory>

class QSqlDatabase;
class QSqlQuery;

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
    /// The account's state is not known then.
    void close();
    /// False when the connection has been lost. Not to be asked in a transaction that has failed.
    bool isAlive();
    /// The account's state when the connection or the last transaction was begun.
    CloudAccount account() const { return state; }
    /// Why the connection could not be opened, or a transaction not be begun or committed.
    const CloudError &problem() const { return lastProblem; }

    bool begin();
    bool commit();
    void rollback();

    CloudAnswer<std::vector<CloudRecord>> find(const CloudQuery &query);
    CloudAnswer<CloudRecord> save(const CloudRecord &record);
    CloudAnswer<CloudRecordID> remove(const CloudRecordID &id);

private:
    struct Statements;

    QSqlDatabase database() const;
    void release();
    bool openEmbedded();
    bool openOnServer();
    bool createTable();
    bool prepare();
    bool hasRights() const;
    bool fail(CloudAccount state, const CloudError &problem);
    bool run(const QString &sql);
    CloudRecord recordOf(const QSqlQuery &query) const;

    CloudHome home;
    const CloudRecordType &type;
    QString name;                           ///< of the QSqlDatabase connection
    std::unique_ptr<Statements> statements; ///< while the connection is open
    CloudAccount state = CloudAccount::CouldNotDetermine;
    CloudError lastProblem;
};
