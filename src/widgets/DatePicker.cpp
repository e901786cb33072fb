#include "widgets/DatePicker.h"

#include "widgets/TypedText.h"

#include <QAction>
#include <QCalendarWidget>
#include <QIcon>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

DatePicker::DatePicker(QWidget *parent)
    : PickerField(parent)
{
    auto *open = new QAction(QIcon(u":/icons/calendar.svg"_s), u"Open the calendar (F4)"_s, this);
    addAction(open, TrailingPosition);
    connect(open, &QAction::triggered, this, &DatePicker::openCalendar);
    setMoment(Calendar::now());
}

void DatePicker::setMoment(Instant moment)
{
    held = moment;
    timeOfDay = Calendar::localTime(moment).time();
    showValue();
}

QDate DatePicker::day() const
{
    return Calendar::localTime(held).date();
}

void DatePicker::choose(QDate chosen)
{
    if (chosen == day())
        return;
    held = Calendar::instantOf(QDateTime(chosen, timeOfDay));
    showValue();
    emit dayChosen();
}

bool DatePicker::take(const QString &text)
{
    const std::optional<QDate> typed = typedText::day(text, QDate::currentDate(), locale());
    if (typed)
        choose(*typed);
    return typed.has_value();
}

QString DatePicker::valueText() const
{
    return locale().toString(day(), typedText::dateFormat(locale()));
}

QString DatePicker::explanation() const
{
    const QDate example(QDate::currentDate().year(), 12, 31);
    return u"“%1” is no date. Write it like %2, or press F4 for the calendar."_s.arg(
        text().simplified(), locale().toString(example, typedText::dateFormat(locale())));
}

void DatePicker::step(int steps, Qt::KeyboardModifiers modifiers)
{
    choose(modifiers & Qt::ControlModifier ? day().addMonths(steps) : day().addDays(steps));
}

void DatePicker::keyPressEvent(QKeyEvent *event)
{
    const bool isAltDown = event->key() == Qt::Key_Down && event->modifiers() == Qt::AltModifier;
    if (event->key() == Qt::Key_F4 || isAltDown)
        openCalendar();
    else
        PickerField::keyPressEvent(event);
}

void DatePicker::openCalendar()
{
    const bool isReadable = commit();
    auto *popup = new QFrame(this, Qt::Popup);
    popup->setAttribute(Qt::WA_DeleteOnClose);
    popup->setFrameShape(QFrame::StyledPanel);
    auto *layout = new QVBoxLayout(popup);
    layout->setContentsMargins({});
    auto *calendar = new QCalendarWidget(popup);
    layout->addWidget(calendar);
    calendar->setLocale(locale());
    calendar->setSelectedDate(day());
    const auto take = [this, popup, isReadable](QDate chosen) {
        popup->close();
        if (!isReadable)
            showValue();
        // Queued: an answer may open a dialog, and the calendar is to be gone by then.
        QMetaObject::invokeMethod(
            this, [this, chosen] { choose(chosen); }, Qt::QueuedConnection);
    };
    connect(calendar, &QCalendarWidget::clicked, popup, take);
    connect(calendar, &QCalendarWidget::activated, popup, take);
    popup->adjustSize();
    const QRect room = screen()->availableGeometry();
    QPoint corner = mapToGlobal(rect().bottomLeft());
    if (corner.y() + popup->height() > room.bottom())
        corner.setY(mapToGlobal(rect().topLeft()).y() - popup->height());
    corner.setX(std::clamp(corner.x(), room.left(), std::max(room.left(), room.right() - popup->width())));
    popup->move(corner);
    popup->show();
    calendar->setFocus();
}

QSize DatePicker::sizeHint() const
{
    constexpr int buttonAndMargins = 48;
    return {fontMetrics().horizontalAdvance(valueText()) + buttonAndMargins,
            PickerField::sizeHint().height()};
}
