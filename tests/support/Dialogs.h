#pragma once

#include <QStringList>
#include <QTimer>

/// Answers the next modal alert, while it lives, by pressing one of its buttons.
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
    QTimer timer;
    bool shown = false;
};
