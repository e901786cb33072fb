#include "widgets/WheelGuard.h"

#include <QComboBox>
#include <QEvent>
#include <QLineEdit>

bool WheelGuard::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Wheel)
        return false;
    const auto *box = qobject_cast<const QComboBox *>(watched);
    if (!box || box->hasFocus() || (box->lineEdit() && box->lineEdit()->hasFocus()))
        return false;
    event->ignore(); // goes on to the window around it
    return true;
}
