#include "widgets/MarkedField.h"

#include <QHideEvent>
#include <QLabel>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

MarkedField::MarkedField(QWidget *parent)
    : QLineEdit(parent)
{
    connect(this, &QLineEdit::textChanged, this, &MarkedField::unmark);
}

void MarkedField::mark(const QString &explanation)
{
    setAccessibleDescription(explanation);
    update();
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
    note->setText(explanation);
    placeNote();
    setFocus();
    selectAll();
}

void MarkedField::unmark()
{
    if (!note)
        return;
    setAccessibleDescription({});
    note->deleteLater();
    note.clear();
    update();
}

/// Below the field, as far as the window has room.
void MarkedField::placeNote()
{
    constexpr int widest = 320;
    const QPoint corner = mapTo(window(), rect().bottomLeft());
    note->setFixedWidth(std::min(widest, window()->width()));
    note->adjustSize();
    note->move(std::clamp(corner.x(), 0, std::max(0, window()->width() - note->width())), corner.y() + 2);
    note->raise();
    note->show();
}

/// The note follows the field when the window is laid out anew.
bool MarkedField::eventFilter(QObject *watched, QEvent *event)
{
    if (note && (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest))
        placeNote();
    return QLineEdit::eventFilter(watched, event);
}

void MarkedField::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous())
        unmark();
    QLineEdit::hideEvent(event);
}

void MarkedField::paintEvent(QPaintEvent *event)
{
    QLineEdit::paintEvent(event);
    if (!note)
        return;
    QPainter painter(this);
    painter.setPen(QPen(QColor(0xd0, 0x30, 0x30), 3));
    painter.drawRect(rect().adjusted(1, 1, -2, -2));
}
