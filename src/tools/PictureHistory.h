#pragma once

#include <QUndoStack>

#include <memory>

class PictureStep;

/// The steps of the whiteboard that can be taken back: up to 200, and beyond the last 50 as many as the
/// memory for them has room for.
class PictureHistory : public QUndoStack
{
    Q_OBJECT

public:
    /// \param mostBytes  which the steps may take, where there are more than 50
    explicit PictureHistory(qsizetype mostBytes = 64LL << 20);

    /// Adds a step that was done.
    void add(std::unique_ptr<PictureStep> step);

private:
    int stepsToKeep() const;

    qsizetype most;
};
