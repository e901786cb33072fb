#pragma once

#include <QStringList>
#include <QTemporaryFile>

/// Catches the diagnostic lines that are written while it lives.
class CapturedOutput
{
public:
    CapturedOutput();
    ~CapturedOutput();
    CapturedOutput(const CapturedOutput &) = delete;
    CapturedOutput &operator=(const CapturedOutput &) = delete;

    /// The lines so far; those read once are not given again.
    QStringList takeLines();

private:
    QTemporaryFile file;
    QByteArray read; ///< what is not a whole line yet
    int original;
};
