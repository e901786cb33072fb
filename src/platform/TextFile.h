#pragma once

#include "platform/ProtectedFile.h"

/// A whole text kept in one UTF-8 file without byte-order mark.
class TextFile
{
public:
    /// See ProtectedFile.
    TextFile(const QString &path, const QString &stateFolder)
        : file(path, stateFolder)
    {
    }

    /// The whole text; nothing when the file is missing, cannot be read or is not UTF-8. A file of which the
    /// text could not be had is copied aside before it is overwritten.
    std::optional<QString> read();

    bool write(const QByteArray &utf8, const ProtectedFile::MakeRoom &makeRoom = {})
    {
        return file.write(utf8, makeRoom);
    }
    void keepCopy() { file.keepCopy(); }
    const QString &path() const { return file.path(); }
    const QString &errorString() const { return file.errorString(); }
    const QString &readProblem() const { return file.readProblem(); }
    bool isChangedByOthers() const { return file.isChangedByOthers(); }
    QString takeCopyPath() { return file.takeCopyPath(); }

private:
    ProtectedFile file;
};
