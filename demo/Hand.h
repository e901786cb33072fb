#pragma once

#include "Stage.h"

#include <QAction>
#include <QDialog>
#include <QModelIndex>

#include <functional>

class QComboBox;
class QMainWindow;
class QMenu;
class QTableView;

/// Does with the program's widgets what a user's hand would do, by mouse and key events.
///
/// What a user could not do, such as clicking a disabled button, ends the tour.
namespace hand {

/// The widget or action of this object name.
template <typename Child>
Child &child(const QObject &parent, const QString &objectName = {})
{
    auto *found = parent.findChild<Child *>(objectName);
    require(found != nullptr, objectName + QLatin1StringView(": not in the window"));
    return *found;
}

/// Lets the program do what is queued for it, such as laying out the rows of a changed table. Ends, whatever
/// other threads go on queueing.
void settle();
/// Waits until this holds, however slow the machine is.
void waitFor(const std::function<bool()> &condition, const QString &what);
/// Waits until key strokes reach the window.
void activate(QWidget &window);

void click(QWidget &widget);
/// Clicks the cell, which is brought into sight first.
void clickCell(QTableView &table, const QModelIndex &cell);
void doubleClickCell(QTableView &table, const QModelIndex &cell);
void clickHeader(QTableView &table, int column);

/// Puts the keyboard focus on the widget, then strikes the key.
void press(QWidget &widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
/// Strikes the key wherever the focus is in the window.
void shortcut(QWidget &window, Qt::Key key, Qt::KeyboardModifiers modifiers);
/// Types one character.
void type(QWidget &widget, QChar character);

/// Types the text over the one that the field holds.
void fill(QWidget &field, const QString &text);
/// Types the text wherever the focus is in the window.
void typeInto(const QWidget &window, const QString &text);

/// The window of this object name that the program has open.
QDialog &openWindow(const QString &objectName);
/// The menu that is open.
QMenu &openPopup();
/// Opens the menu of the menu bar that has this title.
QMenu &openMenu(const QMainWindow &window, const QString &title);
/// Clicks the open menu's entry of this text.
void choose(QMenu &menu, const QString &text);
void choose(const QMainWindow &window, const QString &menuTitle, const QString &text);
/// Clicks the tool bar's button of this action.
void clickTool(const QMainWindow &window, const QString &actionName);
/// Picks the entry from the box by the arrow keys.
void pick(QComboBox &box, const QString &entry);

} // namespace hand
