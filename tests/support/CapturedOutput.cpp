#include "support/CapturedOutput.h"

#include "platform/Diagnostics.h"

#include <unistd.h>

CapturedOutput::CapturedOutput()
    : original(::dup(STDOUT_FILENO))
{
    diagnostics::drain();
    if (!file.open() || ::dup2(file.handle(), STDOUT_FILENO) < 0)
        qFatal("cannot catch the standard output");
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
    file.seek(0);
    QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    lines.removeLast();
    file.resize(0);
    file.seek(0);
    return lines;
}
