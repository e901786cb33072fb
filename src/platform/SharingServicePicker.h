#pragma once

#include <QString>

#include <functional>

class QMenu;
class QWidget;

/// A menu of the services that can take a text: the clipboard, the desktop's mail program, a file.
class SharingServicePicker
{
public:
    /// Tells the user, in front of the window, that a service failed and why.
    using FailureReport = std::function<void(QWidget *window, const QString &message)>;

    /// \param title  what the text is about, for the mail's subject and the file's name
    SharingServicePicker(const QString &title, const QString &text, const FailureReport &report);

    /// Opens the menu at the left edge of the widget, as far as the screen has room there. Returns at once.
    void show(QWidget &anchor) const;

private:
    void copy() const;
    void mail(QWidget *window) const;
    void save(QWidget *window) const;
    QString suggestedPath() const;

    QString title;
    QString text;
    FailureReport report;
};
