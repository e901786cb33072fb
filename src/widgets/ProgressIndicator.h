#pragma once

#include <QProgressBar>

/// A progress bar that can be shown as busy without losing its value: while it is animated in indeterminate
/// mode it moves without end, and its text tells the value.
class ProgressIndicator : public QProgressBar
{
    Q_OBJECT

public:
    using QProgressBar::QProgressBar;

    void setIndeterminate(bool isIndeterminate);
    void startAnimation();
    void stopAnimation();
    bool isAnimated() const { return animated; }
    /// The bar's range and value; what is beyond 32 bits is shown as the greatest number.
    void setSteps(qint64 first, qint64 last);
    void setStep(qint64 step);

protected:
    void initStyleOption(QStyleOptionProgressBar *option) const override;

private:
    bool indeterminate = false;
    bool animated = false;
};
