#pragma once

#include "tools/PackedPicture.h"

#include <QList>
#include <QUndoCommand>

#include <functional>
#include <optional>

class PictureView;

/// What was done to the whiteboard's picture: a stroke was drawn, or another picture took its place. Of
/// pictures of one size only the pixels are kept in which they differ; all that is kept is compressed.
class PictureStep : public QUndoCommand
{
public:
    /// What makes a picture the view's.
    using Show = std::function<void(const QImage &)>;

    /// \param name    as it follows the word Undo
    /// \param before  null for an empty board, as `after` is
    /// \param after   what the view shows by now
    PictureStep(const QString &name, const QImage &before, const QImage &after, const PictureView &view,
                Show show);
    /// The same step for another stack: it was done.
    PictureStep(const PictureStep &other);
    PictureStep &operator=(const PictureStep &) = delete;

    /// Whether both pictures are the same.
    bool isEmpty() const { return runs.isEmpty() && !wholeBefore; }
    /// What it takes of the memory.
    qsizetype byteCount() const;

    void undo() override;
    void redo() override;

private:
    /// Pixels side by side that differ.
    struct Run
    {
        int row;
        int column;
        int length;
    };

    void compare(const QImage &before, const QImage &after);
    /// The one picture, made of the other, which the view shows.
    QImage exchanged() const;

    const PictureView &view;
    Show show;
    QSize size;
    QList<Run> runs;
    QByteArray differences; ///< compressed pixels, run after run; an exclusive or exchanges the pictures
    std::optional<PackedPicture> wholeBefore; ///< where they cannot be compared, as `wholeAfter` is
    std::optional<PackedPicture> wholeAfter;
    bool isDone = true; ///< before it comes to the stack, which does what it is given
};
