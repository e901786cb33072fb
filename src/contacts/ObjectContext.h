#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <deque>
#include <map>
#include <optional>
#include <vector>

class QSqlDatabase;

/// A kind of record: its name and the names of its text attributes. Lives as long as the program.
struct Entity
{
    QString name;
    QStringList attributes;
};

/// A request for all records of an entity, in the order in which they were added.
struct FetchRequest
{
    const Entity &entity;
};

class ManagedObject;

/// The records of a store as one screen sees them: the store as it was when they were fetched, and the
/// screen's own changes, which stay in memory until they are saved.
///
/// Other contexts over the same store see saved changes of what they have not fetched yet, or when they are
/// refreshed. Without a store behind it there are no records but those added, and saving fails.
class ObjectContext
{
public:
    /// \param connectionName  the QSqlDatabase connection to the store; none when it is not open
    explicit ObjectContext(const QString &connectionName)
        : connection(connectionName)
    {
    }
    ObjectContext(const ObjectContext &) = delete;
    ObjectContext &operator=(const ObjectContext &) = delete;

    /// The records in store order, without those deleted. Empty when the store cannot be read.
    std::vector<ManagedObject> fetch(const FetchRequest &request);
    void deleteObject(const ManagedObject &object);
    /// Brings a deleted record back as the same record, also when its deletion was saved: it is then stored
    /// under the id that it had.
    void restoreObject(const ManagedObject &object);
    enum class Refresh { Unchanged, Changed, Failed };
    /// Brings the fetched records up to date when others have changed the store since: the screen's own
    /// changes stay, what others have added comes last, and what they have deleted is deleted here, too,
    /// unless it was changed here. On failure all stays as it was.
    Refresh refresh();
    /// Commits all changes in one transaction. On false the store is as it was and the changes are kept.
    bool save();
    /// Why the last save failed.
    const QString &errorString() const { return error; }

    const QString &connectionName() const { return connection; }

private:
    friend class ManagedObject;
    struct Record
    {
        qint64 id = 0; ///< 0 until it was first in the store
        std::vector<std::optional<QString>> values = {};
        bool isStored = false;
        bool isChanged = false;
        bool isDeleted = false;
    };
    struct Records
    {
        bool fetched = false;
        // Handles point into these.
        std::deque<Record> stored;
        std::deque<Record> added;
    };
    /// A record and the id that it has in the store once the transaction has been committed.
    using NewIds = std::vector<std::pair<Record *, qint64>>;

    std::optional<qint64> storeVersion() const;
    std::optional<std::deque<Record>> read(const Entity &entity) const;
    static void merge(Records &records, std::deque<Record> newest);
    bool write(const QSqlDatabase &database, NewIds &newIds);
    bool write(const QSqlDatabase &database, const Entity &entity, Records &records, NewIds &newIds);
    bool hasChanges() const;
    void settle(const NewIds &newIds);

    QString connection;
    std::optional<qint64> version; ///< of the store, not newer than what was fetched
    QString error;
    std::map<const Entity *, Records> recordsOf;
};

/// A record of a context: text attributes, each present or absent. A handle, valid as long as the context.
class ManagedObject
{
public:
    /// Adds a record to the context, all of its attributes absent.
    ManagedObject(const Entity &entity, ObjectContext &context);

    /// \param attribute  position in the entity's attributes
    const std::optional<QString> &value(size_t attribute) const { return record->values[attribute]; }
    void setValue(size_t attribute, const std::optional<QString> &text);
    bool isDeleted() const { return record->isDeleted; }
    /// Whether both are the same record.
    bool operator==(const ManagedObject &) const = default;

private:
    friend class ObjectContext;
    explicit ManagedObject(ObjectContext::Record &ofContext)
        : record(&ofContext)
    {
    }

    ObjectContext::Record *record;
};

/// In a diagnostic line, a context is written as its connection in angle brackets.
void appendItem(QByteArray &line, const ObjectContext &context);
