#pragma once

#include "widgets/MarkedField.h"

/// A field for a value that the user types, such as a date. The text is judged when it is whole: at Return,
/// Tab, when the field is left, or when `commit` is called. A text that cannot be read stays, marked, with a
/// sentence that says how to write it, and gets the focus back.
class PickerField : public MarkedField
{
    Q_OBJECT

public:
    /// Takes over what is being typed. False when it cannot be read; the field then says so.
    bool commit();
    /// Takes over what is being typed if it can be read, and tells nobody.
    void takeTyped();

protected:
    explicit PickerField(QWidget *parent);

    /// Takes the text as the field's value and tells of it; false when it cannot be read.
    virtual bool take(const QString &text) = 0;
    /// The text of the present value.
    virtual QString valueText() const = 0;
    /// How a text has to be written.
    virtual QString explanation() const = 0;
    /// Changes the value by so many steps and tells of it.
    virtual void step(int steps, Qt::KeyboardModifiers modifiers) = 0;

    /// Shows the present value instead of what is being typed.
    void showValue();

    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    bool isTyped = false;
};
