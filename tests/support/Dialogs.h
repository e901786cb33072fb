#pragma once

#include <QString>
#include <QTimer>

#include <functional>

class QMessageBox;
class QWidget;

/// Answers the next modal alert, while it lives, by pressing one of its buttons.
class AlertAnswer
{
public:
    /// \param look  is shown the alert before it is answered; may not throw
    explicit AlertAnswer(const QString &button, const std::function<void(QMessageBox &)> &look = {});

    bool wasShown() const { return shown; }
    QString text;
    QString informativeText;
    bool isPlain = true; ///< no label takes its text for markup

private:
    QTimer timer;
    bool shown = false;
};

/// What stands in the window's banners.
QString toldIn(const QWidget &window);
/// Clicks the window's buttons with this text.
void choose(const QWidget &window, const QString &choice);
