#pragma once

#include <QStringList>

/// Answers the next modal alert by pressing one of its buttons, as soon as the event loop runs.
class AlertAnswer
{
public:
    explicit AlertAnswer(const QString &button);

    bool wasShown() const { return shown; }
    QString text;
    QString informativeText;
    QStringList buttons;
    bool isWarning = false;
    bool isPlain = true; ///< no label takes its text for markup

private:
    bool shown = false;
};
