#include "widgets/Screen.h"

#include <QShowEvent>

void bringToFront(QWidget &window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

void Screen::done(int result)
{
    if (viewShouldClose())
        QDialog::done(result);
}

void Screen::showEvent(QShowEvent *event)
{
    if (event->spontaneous()) {
        QDialog::showEvent(event);
        return;
    }
    viewWillAppear();
    QDialog::showEvent(event);
    viewDidAppear();
}

void Screen::hideEvent(QHideEvent *event)
{
    if (event->spontaneous()) {
        QDialog::hideEvent(event);
        return;
    }
    viewWillDisappear();
    QDialog::hideEvent(event);
    viewDidDisappear();
}
