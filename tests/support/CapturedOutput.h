#pragma once

#include "platform/Diagnostics.h"

#include <QTemporaryFile>

#include <fcntl.h>
#include <unistd.h>

/// Catches the diagnostic lines that are written while it lives.
class CapturedOutput
{
public:
    CapturedOutput()
        : original(::dup(STDOUT_FILENO))
    {
        diagnostics::drain();
        // Written by a descriptor of its own, so that reading does not move the place.
        const bool isOpen = file.open();
        const int writing = ::open(QFile::encodeName(file.fileName()).constData(), O_WRONLY | O_APPEND);
        if (!isOpen || ::dup2(writing, STDOUT_FILENO) < 0)
            qFatal("cannot catch the standard output");
        ::close(writing);
    }
    ~CapturedOutput()
    {
        diagnostics::drain();
        ::dup2(original, STDOUT_FILENO);
        ::close(original);
    }
    Q_DISABLE_COPY(CapturedOutput)

    /// The lines so far; those read once are not given again.
    QStringList takeLines()
    {
        diagnostics::drain();
        read += file.readAll();
        const qsizetype end = read.lastIndexOf('\n') + 1; // another thread's line may be half written
        QStringList lines = QString::fromUtf8(read.first(end)).split(u'\n');
        lines.removeLast();
        read.remove(0, end);
        return lines;
    }

private:
    QTemporaryFile file;
    QByteArray read; ///< what is not a whole line yet
    int original;
};
