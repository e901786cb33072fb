#include "app/WebPage.h"

#include "app/WebPageModule.h"
#include "platform/Diagnostics.h"

#include <QDesktopServices>
#include <QDialog>
#include <QPluginLoader>
#include <QUrl>

#include <unistd.h>

using namespace Qt::StringLiterals;

static const QString moduleName = u"quorvaneguide"_s;

bool webPage::isInstalled()
{
    return !QPluginLoader(moduleName).fileName().isEmpty(); // looks for the file only
}

QDialog *webPage::makeScreen(QWidget *parent, QString &problem)
{
    if (::geteuid() == 0 && !qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX")) {
        problem = u"The web engine does not run for the administrator."_s; // it would end the program
        return nullptr;
    }
    QPluginLoader loader(moduleName);
    auto *module = qobject_cast<WebPageModule *>(loader.instance());
    if (!module) {
        problem = loader.errorString();
        return nullptr;
    }
    return module->makeScreen({.log = [](const char *line) { diagnostics::line(line); },
                               .openExternal =
                                   [](const QUrl &url) {
                                       QDesktopServices::openUrl(url);
                                   }},
                              parent);
}
