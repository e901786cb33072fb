#include "widgets/ColorWell.h"

#include <QColorDialog>
#include <QPainter>
#include <QStyleOptionButton>

namespace {

Color chosenColor(const QColor &color)
{
    constexpr double most = 65535.0;
    const QRgba64 parts = color.rgba64();
    return {parts.red() / most, parts.green() / most, parts.blue() / most, parts.alpha() / most};
}

} // namespace

void ColorPanel::orderFront(ColorWell &well)
{
    orderOut();
    // Belongs to the well's window, so that it also works beside a modal one.
    dialog = new QColorDialog(painted(well.color()), well.window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOptions(QColorDialog::ShowAlphaChannel | QColorDialog::DontUseNativeDialog);
    QObject::connect(dialog, &QColorDialog::colorSelected, &well, &ColorWell::choose);
    QObject::connect(dialog, &QColorDialog::finished, &well, &ColorWell::deactivate);
    dialog->show();
}

void ColorPanel::orderOut()
{
    if (dialog && dialog->isVisible())
        dialog->close();
}

ColorWell::ColorWell(QWidget *parent)
    : QAbstractButton(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void ColorWell::setPanel(ColorPanel &shared)
{
    connect(this, &QAbstractButton::clicked, this, [this, &shared] {
        shared.orderFront(*this); // which deactivates the well that the panel was open for
        setActive(true);
    });
}

void ColorWell::setColor(const Color &color)
{
    shownColor = color;
    update();
}

void ColorWell::deactivate()
{
    setActive(false);
}

void ColorWell::setActive(bool active)
{
    isActive = active;
    update();
}

void ColorWell::choose(const QColor &chosen)
{
    // The same choice again keeps what the dialog would have rounded.
    if (chosen.rgba64() != painted(shownColor).rgba64())
        setColor(chosenColor(chosen));
    emit colorChosen();
}

QSize ColorWell::sizeHint() const
{
    return {64, 28};
}

void ColorWell::paintEvent(QPaintEvent *)
{
    constexpr int margin = 5;
    QStyleOptionButton option;
    option.initFrom(this);
    option.state |= isDown() || isActive ? QStyle::State_Sunken : QStyle::State_Raised;
    QPainter painter(this);
    style()->drawControl(QStyle::CE_PushButtonBevel, &option, &painter, this);
    const QRect field = rect().adjusted(margin, margin, -margin, -margin);
    painter.fillRect(field, QBrush(Qt::white));
    painter.fillRect(field, QBrush(Qt::lightGray, Qt::Dense4Pattern)); // seen through a transparent colour
    painter.fillRect(field, painted(shownColor));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(field.adjusted(0, 0, -1, -1));
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = rect().adjusted(2, 2, -2, -2);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
    }
}
