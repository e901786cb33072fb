#pragma once

#include "platform/Color.h"

#include <QPlainTextEdit>

/// A plain text of several lines, the colour of which is set by its screen. While the user changes nothing it
/// is given back as it came, to the last blank; afterwards its lines end as they did, if all ended alike.
class TextView : public QPlainTextEdit
{
    Q_OBJECT

public:
    using QPlainTextEdit::QPlainTextEdit;

    void setText(const QString &text);
    QString text() const;

    const Color &textColor() const { return color; }
    void setTextColor(const Color &textColor);

private:
    Color color{0.0, 0.0, 0.0, 1.0};
    QString original;                ///< the text that was set
    bool hasCarriageReturns = false; ///< at every line end
};
