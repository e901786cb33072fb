#include "support/CapturedOutput.h"

#include "platform/Diagnostics.h"

#include <fcntl.h>
#include <unistd.h>

CapturedOutput::CapturedOutput()
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

CapturedOutput::~CapturedOutput()
{
    diagnostics::drain();
    ::dup2(original, STDOUT_FILENO);
    ::close(original);
}

QStringList CapturedOutput::takeLines()
{
    diagnostics::drain();
    read += file.readAll();
    const qsizetype end = read.lastIndexOf('\n') + 1; // another thread's line may be half written
    QStringList lines = QString::fromUtf8(read.first(end)).split(u'\n');
    lines.removeLast();
    read.remove(0, end);
    return lines;
}
