#pragma once

#include "platform/Color.h"

#include <QPlainTextEdit>

/// A plain text of several lines, the colour of which is set by its screen.
class TextView : public QPlainTextEdit
{
    Q_OBJECT

public:
    using QPlainTextEdit::QPlainTextEdit;

    const Color &textColor() const { return color; }
    void setTextColor(const Color &textColor);

private:
    Color color{0.0, 0.0, 0.0, 1.0};
};
