#include "cloud/CloudConnection.h"

#include "cloud/SqlCloudError.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int recordsAtOnce = 1000;

using Value = CloudRecordType::Value;
using Reason = CloudError::Reason;

/// The value of a column as the field's type, or as what the database holds instead.
CloudValue valueOf(const QVariant &column, Value expected)
{
    switch (column.typeId()) {
    case QMetaType::LongLong:
    case QMetaType::ULongLong: // what the PostgreSQL driver makes of a bigint without a sign
        return expected == Value::Moment ? CloudValue(Instant(std::chrono::milliseconds(column.toLongLong())))
                                         : CloudValue(column.toLongLong());
    case QMetaType::Double:
        return column.toDouble();
    default:
        return column.toString();
    }
}

QVariant columnOf(const std::optional<CloudValue> &value)
{
    if (!value)
        return {};
    if (const auto *text = std::get_if<QString>(&*value))
        return text->isNull() ? u""_s : *text;
    if (const auto *moment = std::get_if<Instant>(&*value))
        return qint64(moment->time_since_epoch().count());
    if (const auto *real = std::get_if<double>(&*value))
        return *real;
    return std::get<qint64>(*value);
}

} // namespace

struct CloudConnection::Statements
{
    QSqlQuery all;
    QSqlQuery byKey;
    QSqlQuery insert;
    QSqlQuery update;
    QSqlQuery remove;
};

CloudConnection::CloudConnection(CloudHome cloudHome, const CloudRecordType &recordType)
    : home(std::move(cloudHome))
    , type(recordType)
    , name(u"cloud "_s + QUuid::createUuid().toString(QUuid::WithoutBraces))
{
}

CloudConnection::~CloudConnection()
{
    close();
}

QSqlDatabase CloudConnection::database() const
{
    return QSqlDatabase::database(name, false);
}

bool CloudConnection::open()
{
    if (statements)
        return true;
    const bool isOpen = home.kind == CloudHome::Kind::Embedded     ? openEmbedded()
                        : home.kind == CloudHome::Kind::PostgreSql ? openOnServer()
                        : home.kind == CloudHome::Kind::SignedOut
                            ? fail(CloudAccount::NoAccount, {Reason::SignedOut})
                            : fail(CloudAccount::CouldNotDetermine, {Reason::Other, home.problem});
    if (!isOpen)
        release();
    return isOpen;
}

bool CloudConnection::fail(CloudAccount account, const CloudError &problem)
{
    state = account;
    lastProblem = problem;
    return false;
}

void CloudConnection::close()
{
    release();
    state = CloudAccount::CouldNotDetermine;
}

void CloudConnection::release()
{
    statements.reset();
    if (QSqlDatabase::contains(name)) {
        database().close();
        QSqlDatabase::removeDatabase(name);
    }
}

bool CloudConnection::hasRights() const
{
    QSqlQuery query(database());
    return query.exec(
               u"SELECT has_table_privilege('\"%1\"', 'SELECT') AND has_table_privilege('\"%1\"', 'INSERT') "
               "AND has_table_privilege('\"%1\"', 'UPDATE') AND has_table_privilege('\"%1\"', 'DELETE')"_s
                   .arg(type.name)) &&
           query.next() && query.value(0).toBool();
}

bool CloudConnection::prepare()
{
    QStringList columns;
    QStringList places;
    QStringList changes;
    for (const CloudRecordType::Field &field : type.fields) {
        columns.append(u", \"%1\""_s.arg(field.name));
        places.append(u", ?"_s);
        changes.append(u"\"%1\" = ?"_s.arg(field.name));
    }
    const QString list = columns.join(QString());
    const auto prepared = [&](QSqlQuery &query, const QString &sql) {
        query = QSqlQuery(database());
        query.setForwardOnly(true);
        const bool isDone = query.prepare(sql);
        if (!isDone)
            lastProblem = sqlCloudError(query.lastError());
        return isDone;
    };
    statements = std::make_unique<Statements>();
    const bool isPrepared =
        prepared(statements->all,
                 u"SELECT seq, record_name%1 FROM \"%2\" WHERE seq > ? ORDER BY seq LIMIT %3"_s.arg(
                     list, type.name, QString::number(recordsAtOnce))) &&
        prepared(statements->byKey,
                 u"SELECT seq, record_name%1 FROM \"%2\" WHERE \"key\" = ?"_s.arg(list, type.name)) &&
        prepared(statements->insert, u"INSERT INTO \"%1\" (record_name%2) VALUES (?%3)"_s.arg(
                                         type.name, list, places.join(QString()))) &&
        prepared(statements->update,
                 u"UPDATE \"%1\" SET %2 WHERE record_name = ?"_s.arg(type.name, changes.join(u", "_s))) &&
        prepared(statements->remove, u"DELETE FROM \"%1\" WHERE record_name = ?"_s.arg(type.name));
    return isPrepared;
}

