#include "contacts/PersistentContainer.h"

#include "platform/Diagnostics.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

using namespace Qt::StringLiterals;

namespace {

QSqlError refusal(const QString &reason)
{
    return QSqlError(QString(), reason, QSqlError::ConnectionError);
}

/// The first value that the statement yields, or why it yields none.
struct Answer
{
    Answer(const QSqlDatabase &database, const QString &statement)
    {
        QSqlQuery query(database);
        if (query.exec(statement) && query.next())
            value = query.value(0);
        else
            error = query.lastError();
    }

    QVariant value;
    QSqlError error;
};

} // namespace

PersistentContainer::PersistentContainer(const ObjectModel &objectModel, const QString &folder)
    : model(objectModel)
    , folderPath(folder)
    , storePath(folder + u'/' + objectModel.name + u".sqlite"_s)
    , context(objectModel.name + u' ' + QUuid::createUuid().toString(QUuid::WithoutBraces))
{
}

PersistentContainer::~PersistentContainer()
{
    QSqlDatabase::removeDatabase(context.connectionName());
}

void PersistentContainer::loadPersistentStores()
{
    const QSqlError failure = open();
    if (!failure.isValid()) {
        diagnostics::line("---Persistent Store---:", storePath, "SQLite");
        return;
    }
    close();
    problem = failure.databaseText();
    diagnostics::line("Unable to Add Persistent Store");
    const QString description =
        u"%1: %2, %3, code %4"_s.arg(storePath, failure.driverText(), problem, failure.nativeErrorCode());
    diagnostics::line(description + u", "_s + failure.text());
}

bool PersistentContainer::save()
{
    if (context.save())
        return true;
    const QString connection = context.connectionName();
    if (QSqlDatabase::database(connection, false).isOpen()) {
        problem = context.errorString();
        return false;
    }
    loadPersistentStores();
    if (!QSqlDatabase::database(connection, false).isOpen())
        return false;
    for (const Entity *entity : model.entities)
        context.fetch(
            {*entity}); // what could not be read before; with what is about to be saved it would be twice
    const bool isSaved = context.save();
    problem = isSaved ? QString() : context.errorString();
    return isSaved;
}

void PersistentContainer::close()
{
    QSqlDatabase::database(context.connectionName(), false).close();
}

QSqlError PersistentContainer::open() const
{
    const QString &connection = context.connectionName();
    QSqlDatabase database = QSqlDatabase::contains(connection)
                                ? QSqlDatabase::database(connection, false)
                                : QSqlDatabase::addDatabase(u"QSQLITE"_s, connection);
    database.setDatabaseName(storePath);
    database.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=1000"_s); // milliseconds
    if (!QDir().mkpath(folderPath))
        return refusal(u"the folder cannot be made"_s);
    // SQLite would wait for a pipe, and open a file for reading that cannot be written.
    if (const QFileInfo store(storePath); store.exists() && (!store.isFile() || !store.isWritable()))
        return refusal(u"the file cannot be written"_s);
    if (!database.open())
        return database.lastError();
    QSqlQuery transaction(database);
    if (!transaction.exec(u"BEGIN IMMEDIATE"_s))
        return transaction.lastError();
    const QSqlError error = prepare(database);
    if (!error.isValid() && !transaction.exec(u"COMMIT"_s))
        return transaction.lastError();
    return error;
}

QSqlError PersistentContainer::prepare(QSqlDatabase &database) const
{
    const Answer version(database, u"PRAGMA user_version"_s);
    const Answer tables(database, u"SELECT count(*) FROM sqlite_master"_s);
    for (const Answer *answer : {&version, &tables})
        if (answer->error.isValid())
            return answer->error;
    if (version.value.toInt() == 0 && tables.value.toInt() == 0)
        return createTables(database);
    if (version.value.toInt() > model.version)
        return refusal(u"the file was written by a newer version of the program"_s);
    const Answer check(database, u"PRAGMA quick_check(1)"_s);
    if (check.error.isValid() || check.value.toString() != u"ok")
        return check.error.isValid() ? check.error : refusal(check.value.toString());
    for (const Entity *entity : model.entities)
        if (QSqlQuery query(database); !query.prepare(
                u"SELECT id, \"%1\" FROM \"%2\""_s.arg(entity->attributes.join(u"\", \""_s), entity->name)))
            return query.lastError();
    return {};
}

QSqlError PersistentContainer::createTables(const QSqlDatabase &database) const
{
    QSqlQuery query(database);
    for (const Entity *entity : model.entities)
        if (!query.exec(u"CREATE TABLE \"%1\" (id INTEGER PRIMARY KEY AUTOINCREMENT, \"%2\" TEXT)"_s.arg(
                entity->name, entity->attributes.join(u"\" TEXT, \""_s))))
            return query.lastError();
    return query.exec(u"PRAGMA user_version = %1"_s.arg(model.version)) ? QSqlError() : query.lastError();
}
