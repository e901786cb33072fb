#pragma once

#include <QList>
#include <QObject>

class QHeaderView;
class QMenu;
class QTableView;

/// The columns of the task table as the user has arranged them: their order, their widths and which of them
/// are hidden. Width that is left over goes to the columns with the longest texts, as long as the user has
/// given them no width of their own, and is not kept.
class TableColumns : public QObject
{
    Q_OBJECT

public:
    /// \param view  has its model already
    explicit TableColumns(QTableView &view);

    /// The width that the user has chosen, in pixels, without what was left over.
    int width(int column) const { return chosen[column]; }
    void setWidth(int column, int width);
    /// The order, widths and hidden columns of a first start.
    void reset();
    /// Shares out what is left over anew.
    void layOut();
    QHeaderView &header() const;
    /// Fills the menu with what can be done with the columns: sorting by, hiding, sizing and moving the one
    /// that has been right-clicked, else that of the current cell; and which ones are shown.
    void fill(QMenu &menu);

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void addCommands(QMenu &menu, int column);
    void addVisibility(QMenu &menu);
    void setHidden(int column, bool isHidden);
    bool mayHide(int column) const;
    void move(int column, int step);
    void widen(int column, int pixels);

    QTableView &view;
    QList<int> chosen;
    int clicked = -1; ///< whose menu is open
    bool isLayingOut = false;
};
