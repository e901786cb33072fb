#include "mainwindow/TaskTableView.h"

#include "mainwindow/TaskTable.h"
#include "widgets/TaskRowDelegate.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>

#include <chrono>

TaskTableView &TaskTableView::showing(TaskTable &shown)
{
    table = &shown;
    setModel(table);
    setItemDelegate(new TaskRowDelegate(this));
    setDragDropOverwriteMode(false); // rows are dropped between rows
    return *this;
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

void TaskTableView::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && selectedRow() >= 0)
        emit opened();
    else
        RowTableView::keyPressEvent(event);
}

void TaskTableView::keyboardSearch(const QString &letters)
{
    const bool isContinued =
        sinceTyped.isValid() && !sinceTyped.hasExpired(QApplication::keyboardInputInterval());
    sinceTyped.start();
    // The same letter again goes on to the next such name.
    const bool isRepeated = isContinued && typed == letters;
    typed = isContinued && !isRepeated ? typed + letters : letters;
    const int rows = table->rowCount();
    const int first = selectedRow() + (isContinued && !isRepeated ? 0 : 1);
    for (int step = 0; step < rows; ++step) {
        const int row = (std::max(first, 0) + step) % rows;
        if (table->cellText(row, TaskColumn::Name).startsWith(typed, Qt::CaseInsensitive)) {
            selectRow(row);
            return;
        }
    }
}

QString TaskTableView::textOfSelectedRow() const
{
    const int row = selectedRow();
    QStringList texts;
    for (int place = 0; row >= 0 && place < horizontalHeader()->count(); ++place)
        if (const int column = horizontalHeader()->logicalIndex(place); !isColumnHidden(column))
            texts.append(table->cellText(row, TaskColumn(column)).simplified());
    return texts.join(u'\t');
}

void TaskTableView::contextMenuEvent(QContextMenuEvent *event)
{
    const bool isByMouse = event->reason() == QContextMenuEvent::Mouse;
    const QPoint place = isByMouse ? event->pos() : visualRect(currentIndex()).center();
    emit menuRequested(viewport()->mapToGlobal(place));
}

void TaskTableView::setRowsMovable(bool isOn)
{
    setDragDropMode(isOn ? InternalMove : NoDragDrop);
}

void TaskTableView::dropEvent(QDropEvent *event)
{
    const int from = selectedRow();
    const QModelIndex below = indexAt(event->position().toPoint());
    event->setDropAction(Qt::IgnoreAction); // the list is changed by who is told of it, not by the drag
    event->accept();
    stopAutoScroll();
    setState(NoState);
    viewport()->update();
    if (event->source() != this || from < 0)
        return;
    int gap = below.isValid() ? below.row() : table->rowCount();
    if (below.isValid() && event->position().y() > visualRect(below).center().y())
        ++gap;
    const int row = gap > from ? gap - 1 : gap;
    if (row != from)
        QMetaObject::invokeMethod( // once the drag has ended
            this, [this, row] { emit rowMoved(row); }, Qt::QueuedConnection);
}
