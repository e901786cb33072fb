#pragma once

#include "contacts/ObjectContext.h"

#include <QList>

class QSqlDatabase;
class QSqlError;

/// What a store holds.
struct ObjectModel
{
    QString name;
    int version; ///< kept in the store as SQLite's user_version; raised when the entities change
    QList<const Entity *> entities;
};

/// One screen's connection to the store of a model: the SQLite file `MODEL.sqlite` with a table for each
/// entity. Several containers, also of several programs, may have it open at once.
class PersistentContainer
{
public:
    /// \param folder  where the store is; made when needed
    PersistentContainer(const ObjectModel &model, const QString &folder);
    ~PersistentContainer();
    PersistentContainer(const PersistentContainer &) = delete;
    PersistentContainer &operator=(const PersistentContainer &) = delete;

    /// Opens the store, which is made when it is missing, and writes a diagnostic line about it. A store that
    /// is locked, cannot be written, is damaged or was written by a newer version is left as it is; the
    /// context then has no store behind it.
    void loadPersistentStores();
    /// Closes the store. The context keeps what it has fetched, and has no store behind it.
    void close();

    /// Saves the context's changes; a store that is not open is opened first.
    bool save();
    /// Why that failed, or why the store could not be opened.
    const QString &errorString() const { return problem; }

    ObjectContext &viewContext() { return context; }
    const QString &path() const { return storePath; }

private:
    QSqlError open() const;
    QSqlError prepare(QSqlDatabase &database) const;
    QSqlError createTables(const QSqlDatabase &database) const;

    const ObjectModel &model;
    QString folderPath;
    QString storePath;
    ObjectContext context;
    QString problem;
};
