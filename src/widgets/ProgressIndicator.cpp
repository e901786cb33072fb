#include "widgets/ProgressIndicator.h"

#include <QStyleOptionProgressBar>

#include <algorithm>
#include <limits>

static int shown(qint64 number)
{
    return int(std::clamp<qint64>(number, 0, std::numeric_limits<int>::max()));
}

void ProgressIndicator::setIndeterminate(bool isIndeterminate)
{
    indeterminate = isIndeterminate;
    update();
}

void ProgressIndicator::startAnimation()
{
    animated = true;
    update();
}

void ProgressIndicator::stopAnimation()
{
    animated = false;
    update();
}

void ProgressIndicator::setSteps(qint64 first, qint64 last)
{
    setRange(shown(first), shown(std::max(first, last)));
}

void ProgressIndicator::setStep(qint64 step)
{
    setValue(shown(step));
}

void ProgressIndicator::initStyleOption(QStyleOptionProgressBar *option) const
{
    QProgressBar::initStyleOption(option);
    if (!indeterminate || !animated)
        return;
    // A range without extent is what styles draw as busy.
    option->minimum = 0;
    option->maximum = 0;
    option->progress = 0;
}
