#include "tools/PictureHistory.h"

#include "tools/PictureStep.h"

#include <vector>

static const PictureStep &stepAt(const QUndoStack &stack, int index)
{
    return static_cast<const PictureStep &>(*stack.command(index));
}

PictureHistory::PictureHistory(qsizetype mostBytes)
    : most(mostBytes)
{
    constexpr int mostSteps = 200;
    setUndoLimit(mostSteps);
}

int PictureHistory::stepsToKeep() const
{
    constexpr int always = 50;
    qsizetype bytes = 0;
    int kept = 0;
    for (int index = count() - 1; index >= 0; --index, ++kept) {
        bytes += stepAt(*this, index).byteCount();
        if (bytes > most && kept >= always)
            break;
    }
    return kept;
}

void PictureHistory::add(std::unique_ptr<PictureStep> step)
{
    push(step.release());
    const int kept = stepsToKeep();
    if (kept == count())
        return;
    // A stack gives up all of its steps or none.
    std::vector<std::unique_ptr<PictureStep>> newest;
    for (int index = count() - kept; index < count(); ++index)
        newest.push_back(std::make_unique<PictureStep>(stepAt(*this, index)));
    const QSignalBlocker quiet(this); // the next one to be taken back stays the same
    clear();
    for (std::unique_ptr<PictureStep> &later : newest)
        push(later.release());
}
