#pragma once

#include <QObject>

/// Keeps the wheel from changing a choice that the user is not at: it moves the window's content instead.
/// Installed as the application's event filter.
class WheelGuard : public QObject
{
    Q_OBJECT

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
