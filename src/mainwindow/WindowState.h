#pragma once

#include "platform/IniFile.h"

class QHeaderView;
class QMainWindow;
class TableColumns;

/// Keeps the main window's size, the table's columns and the order of its rows from one start to the next, in
/// a file of its own beside the program's other state. Each value stands there as a plain number and is
/// checked when it is used.
class WindowState
{
public:
    explicit WindowState(const QString &stateFolder);

    /// Whether the user has put the tasks into an order of their own, which no column has.
    bool isOrderedByHand() const;
    /// What has not been kept, or cannot be used, stays as it is.
    void restore(QMainWindow &window, TableColumns &columns) const;
    void save(const QMainWindow &window, const TableColumns &columns);
    /// Keeps what the rows are ordered by.
    void saveOrder(const QHeaderView &header);

private:
    void restoreColumns(TableColumns &columns) const;
    void store(const QList<std::pair<QString, QString>> &values);

    IniFile file;
};
