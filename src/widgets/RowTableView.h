#pragma once

#include <QTableView>

/// A table of which rows are selected. As long as none has been, a step of the keyboard selects the current
/// row, which is the first one, and does not go beyond it. Home and End go to the first and the last row.
class RowTableView : public QTableView
{
    Q_OBJECT

public:
    using QTableView::QTableView;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;

private:
    bool wasSelected = false;
};
