#pragma once

#include "platform/Color.h"

#include <QAbstractButton>
#include <QPointer>

class QColorDialog;
class ColorWell;

/// The program's one colour panel, which moves from well to well.
class ColorPanel
{
public:
    /// Shows the panel for the well, with the well's colour.
    void orderFront(ColorWell &well);
    /// Hides the panel; the well it was shown for keeps its colour.
    void orderOut();

private:
    QPointer<QColorDialog> dialog;
};

/// A button that shows a colour and lets the user choose another one in the colour panel.
class ColorWell : public QAbstractButton
{
    Q_OBJECT

public:
    explicit ColorWell(QWidget *parent = nullptr);

    /// The panel that opens for this well.
    void setPanel(ColorPanel &shared);

    const Color &color() const { return shownColor; }
    void setColor(const Color &color);
    /// Shows that no panel is open for this well.
    void deactivate();

    QSize sizeHint() const override;

signals:
    /// The user chose a colour; setColor does not emit this.
    void colorChosen();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    friend class ColorPanel;
    void choose(const QColor &chosen);
    void setActive(bool active);

    Color shownColor;
    bool isActive = false;
};
