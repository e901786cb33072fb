#pragma once

#include "platform/Calendar.h"

#include <QDateTimeEdit>

/// Shows a calendar day and lets the user choose another one, also from a calendar. Holds a full moment: its
/// time of day, down to the millisecond, stays as it was set.
class DatePicker : public QDateTimeEdit
{
    Q_OBJECT

public:
    explicit DatePicker(QWidget *parent = nullptr);

    Instant moment() const;
    /// Years 100 to 9999; a moment outside is moved to the nearest one.
    void setMoment(Instant moment);
    /// Takes what is being typed as it is.
    void commit();

signals:
    /// The user chose a day. While the calendar is open, or a date is being typed, it may still be another
    /// one, so it is told when the calendar closes, and not when Escape closes it, or when the typing ends.
    /// setMoment does not emit this.
    void dayChosen();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void stepBy(int steps) override;

private:
    void changed();
    void choose();

    QDateTime chosen;         ///< what Escape in the open calendar returns to
    bool choosing = false;    ///< in the open calendar
    bool isStepping = false;  ///< by an arrow or the wheel
    bool hasTyped = false;    ///< another date, of which nothing was told
    bool hasAdvanced = false; ///< to the next part of the date, by the last digit
};
