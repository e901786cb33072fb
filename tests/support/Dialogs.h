#pragma once

#include <QStringList>
#include <QTimer>

#include <functional>

class QMessageBox;

/// Answers the next modal alert, while it lives, by pressing one of its buttons.
class AlertAnswer
{
public:
    /// \param look  is shown the alert before it is answered; may not throw
    explicit AlertAnswer(const QString &button, const std::function<void(QMessageBox &)> &look = {});

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
