#include "widgets/TimePicker.h"

#include "widgets/TypedText.h"

using namespace Qt::StringLiterals;

TimePicker::TimePicker(QWidget *parent)
    : PickerField(parent)
{
    showValue();
}

void TimePicker::setTime(QTime time)
{
    shown = time;
    showValue();
}

void TimePicker::choose(QTime chosen)
{
    if (chosen == shown)
        return;
    setTime(chosen);
    emit timeChosen();
}

bool TimePicker::take(const QString &text)
{
    const std::optional<QTime> typed = typedText::time(text, locale());
    if (typed)
        choose(*typed);
    return typed.has_value();
}

QString TimePicker::valueText() const
{
    return locale().toString(shown, typedText::timeFormat(locale()));
}

QString TimePicker::explanation() const
{
    return u"“%1” is no time of day. Write it like %2."_s.arg(
        text().simplified(), locale().toString(QTime(14, 45), typedText::timeFormat(locale())));
}

void TimePicker::step(int steps, Qt::KeyboardModifiers modifiers)
{
    constexpr int quarter = 15 * 60; // seconds
    constexpr int hour = 60 * 60;
    choose(shown.addSecs(steps * (modifiers & Qt::ControlModifier ? hour : quarter)));
}
