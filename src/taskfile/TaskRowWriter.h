#pragma once

#include "model/task.h"
#include "taskfile/RowDates.h"

#include <QByteArray>
#include <QStringEncoder>

/// Marks that stand in a row of the task list file for a text's own separator characters. A text's own marks
/// are left out on writing.
namespace rowmark {
inline constexpr char16_t fieldSeparator = u'\u001F';
inline constexpr char16_t rowSeparator = u'\u001E';
} // namespace rowmark

/// Writes tasks as rows of the task list file, in UTF-8: twenty fields joined by the field separator, then
/// the row separator.
class TaskRowWriter
{
public:
    TaskRowWriter(char16_t fieldSeparator, char16_t rowSeparator);

    /// Appends the row of one task.
    /// \param color  the task's colour as it is to be stored
    void append(QByteArray &text, const task &entry, const Color &color);

private:
    void appendText(QByteArray &text, const QString &field);

    char fieldSeparator;
    char rowSeparator;
    QStringEncoder utf8;
    RowDates dates;
};
