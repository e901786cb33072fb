#pragma once

#include <QtPlugin>

#include <functional>

#define QUORVANE_WEB_PAGE_MODULE "example.quorvane.WebPageModule/1"

class QDialog;
class QUrl;
class QWidget;

/// What the web page module offers once it is loaded. It is apart from the program, since the web engine
/// takes longer to load than everything else together.
class WebPageModule
{
public:
    struct Host
    {
        std::function<void(const char *line)> log;      ///< writes a diagnostic line
        std::function<void(const QUrl &)> openExternal; ///< for links that lead out of the guide
    };

    virtual ~WebPageModule() = default;
    /// Makes the screen with the guide's first page.
    virtual QDialog *makeScreen(const Host &host, QWidget *parent) = 0;
};

Q_DECLARE_INTERFACE(WebPageModule, QUORVANE_WEB_PAGE_MODULE)
