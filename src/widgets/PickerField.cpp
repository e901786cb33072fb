#include "widgets/PickerField.h"

#include <QFocusEvent>
#include <QLabel>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

PickerField::PickerField(QWidget *parent)
    : QLineEdit(parent)
{
    connect(this, &QLineEdit::textEdited, this, [this] {
        isTyped = true;
        setUnreadable(false);
    });
}

void PickerField::showValue()
{
    isTyped = false;
    setUnreadable(false);
    setText(valueText());
}

bool PickerField::commit()
{
    if (!isTyped)
        return true;
    if (!take(text())) {
        complain();
        return false;
    }
    showValue();
    return true;
}

void PickerField::complain()
{
    setUnreadable(true);
    setFocus();
    selectAll();
}

void PickerField::setUnreadable(bool unreadable)
{
    isUnreadable = unreadable;
    setAccessibleDescription(unreadable ? explanation() : QString());
    update();
    if (!unreadable) {
        if (note)
            note->deleteLater();
        note.clear();
        return;
    }
    if (!note) {
        note = new QLabel(window());
        note->setObjectName(u"note"_s);
        note->setTextFormat(Qt::PlainText);
        note->setWordWrap(true);
        note->setAutoFillBackground(true);
        note->setForegroundRole(QPalette::ToolTipText);
        note->setBackgroundRole(QPalette::ToolTipBase);
        note->setFrameShape(QFrame::Box);
        note->setMargin(4);
        window()->installEventFilter(this);
    }
    note->setText(explanation());
    placeNote();
    note->show();
}

/// Below the field, as far as the window has room.
void PickerField::placeNote()
{
    constexpr int widest = 320;
    const QPoint corner = mapTo(window(), rect().bottomLeft());
    note->setFixedWidth(std::min(widest, window()->width()));
    note->adjustSize();
    note->move(std::clamp(corner.x(), 0, std::max(0, window()->width() - note->width())), corner.y() + 2);
    note->raise();
}

/// The note follows the field when the window is laid out anew.
bool PickerField::eventFilter(QObject *watched, QEvent *event)
{
    if (note && (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest))
        placeNote();
    return QLineEdit::eventFilter(watched, event);
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

void PickerField::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous())
        setUnreadable(false);
    QLineEdit::hideEvent(event);
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

void PickerField::paintEvent(QPaintEvent *event)
{
    QLineEdit::paintEvent(event);
    if (!isUnreadable)
        return;
    QPainter painter(this);
    painter.setPen(QPen(QColor(0xd0, 0x30, 0x30), 3));
    painter.drawRect(rect().adjusted(1, 1, -2, -2));
}
