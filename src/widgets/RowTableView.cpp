#include "widgets/RowTableView.h"

#include <QKeyEvent>

#include <algorithm>

void RowTableView::keyPressEvent(QKeyEvent *event)
{
    const bool isStep = (event->key() == Qt::Key_Down || event->key() == Qt::Key_Up) &&
                        event->modifiers() == Qt::NoModifier && state() != EditingState;
    if (isStep && !wasSelected && model()->rowCount() > 0)
        selectRow(std::max(currentIndex().row(), 0));
    else
        QTableView::keyPressEvent(event);
}

void RowTableView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QTableView::selectionChanged(selected, deselected);
    wasSelected = wasSelected || !selected.isEmpty();
}

QModelIndex RowTableView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    const int column = std::max(currentIndex().column(), 0);
    if (action == MoveHome)
        return model()->index(0, column);
    if (action == MoveEnd)
        return model()->index(model()->rowCount() - 1, column);
    return QTableView::moveCursor(action, modifiers);
}