bool CloudConnection::run(const QString &sql)
{
    QSqlQuery query(database());
    const bool isDone = query.exec(sql);
    if (!isDone)
        lastProblem = sqlCloudError(query.lastError());
    return isDone;
}

bool CloudConnection::isAlive()
{
    return statements && run(u"SELECT 1"_s);
}

bool CloudConnection::begin()
{
    // SQLite would refuse to turn a transaction that has read into one that writes while another writes.
    if (home.kind == CloudHome::Kind::Embedded)
        return run(u"BEGIN IMMEDIATE"_s);
    if (!run(u"BEGIN"_s))
        return false;
    state = hasRights() ? CloudAccount::Available : CloudAccount::Restricted;
    return true;
}

bool CloudConnection::commit()
{
    return run(u"COMMIT"_s);
}

void CloudConnection::rollback()
{
    run(u"ROLLBACK"_s);
}

CloudAnswer<std::vector<CloudRecord>> CloudConnection::find(const CloudQuery &query)
{
    std::vector<CloudRecord> records;
    QSqlQuery &statement = query.key ? statements->byKey : statements->all;
    qint64 last = 0;
    size_t before = 0;
    do {
        before = records.size();
        statement.bindValue(0, query.key ? columnOf(*query.key) : QVariant(last));
        if (!statement.exec())
            return sqlCloudError(statement.lastError());
        while (statement.next()) {
            last = statement.value(0).toLongLong();
            records.push_back(recordOf(statement));
        }
        if (statement.lastError().isValid())
            return sqlCloudError(statement.lastError());
        statement.finish();
    } while (!query.key && records.size() - before == size_t(recordsAtOnce));
    return records;
}

CloudRecord CloudConnection::recordOf(const QSqlQuery &query) const
{
    CloudRecord record(type.name, {query.value(1).toString()});
    record.isFetched = true;
    int column = 2;
    for (const CloudRecordType::Field &field : type.fields) {
        if (const QVariant value = query.value(column++); !value.isNull())
            record.setValue(field.name, valueOf(value, field.value));
    }
    return record;
}

CloudAnswer<CloudRecord> CloudConnection::save(const CloudRecord &record)
{
    const auto cannotBeHeld = [this](const auto &field) {
        const auto *text = std::get_if<QString>(&field.second);
        return home.kind == CloudHome::Kind::PostgreSql && text && text->contains(QChar(0));
    };
    if (std::ranges::any_of(record.fields(), cannotBeHeld))
        return CloudError{Reason::Unsuitable};
    QSqlQuery &statement = record.isFetched ? statements->update : statements->insert;
    int place = 0;
    if (!record.isFetched)
        statement.bindValue(place++, record.recordID().recordName);
    for (const CloudRecordType::Field &field : type.fields)
        statement.bindValue(place++, columnOf(record.value(field.name)));
    if (record.isFetched)
        statement.bindValue(place, record.recordID().recordName);
    if (!statement.exec())
        return sqlCloudError(statement.lastError());
    if (statement.numRowsAffected() != 1)
        return CloudError{Reason::Gone};
    return record;
}

CloudAnswer<CloudRecordID> CloudConnection::remove(const CloudRecordID &id)
{
    statements->remove.bindValue(0, id.recordName);
    if (!statements->remove.exec())
        return sqlCloudError(statements->remove.lastError());
    return id;
}
