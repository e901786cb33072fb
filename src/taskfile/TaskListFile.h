#pragma once

#include "model/task.h"
#include "platform/Color.h"
#include "platform/TextFile.h"
#include "taskfile/RowTexts.h"

#include <QString>
#include <QStringView>
#include <QUuid>

#include <functional>
#include <optional>

class RowKeys;
class TaskManager;
class TaskRowReader;

/// Who keeps what the list has been.
struct TaskListHistory
{
    /// Is handed each text that was read from the file or written to it.
    std::function<void(const QByteArray &text)> keep = [](const QByteArray &) {
    };
    /// Is asked for room before the list goes without what is to protect it, or stays unsaved.
    ProtectedFile::MakeRoom makeRoom = {};
};

/// The file "zandulist.txt" in the documents folder, which holds the whole task list.
///
/// The file always holds the colours of the light appearance, whatever appearance the list in memory is held
/// for. A file with rows that cannot be taken is copied aside before it is overwritten; one that is there but
/// cannot be read is not overwritten at all: what the list holds is added to it once it can be read.
class TaskListFile
{
public:
    /// \param documentsFolder  empty when the desktop names none: then nothing is read or written
    /// \param stateFolder      where an unfinished write is kept
    TaskListFile(TaskManager &manager, const QString &documentsFolder, const QString &stateFolder,
                 TaskListHistory history = {});

    /// Where the list is in this documents folder.
    static QString pathIn(const QString &documentsFolder);

    /// Writes the whole list; false when that failed, and then the list that was in the file is still there.
    bool writeFile();
    /// Whether the file holds the list, as far as it was to be written.
    bool isSaved() const { return !lastWriteFailed; }
    /// Why the last write failed, in the words of the operating system.
    QString problem() const { return readProblem().isEmpty() && file ? file->errorString() : readProblem(); }
    /// Why the file could not be read although it is there; empty when it could.
    QString readProblem() const { return file ? file->readProblem() : QString(); }
    /// What the file holds once the list is written: its whole text in UTF-8.
    QByteArray text();
    QString path() const { return file ? file->path() : QString(); }
    /// How many rows of the file could not be read when it was last read.
    qsizetype skippedRows() const { return skipped; }
    /// Where the file was copied to before it was overwritten, since this was last asked; empty for no copy.
    QString takeCopyPath() { return file ? file->takeCopyPath() : QString(); }
    /// The file's whole text; empty when it cannot be read.
    QString readFile();
    /// Whether `readFile` has found no file where this program had once read or written one, and nobody has
    /// brought it back since.
    bool isGone() const { return wasGone; }
    /// Adds one task to the manager for each row of the text.
    void parseFile(const QString &text);

    /// Makes the list hold the colours of the present appearance: by reading the file again or, when that
    /// cannot be or some of the list may not be in it, in place. An active search is applied again and the
    /// same task stays selected.
    void followAppearance();
    /// Takes over what another program has written, as `followAppearance` does, unless the list itself is not
    /// in the file yet; and puts list and file together, by their keys, when the file can be read at last.
    /// False when the list stays as it is.
    bool followFile();

private:
    void leaveTrace() const;
    bool takeOver(const QString &text);
    bool putTogether();
    bool addAgain(const TaskList &tasks);
    std::optional<QString> read();
    void parseRow(qsizetype number, QStringView row, TaskRowReader &reader, RowKeys &keys, bool isDark);

    char16_t separatorFieldsFile = u'|';
    char16_t separatorRowsFile = u'^';
    bool invertedColors = false; ///< the colours in memory are those of the dark appearance
    Color color;                 ///< the last colour that was written

    TaskManager &manager;
    std::optional<TextFile> file;
    QString trace;        ///< path of a link to the file that was last read or written
    bool wasGone = false; ///< at the start, and nobody has brought it back since
    TaskListHistory history;
    RowTexts rowTexts;
    const QUuid run = QUuid::createUuid();
    bool lastWriteFailed = false;
    qint64 filedChanges = 0; ///< the manager's count of changes when list and file were last the same
    qsizetype skipped = 0;
};
