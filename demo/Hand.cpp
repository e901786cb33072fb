#include "Hand.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTableView>
#include <QTest>
#include <QToolBar>

using namespace Qt::StringLiterals;

namespace hand {

namespace {

QString withoutMnemonic(QString text)
{
    return text.remove(u'&');
}

QAction &actionOf(const QWidget &menu, const QString &text)
{
    for (QAction *action : menu.actions())
        if (withoutMnemonic(action->text()) == text && action->isEnabled())
            return *action;
    throw TourFailure(text + u": not in the menu, or disabled"_s);
}

} // namespace

void settle()
{
    // What is done queues more: a table's rows its scroll bars, and those its rows again. No such chain is
    // longer than this.
    constexpr int rounds = 10;
    for (int round = 0; round < rounds; ++round)
        QCoreApplication::processEvents();
}

void waitFor(const std::function<bool()> &condition, const QString &what)
{
    constexpr int milliseconds = 60'000;
    require(QTest::qWaitFor(condition, milliseconds), what);
}

void activate(QWidget &window)
{
    settle();
    window.activateWindow();
    waitFor([&window] { return QApplication::activeWindow() == &window; },
            u"the window does not become the active one"_s);
}

void click(QWidget &widget)
{
    settle();
    require(widget.isVisible() && widget.isEnabled(), widget.objectName() + u": cannot be clicked"_s);
    // A check box takes clicks on its box and text only, not all over its room.
    const bool isBox = qobject_cast<QCheckBox *>(&widget) != nullptr;
    QTest::mouseClick(&widget, Qt::LeftButton, {},
                      isBox ? QPoint(widget.height() / 2, widget.height() / 2) : widget.rect().center());
}

void clickCell(QTableView &table, const QModelIndex &cell)
{
    require(cell.isValid(), u"no such cell"_s);
    settle();
    table.scrollTo(cell);
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, table.visualRect(cell).center());
}

void doubleClickCell(QTableView &table, const QModelIndex &cell)
{
    clickCell(table, cell);
    QTest::mouseDClick(table.viewport(), Qt::LeftButton, {}, table.visualRect(cell).center());
}

void clickHeader(QTableView &table, int column)
{
    settle();
    const QHeaderView *header = table.horizontalHeader();
    const QPoint middle(header->sectionViewportPosition(column) + header->sectionSize(column) / 2,
                        header->height() / 2);
    require(header->viewport()->rect().contains(middle), u"the header is not in sight"_s);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, middle);
}

void press(QWidget &widget, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    activate(*widget.window());
    widget.setFocus();
    require(widget.hasFocus(), widget.objectName() + u": does not take the focus"_s);
    QTest::keyClick(&widget, key, modifiers);
}

void shortcut(QWidget &window, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    activate(window);
    QWidget *focused = window.focusWidget();
    QTest::keyClick(focused ? focused : &window, key, modifiers);
}

void type(QWidget &widget, QChar character)
{
    require(widget.hasFocus(), widget.objectName() + u": does not have the focus"_s);
    QTest::sendKeyEvent(QTest::Click, &widget, Qt::Key_unknown, QString(character), Qt::NoModifier);
}

void fill(QWidget &field, const QString &text)
{
    press(field, Qt::Key_A, Qt::ControlModifier);
    typeInto(*field.window(), text);
}

void typeInto(const QWidget &window, const QString &text)
{
    QWidget *focused = window.focusWidget();
    require(focused != nullptr, u"nothing has the focus"_s);
    for (const QChar character : text)
        type(*focused, character);
}

QDialog &openWindow(const QString &objectName)
{
    settle();
    for (QWidget *window : QApplication::topLevelWidgets())
        if (auto *dialog = qobject_cast<QDialog *>(window);
            dialog && dialog->isVisible() && dialog->objectName() == objectName) {
            activate(*dialog);
            return *dialog;
        }
    throw TourFailure(objectName + u": is not open"_s);
}

QMenu &openPopup()
{
    settle();
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    require(menu != nullptr, u"no menu is open"_s);
    return *menu;
}

QMenu &openMenu(const QMainWindow &window, const QString &title)
{
    QMenuBar *bar = window.menuBar();
    QAction &entry = actionOf(*bar, title);
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(&entry).center());
    require(entry.menu() && entry.menu()->isVisible(), title + u": the menu does not open"_s);
    return *entry.menu();
}

void choose(QMenu &menu, const QString &text)
{
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(&actionOf(menu, text)).center());
    require(!menu.isVisible(), text + u": the menu does not close"_s);
}

void choose(const QMainWindow &window, const QString &menuTitle, const QString &text)
{
    choose(openMenu(window, menuTitle), text);
}

void clickTool(const QMainWindow &window, const QString &actionName)
{
    QWidget *button = child<QToolBar>(window).widgetForAction(&child<QAction>(window, actionName));
    require(button != nullptr, actionName + u": not in the tool bar"_s);
    click(*button);
}

void pick(QComboBox &box, const QString &entry)
{
    const int position = box.findText(entry);
    require(position >= 0, entry + u": not in the list"_s);
    press(box, Qt::Key_Home);
    while (box.currentIndex() < position)
        QTest::keyClick(&box, Qt::Key_Down);
}

} // namespace hand
