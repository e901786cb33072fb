#pragma once

#include <QByteArray>
#include <QString>

class QMenu;
class QWidget;

/// What is shared: a text, and a picture where there is one.
struct SharedItems
{
    QString title; ///< what it is about, for the mail's subject and the file's name
    QString text;
    QByteArray picture = {};  ///< as PNG
    QString pictureFile = {}; ///< the same as a file, for the mail
};

/// A menu of the services that can take the items: the clipboard, the desktop's mail program, a file, which
/// takes the picture or else the text. A service that fails says why in an alert.
class SharingServicePicker
{
public:
    explicit SharingServicePicker(const SharedItems &items);

    /// Opens the menu at the widget's left or bottom edge, as far as the screen has room there. Returns at
    /// once.
    /// \param window  what the services show belongs to it; the anchor's own window may be closed by then
    void show(QWidget &anchor, Qt::Edge edge, QWidget &window) const;

private:
    void copy() const;
    void mail(QWidget *window) const;
    void save(QWidget *window) const;
    QString suggestedPath() const;

    SharedItems items;
};
