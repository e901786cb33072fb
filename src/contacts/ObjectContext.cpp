#include "contacts/ObjectContext.h"

#include "platform/Diagnostics.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// The driver takes a null string for an absent value.
QVariant storedValue(const std::optional<QString> &value)
{
    if (!value)
        return QVariant(QMetaType(QMetaType::QString));
    return value->isNull() ? u""_s : *value;
}

/// The entity's columns, each followed by the text.
QString columns(const Entity &entity, const QString &after)
{
    QStringList list;
    for (const QString &attribute : entity.attributes)
        list.append(u'"' + attribute + u'"' + after);
    return list.join(u", "_s);
}

/// A statement that is prepared once, when it is first run.
class Statement
{
public:
    /// \param problem  is told why a run failed
    Statement(const QSqlDatabase &database, QString sql, QString &problem)
        : query(database)
        , text(std::move(sql))
        , error(problem)
    {
    }

    /// \param id  0 when the statement has no place for it
    bool run(const std::vector<std::optional<QString>> &values, qint64 id = 0)
    {
        if (!prepared && !query.prepare(text))
            return fail();
        prepared = true;
        int position = 0;
        for (const std::optional<QString> &value : values)
            query.bindValue(position++, storedValue(value));
        if (id != 0)
            query.bindValue(position, id);
        return query.exec() || fail();
    }

    qint64 insertedId() const { return query.lastInsertId().toLongLong(); }

private:
    bool fail()
    {
        error = query.lastError().databaseText();
        return false;
    }

    QSqlQuery query;
    QString text;
    QString &error;
    bool prepared = false;
};

} // namespace

std::vector<ManagedObject> ObjectContext::fetch(const FetchRequest &request)
{
    Records &records = recordsOf[&request.entity];
    if (!version)
        version = storeVersion(); // before the records, which may be newer then but not older
    if (!records.fetched)
        if (std::optional<std::deque<Record>> stored = read(request.entity)) {
            records.stored = std::move(*stored);
            records.fetched = true;
        }
    std::vector<ManagedObject> objects;
    objects.reserve(records.stored.size() + records.added.size());
    for (std::deque<Record> *list : {&records.stored, &records.added})
        for (Record &record : *list)
            if (!record.isDeleted)
                objects.push_back(ManagedObject(record));
    return objects;
}

/// A number that changes when another connection has changed the store; none when that cannot be told.
std::optional<qint64> ObjectContext::storeVersion() const
{
    const QSqlDatabase database = QSqlDatabase::database(connection, false);
    if (!database.isOpen())
        return std::nullopt;
    QSqlQuery query(database);
    return query.exec(u"PRAGMA data_version"_s) && query.next() ? std::optional(query.value(0).toLongLong())
                                                                : std::nullopt;
}

ObjectContext::Refresh ObjectContext::refresh()
{
    if (!QSqlDatabase::database(connection, false).isOpen())
        return Refresh::Unchanged; // there is no store
    const std::optional<qint64> newVersion = storeVersion();
    if (!newVersion)
        return Refresh::Failed;
    if (newVersion == version)
        return Refresh::Unchanged;
    std::map<Records *, std::deque<Record>> newest;
    for (auto &[entity, records] : recordsOf) {
        if (!records.fetched)
            continue;
        std::optional<std::deque<Record>> stored = read(*entity);
        if (!stored)
            return Refresh::Failed;
        newest[&records] = std::move(*stored);
    }
    for (auto &[records, stored] : newest)
        merge(*records, std::move(stored));
    version = newVersion;
    return Refresh::Changed;
}

void ObjectContext::merge(Records &records, std::deque<Record> newest)
{
    QHash<qint64, Record *> known;
    for (std::deque<Record> *list : {&records.stored, &records.added})
        for (Record &record : *list)
            if (record.id != 0)
                known.insert(record.id, &record);
    for (Record &stored : newest) {
        Record *record = known.take(stored.id);
        if (!record) {
            records.added.push_back(std::move(stored));
            continue;
        }
        if (!record->isChanged)
            record->values = std::move(stored.values);
        if (!std::exchange(record->isStored, true))
            record->isDeleted = false; // somebody has brought it back
    }
    for (Record *gone : std::as_const(known)) {
        if (!std::exchange(gone->isStored, false))
            continue;
        if (gone->isChanged)
            gone->id = 0; // and is stored anew
        else
            gone->isDeleted = true;
    }
}

