#pragma once

#include "platform/Calendar.h"
#include "widgets/PickerField.h"

/// Shows a calendar day and lets the user type another one or choose it from a calendar. Holds a full moment:
/// its time of day, down to the millisecond, stays as it was set.
class DatePicker : public PickerField
{
    Q_OBJECT

public:
    explicit DatePicker(QWidget *parent = nullptr);

    Instant moment() const { return held; }
    void setMoment(Instant moment);
    /// Opens the calendar below the field.
    void openCalendar();

    QSize sizeHint() const override;

signals:
    /// The user chose another day. setMoment does not emit this.
    void dayChosen();

protected:
    bool take(const QString &text) override;
    QString valueText() const override;
    QString explanation() const override;
    void step(int steps, Qt::KeyboardModifiers modifiers) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QDate day() const;
    void choose(QDate chosen);

    Instant held;
    QTime timeOfDay; ///< as it was set, also while the day that is shown has no such time
};
