#pragma once

#include "platform/Calendar.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>
#include <utility>
#include <variant>
#include <vector>

/// The value of a record's field; a moment is held to the millisecond.
using CloudValue = std::variant<QString, qint64, double, Instant>;

/// Names a record within the private database.
struct CloudRecordID
{
    QString recordName;
};

/// A record of the private database: values by field name.
class CloudRecord
{
public:
    /// A new record, which is not in the database before it is saved.
    CloudRecord(const QString &recordType, const CloudRecordID &recordId)
        : type(recordType)
        , id(recordId)
    {
    }

    const QString &recordType() const { return type; }
    const CloudRecordID &recordID() const { return id; }

    /// The field's value, or nothing when the record lacks it.
    std::optional<CloudValue> value(const QString &field) const;
    void setValue(const QString &field, CloudValue value);
    const std::vector<std::pair<QString, CloudValue>> &fields() const { return values; }

    /// True when the record was fetched; saving it then changes the one in the database.
    bool isFetched = false;

private:
    QString type;
    CloudRecordID id;
    std::vector<std::pair<QString, CloudValue>> values; // few: looked through faster than a map
};

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

/// Asks for the records of a type: for all of them, or for those with this text in their field "key".
struct CloudQuery
{
    QString recordType;
    std::optional<QString> key = {};
};

/// The state of the user's account with the cloud.
enum class CloudAccount { CouldNotDetermine, Available, Restricted, NoAccount };

/// Why a request failed.
struct CloudError
{
    enum class Reason {
        Unreachable, ///< there was no connection to be had
        Lost,        ///< the connection broke; what was asked may have been done
        SignedOut,
        Refused,    ///< the account may not do that
        Busy,       ///< somebody else keeps the database or a record to himself
        NoSpace,    ///< on the cloud's disk
        Unsuitable, ///< the database cannot hold a value
        Gone,       ///< the record is no longer there
        Damaged,    ///< the database is
        Stopped,    ///< before it was begun
        Other,
    };

    Reason reason = Reason::Other;
    QString text = {}; ///< what the database said

    /// Whether the account's state says as much.
    bool isOfAccount() const { return reason == Reason::SignedOut || reason == Reason::Refused; }
    /// For the user, as the end of a sentence: "…, since the cloud cannot be reached".
    QString plainWords() const;
};

/// What a request yields, or why it failed.
template <typename Result>
using CloudAnswer = std::variant<Result, CloudError>;

/// The user's private database in the cloud.
///
/// Every request is answered exactly once, by a call of its handler on a thread that is never the main one
/// and holds no lock, so that handlers may send requests. Requests do not wait for one another's answers, and
/// the order of answers is not promised. A handler may be called after whoever sent the request is gone: it
/// owns what it uses. A request that has not been begun when its token asks to stop is answered with an
/// error.
class CloudDatabase
{
public:
    virtual ~CloudDatabase() = default;

    /// Fetches all matching records, however many.
    virtual void performQuery(const CloudQuery &query, const std::stop_token &stop,
                              std::function<void(CloudAnswer<std::vector<CloudRecord>>)> handler) = 0;
    /// Stores all fields of a new record, or changes a fetched one; an error when that is no longer there.
    virtual void saveRecord(const CloudRecord &record, const std::stop_token &stop,
                            std::function<void(CloudAnswer<CloudRecord>)> handler) = 0;
    virtual void deleteRecord(const CloudRecordID &id,
                              std::function<void(CloudAnswer<CloudRecordID>)> handler) = 0;
};

/// The program's place in the cloud: the state of the user's account and the private database.
///
/// It outlives everybody who sends requests. When it is destroyed, what has not been done, and what handlers
/// still send, is answered with an error before the destructor returns.
class CloudContainer
{
public:
    virtual ~CloudContainer() = default;

    /// Answered as the requests to the database are.
    virtual void accountStatus(std::function<void(CloudAnswer<CloudAccount>)> handler) = 0;
    virtual CloudDatabase &privateCloudDatabase() = 0;
    /// Where the container is, for diagnostics; without secrets.
    virtual QString description() const = 0;
    /// Waits until every request has been answered, also those that handlers send; false when that takes
    /// longer than the limit. Not to be called by a handler.
    virtual bool finish(std::chrono::nanoseconds limit) = 0;
};

/// In a diagnostic line, a record is written as its type, name and fields.
void appendItem(QByteArray &line, const CloudRecord &record);
