#pragma once

#include "widgets/PickerField.h"

#include <QTime>

/// Shows a time of day, hour and minute, and lets the user type another one.
class TimePicker : public PickerField
{
    Q_OBJECT

public:
    explicit TimePicker(QWidget *parent = nullptr);

    QTime time() const { return shown; }
    void setTime(QTime time);

signals:
    /// The user chose another time. setTime does not emit this.
    void timeChosen();

protected:
    bool take(const QString &text) override;
    QString valueText() const override;
    QString explanation() const override;
    void step(int steps, Qt::KeyboardModifiers modifiers) override;

private:
    void choose(QTime chosen);

    QTime shown{0, 0};
};
