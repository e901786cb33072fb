#pragma once

#include "versions/ComparedVersion.h"

#include <QAbstractTableModel>

/// The tasks of an earlier version in the columns and colours of the task table, with a column in front that
/// tells what became of each until today.
class VersionTable : public QAbstractTableModel
{
    Q_OBJECT

public:
    static constexpr int sinceThenColumn = 0;

    using QAbstractTableModel::QAbstractTableModel;

    void show(const ComparedVersion &version);
    /// Has the tasks shown, too, that were added since, and marks what is different today.
    void setComparing(bool isComparing);
    /// Narrows the tasks to those that hold the text; an empty one shows all.
    void setFilter(const QString &text);

    const ComparedVersion &version() const { return shown; }
    const ComparedVersion::Row &rowAt(int row) const { return shown.rows()[visible[row]]; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void chooseRows();
    QString sinceThen(const ComparedVersion::Row &row) const;

    ComparedVersion shown;
    QList<qsizetype> visible; ///< places of rows
    bool isComparing = false;
    QString filter;
};
