#include "mainwindow/TaskTableView.h"

#include "mainwindow/TaskTable.h"
#include "widgets/TaskRowDelegate.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>

#include <chrono>

void TaskTableView::setTable(TaskTable &shown)
{
    table = &shown;
    setModel(table);
    setItemDelegate(new TaskRowDelegate(this));
    for (const TaskColumnInfo &info : taskColumns())
        setColumnWidth(int(info.column), info.width);
}

void TaskTableView::setLargeRows()
{
    constexpr int largeRow = 30; // pixels
    verticalHeader()->setDefaultSectionSize(largeRow);
    setShowGrid(false); // the delegate draws the vertical lines, and there are no others
}

void TaskTableView::reloadData(int view)
{
    const QModelIndex current = currentIndex();
    const QPoint place(horizontalScrollBar()->value(), verticalScrollBar()->value());
    table->reloadData(view);
    const int row = qMax(0, qMin(current.row(), table->rowCount() - 1));
    selectionModel()->setCurrentIndex(table->index(row, qMax(current.column(), 0)),
                                      QItemSelectionModel::NoUpdate);
    horizontalScrollBar()->setValue(place.x());
    verticalScrollBar()->setValue(place.y());
}

int TaskTableView::selectedRow() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.constFirst().row();
}

QString TaskTableView::keyOfSelectedRow() const
{
    const int row = selectedRow();
    return row < 0 ? QString() : table->keyOfRow(row);
}

void TaskTableView::selectRowOfKey(const QString &key)
{
    if (const int row = key.isEmpty() ? -1 : table->rowOfKey(key); row >= 0)
        selectRow(row);
}

bool TaskTableView::selectFirstOf(const QStringList &keys)
{
    const QSet<QString> wanted(keys.begin(), keys.end());
    for (int row = 0; row < table->rowCount() && !wanted.isEmpty(); ++row)
        if (const QString key = table->keyOfRow(row); wanted.contains(key)) {
            selectRow(row);
            pointOut(key);
            return true;
        }
    return false;
}

void TaskTableView::pointOut(const QString &key)
{
    constexpr std::chrono::milliseconds moment(1500);
    const int row = table->rowOfKey(key);
    if (row < 0)
        return;
    scrollTo(table->index(row, int(TaskColumn::Name)));
    pointedOut = key;
    viewport()->update();
    QTimer::singleShot(moment, this, [this, key] {
        if (pointedOut == key)
            pointedOut.clear();
        viewport()->update();
    });
}

void TaskTableView::paintEvent(QPaintEvent *event)
{
    RowTableView::paintEvent(event);
    const int row = pointedOut.isEmpty() ? -1 : table->rowOfKey(pointedOut);
    if (row < 0)
        return;
    QPainter painter(viewport());
    painter.setPen(QPen(palette().color(QPalette::Highlight), 3));
    painter.drawRect(1, rowViewportPosition(row) + 1, viewport()->width() - 3, rowHeight(row) - 3);
}

void TaskTableView::mouseDoubleClickEvent(QMouseEvent *event)
{
    RowTableView::mouseDoubleClickEvent(event);
    if (event->button() != Qt::LeftButton)
        return;
    rowOfDoubleClick = indexAt(event->position().toPoint()).row();
    emit doubleAction();
}
