#pragma once

#include "model/TaskColumn.h"
#include "platform/Calendar.h"

#include <QAbstractTableModel>

class TaskManager;

/// The rows of the task table: one for each task of the chosen view, painted in the task's colour.
class TaskTable : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit TaskTable(TaskManager &manager, QObject *parent = nullptr);

    /// Builds the view anew and shows it.
    /// \param view  the position chosen in the view chooser
    void reloadData(int view);

    /// The text of one cell.
    QString cellText(qsizetype row, TaskColumn column) const;
    QString keyOfRow(qsizetype row) const { return cellText(row, TaskColumn::Key); }
    /// The last row that shows this key, or −1.
    int rowOfKey(const QString &key) const;
    /// Marks anew what is due today and what is overdue.
    void followDay();

    /// How many tasks the view shows, how many of these are open, and how many of those overdue.
    struct Counts
    {
        int shown = 0;
        int open = 0;
        int overdue = 0;
    };
    Counts counts() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    // Rows can be dragged, and dropped between others.
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;

private:
    void numberOfRows(int view);

    TaskManager &manager;
    Calendar::Day today;
};
