#include "widgets/PickerField.h"

#include <QFocusEvent>
#include <QWheelEvent>

PickerField::PickerField(QWidget *parent)
    : MarkedField(parent)
{
    connect(this, &QLineEdit::textEdited, this, [this] { isTyped = true; });
}

void PickerField::showValue()
{
    isTyped = false;
    unmark();
    setText(valueText());
}

bool PickerField::commit()
{
    if (!isTyped)
        return true;
    if (!take(text())) {
        mark(explanation());
        return false;
    }
    showValue();
    return true;
}

void PickerField::takeTyped()
{
    const QSignalBlocker quiet(this);
    if (isTyped && take(text()))
        showValue();
}

bool PickerField::event(QEvent *event)
{
    // Escape takes back what was typed; only then does it close the window.
    if (event->type() == QEvent::ShortcutOverride && isTyped &&
        static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape)
        event->accept();
    return QLineEdit::event(event);
}

void PickerField::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
        if (isTyped)
            showValue();
        else
            event->ignore();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (commit())
            selectAll();
        break;
    case Qt::Key_Up:
    case Qt::Key_Down:
        if (commit())
            step(event->key() == Qt::Key_Up ? 1 : -1, event->modifiers());
        break;
    default:
        QLineEdit::keyPressEvent(event);
    }
}

void PickerField::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    const bool isLeft = event->reason() != Qt::ActiveWindowFocusReason &&
                        event->reason() != Qt::PopupFocusReason && event->reason() != Qt::MenuBarFocusReason;
    if (!isLeft || !isTyped)
        return;
    // Queued: an answer to the new value may open a dialog, and the focus is on its way elsewhere.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (isVisible())
                commit();
        },
        Qt::QueuedConnection);
}

void PickerField::wheelEvent(QWheelEvent *event)
{
    if (!hasFocus() || event->angleDelta().y() == 0) {
        event->ignore(); // the wheel moves the window's content, not the value
        return;
    }
    if (commit())
        step(event->angleDelta().y() > 0 ? 1 : -1, event->modifiers());
}
