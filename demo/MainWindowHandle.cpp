#include "MainWindowHandle.h"

#include "ExpectedList.h"
#include "Hand.h"
#include "Stage.h"

#include <QComboBox>
#include <QImage>
#include <QLineEdit>
#include <QTableView>
#include <QToolButton>

using namespace Qt::StringLiterals;

MainWindowHandle::MainWindowHandle(QMainWindow &mainWindow)
    : window(mainWindow)
    , table(hand::child<QTableView>(window, u"tblView"_s))
    , viewChooser(hand::child<QComboBox>(window, u"viewSelection"_s))
    , searchField(hand::child<QLineEdit>(window, u"searchField"_s))
    , editButton(hand::child<QToolButton>(window, u"editButton"_s))
    , deleteButton(hand::child<QToolButton>(window, u"deleteButton"_s))
    , hideButton(hand::child<QToolButton>(window, u"hideButton"_s))
    , cloneButton(hand::child<QToolButton>(window, u"cloneButton"_s))
    , closeButton(hand::child<QToolButton>(window, u"closeButton"_s))
    , upperButton(hand::child<QToolButton>(window, u"upperButton"_s))
    , downerButton(hand::child<QToolButton>(window, u"downerButton"_s))
    , shareButton(hand::child<QToolButton>(window, u"shareButton"_s))
{
}

int MainWindowHandle::column(const QString &title) const
{
    const QAbstractItemModel &model = *table.model();
    for (int column = 0; column < model.columnCount(); ++column)
        if (model.headerData(column, Qt::Horizontal).toString() == title)
            return column;
    throw TourFailure(title + u": no such column"_s);
}

QStringList MainWindowHandle::texts(const QString &columnTitle) const
{
    const QAbstractItemModel &model = *table.model();
    const int wanted = column(columnTitle);
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts.append(model.index(row, wanted).data().toString());
    return texts;
}

QString MainWindowHandle::text(int row, const QString &columnTitle) const
{
    return texts(columnTitle).value(row);
}

QStringList MainWindowHandle::taskNames() const
{
    return texts(u"Task"_s);
}

int MainWindowHandle::rowOf(const QString &taskName) const
{
    const qsizetype row = taskNames().indexOf(taskName);
    require(row >= 0, taskName + u": not in this view"_s);
    return int(row);
}

int MainWindowHandle::selectedRow() const
{
    const QModelIndexList rows = table.selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.constFirst().row();
}

QColor MainWindowHandle::paintedColor(int row) const
{
    const QModelIndex cell = table.model()->index(row, column(u"Task"_s));
    table.scrollTo(cell);
    const QPoint corner = table.visualRect(cell).topLeft() + QPoint(1, 1);
    return table.viewport()->grab(QRect(corner, QSize(1, 1))).toImage().pixelColor(0, 0);
}

void MainWindowHandle::selectTask(const QString &name) const
{
    hand::clickCell(table, table.model()->index(rowOf(name), column(u"Task"_s)));
}

void MainWindowHandle::showView(TaskView view) const
{
    const int digit = (int(view) + 1) % 10;
    hand::shortcut(window, Qt::Key(Qt::Key_0 + digit), Qt::ControlModifier);
}

void MainWindowHandle::checkView(Stage &stage, const ExpectedList &expected, TaskView view) const
{
    const QStringList names = expected.namesIn(view);
    stage.same(viewChooser.currentIndex(), int(view), u"the chosen view"_s);
    stage.same(table.model()->rowCount(), names.size(), u"rows in view "_s + viewChooser.currentText());
    QStringList shown = taskNames();
    shown.sort();
    stage.same(shown, names, u"tasks in view "_s + viewChooser.currentText());
}

void MainWindowHandle::checkTaskButtons(Stage &stage, bool enabled) const
{
    for (const QToolButton *button :
         {&editButton, &deleteButton, &hideButton, &cloneButton, &closeButton, &shareButton})
        stage.same(button->isEnabled(), enabled, button->objectName() + u" enabled"_s);
}
