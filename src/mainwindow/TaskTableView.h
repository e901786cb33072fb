#pragma once

#include "widgets/RowTableView.h"

class TaskTable;

/// The task table on screen: large rows, vertical grid lines, one selected row.
class TaskTableView : public RowTableView
{
    Q_OBJECT

public:
    using RowTableView::RowTableView;

    /// Takes the table to show and gives the columns the widths of a first start.
    void setTable(TaskTable &table);
    /// Sets large rows and solid vertical grid lines only.
    void setLargeRows();

    /// Builds the view anew and shows it at the same place. No row is selected then, but the arrow keys go on
    /// from where they were. \param view  the position chosen in the view chooser
    void reloadData(int view);

    /// The selected row, or −1.
    int selectedRow() const;
    /// The key that the selected row shows; empty when no row is selected.
    QString keyOfSelectedRow() const;
    /// Selects just the row that shows this key, if there is one.
    void selectRowOfKey(const QString &key);
    /// Selects and points out the first row that shows one of these keys; false when there is none.
    bool selectFirstOf(const QStringList &keys);
    /// Scrolls to the row that shows this key, if there is one, and marks it for a moment.
    void pointOut(const QString &key);

    /// The row of the last double click, or −1 when it was below the rows.
    int clickedRow() const { return rowOfDoubleClick; }

signals:
    void doubleAction();

protected:
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int rowOfDoubleClick = -1;
    TaskTable *table = nullptr;
    QString pointedOut; ///< the key that is marked
};
