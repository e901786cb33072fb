#include "widgets/DatePicker.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QSignalBlocker>

using namespace Qt::StringLiterals;

/// The locale's short form, with the whole year: two digits would be taken for the last century's when typed.
static QString dayFormat(const QLocale &locale)
{
    QString format = locale.dateFormat(QLocale::ShortFormat);
    if (!format.contains(u"yyyy"))
        format.replace(u"yy"_s, u"yyyy"_s);
    return format;
}

DatePicker::DatePicker(QWidget *parent)
    : QDateTimeEdit(parent)
{
    constexpr int firstYear = 100;
    setMinimumDate(QDate(firstYear, 1, 1));
    setDisplayFormat(dayFormat(locale()));
    setCalendarPopup(true);
    setKeyboardTracking(false); // a half-typed date is none
    connect(this, &QDateTimeEdit::dateTimeChanged, this, &DatePicker::changed);
    connect(this, &QDateTimeEdit::editingFinished, this, [this] {
        if (hasTyped)
            choose();
    });
}

Instant DatePicker::moment() const
{
    return Calendar::instantOf(dateTime());
}

void DatePicker::setMoment(Instant moment)
{
    const QSignalBlocker blocker(this);
    setDateTime(Calendar::localTime(moment));
    hasTyped = false;
    chosen = dateTime();
}

void DatePicker::commit()
{
    interpretText();
    if (hasTyped)
        choose();
}

void DatePicker::choose()
{
    hasTyped = false;
    chosen = dateTime();
    emit dayChosen();
}

void DatePicker::changed()
{
    QWidget *popup = QApplication::activePopupWidget();
    if (!popup || popup->parentWidget() != this) {
        // While the user is at it, a part that was left may be followed by the others.
        hasTyped = hasFocus() && !isStepping;
        if (!hasTyped)
            choose();
        return;
    }
    popup->installEventFilter(this);
    choosing = true;
}

bool DatePicker::eventFilter(QObject *watched, QEvent *event)
{
    const bool isEscape =
        event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape;
    if (isEscape && std::exchange(choosing, false)) {
        const QSignalBlocker blocker(this);
        setDateTime(chosen);
        hasTyped = false;
    }
    // Queued: whoever answers with a dialog would open it in the middle of the calendar's closing.
    if (event->type() == QEvent::Hide && std::exchange(choosing, false))
        QMetaObject::invokeMethod(this, &DatePicker::choose, Qt::QueuedConnection);
    return QDateTimeEdit::eventFilter(watched, event);
}

void DatePicker::keyPressEvent(QKeyEvent *event)
{
    const QString typed = event->text();
    const bool isDigit = !typed.isEmpty() && typed[0].isDigit();
    const bool isSeparator = typed == u"/" || typed == u"." || typed == u"-";
    // A full part goes on to the next one by itself; the separator that is typed after it would skip that.
    if (std::exchange(hasAdvanced, false) && isSeparator)
        return;
    if (isDigit && lineEdit()->selectedText() == lineEdit()->text())
        setSelectedSection(sectionAt(0)); // a whole date is typed over the old one
    const int before = currentSectionIndex();
    QDateTimeEdit::keyPressEvent(event);
    hasAdvanced = isDigit && currentSectionIndex() > before;
}

void DatePicker::stepBy(int steps)
{
    const QScopedValueRollback stepping(isStepping, true);
    QDateTimeEdit::stepBy(steps);
}
