#pragma once

#include "widgets/RowTableView.h"

#include <QElapsedTimer>

class TaskTable;

/// The task table on screen: large rows, vertical grid lines, one selected row. Letters that are typed select
/// the next task whose name begins with them.
class TaskTableView : public RowTableView
{
    Q_OBJECT

public:
    using RowTableView::RowTableView;

    /// Takes the table to show; the view itself.
    TaskTableView &showing(TaskTable &table);
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
    /// Whether rows can be dragged to another place.
    void setRowsMovable(bool isOn);
    /// The texts of the selected row, as they stand in the shown columns, with tabulators between.
    QString textOfSelectedRow() const;
    void keyboardSearch(const QString &letters) override;

signals:
    void doubleAction();
    /// Return or Enter was pressed on a selected row.
    void opened();
    /// A menu is asked for, at this place of the screen.
    void menuRequested(const QPoint &place);
    /// The selected row was dropped so that it comes to stand at this row.
    void rowMoved(int row);

protected:
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    int rowOfDoubleClick = -1;
    TaskTable *table = nullptr;
    QString pointedOut; ///< the key that is marked
    QString typed;      ///< the letters of the name that is looked for
    QElapsedTimer sinceTyped;
};