std::optional<std::deque<ObjectContext::Record>> ObjectContext::read(const Entity &entity) const
{
    const QSqlDatabase database = QSqlDatabase::database(connection, false);
    if (!database.isOpen())
        return std::nullopt;
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(u"SELECT id, %1 FROM \"%2\" ORDER BY id"_s.arg(columns(entity, {}), entity.name)))
        return std::nullopt;
    std::deque<Record> records;
    const int attributes = int(entity.attributes.size());
    while (query.next()) {
        Record &record = records.emplace_back(Record{.id = query.value(0).toLongLong(), .isStored = true});
        record.values.reserve(size_t(attributes));
        for (int column = 1; column <= attributes; ++column) {
            const QVariant value = query.value(column);
            record.values.push_back(value.isNull() ? std::nullopt : std::optional(value.toString()));
        }
    }
    if (query.lastError().isValid())
        return std::nullopt;
    return records;
}

void ObjectContext::deleteObject(const ManagedObject &object)
{
    object.record->isDeleted = true;
}

void ObjectContext::restoreObject(const ManagedObject &object)
{
    object.record->isDeleted = false;
}

bool ObjectContext::save()
{
    if (!hasChanges())
        return true;
    QSqlDatabase database = QSqlDatabase::database(connection, false);
    const auto fail = [this, &database] {
        error = database.lastError().databaseText();
        return false;
    };
    if (!database.isOpen() || !database.transaction())
        return fail();
    NewIds newIds;
    if (!write(database, newIds) || !(database.commit() || fail())) {
        database.rollback();
        return false;
    }
    settle(newIds);
    return true;
}

bool ObjectContext::hasChanges() const
{
    const auto isPending = [](const Record &record) {
        return record.isStored ? record.isDeleted || record.isChanged : !record.isDeleted;
    };
    return std::ranges::any_of(recordsOf, [&](const auto &entry) {
        return std::ranges::any_of(entry.second.stored, isPending) ||
               std::ranges::any_of(entry.second.added, isPending);
    });
}

bool ObjectContext::write(const QSqlDatabase &database, NewIds &newIds)
{
    return std::ranges::all_of(
        recordsOf, [&](auto &entry) { return write(database, *entry.first, entry.second, newIds); });
}

bool ObjectContext::write(const QSqlDatabase &database, const Entity &entity, Records &records,
                          NewIds &newIds)
{
    const QString places = QStringList(entity.attributes.size(), u"?"_s).join(u", "_s);
    Statement insert(database,
                     u"INSERT INTO \"%1\" (%2) VALUES (%3)"_s.arg(entity.name, columns(entity, {}), places),
                     error);
    // Another context may have brought it back as well.
    Statement restore(database,
                      u"INSERT OR REPLACE INTO \"%1\" (%2, id) VALUES (%3, ?)"_s.arg(
                          entity.name, columns(entity, {}), places),
                      error);
    Statement update(
        database, u"UPDATE \"%1\" SET %2 WHERE id = ?"_s.arg(entity.name, columns(entity, u" = ?"_s)), error);
    Statement remove(database, u"DELETE FROM \"%1\" WHERE id = ?"_s.arg(entity.name), error);
    const auto writeRecord = [&](Record &record) {
        if (record.isStored)
            return record.isDeleted   ? remove.run({}, record.id)
                   : record.isChanged ? update.run(record.values, record.id)
                                      : true;
        if (record.id != 0)
            return record.isDeleted || restore.run(record.values, record.id);
        if (!insert.run(record.values))
            return false;
        newIds.emplace_back(&record, insert.insertedId());
        // One that was deleted before it could be stored has its place as well, should it be restored.
        return !record.isDeleted || remove.run({}, insert.insertedId());
    };
    return std::ranges::all_of(records.stored, writeRecord) &&
           std::ranges::all_of(records.added, writeRecord);
}

void ObjectContext::settle(const NewIds &newIds)
{
    for (const auto &[record, id] : newIds)
        record->id = id;
    for (auto &[entity, records] : recordsOf)
        for (std::deque<Record> *list : {&records.stored, &records.added})
            for (Record &record : *list) {
                record.isChanged = false;
                record.isStored = !record.isDeleted;
            }
}

ManagedObject::ManagedObject(const Entity &entity, ObjectContext &context)
    : record(&context.recordsOf[&entity].added.emplace_back())
{
    record->values.resize(size_t(entity.attributes.size()));
}

void ManagedObject::setValue(size_t attribute, const std::optional<QString> &text)
{
    std::optional<QString> &value = record->values[attribute];
    record->isChanged = record->isChanged || value != text;
    value = text;
}

void appendItem(QByteArray &line, const ObjectContext &context)
{
    diagnostics::appendItem(line, u"<ObjectContext: %1>"_s.arg(context.connectionName()));
}
