#include "app/WebPage.h"

#include "app/WebPageModule.h"
#include "platform/Diagnostics.h"
#include "widgets/Alert.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QPluginLoader>
#include <QUrl>

#include <cstdlib>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

static const QString moduleName = u"quorvaneguide"_s;

bool webPage::isInstalled()
{
    return !QPluginLoader(moduleName).fileName().isEmpty(); // looks for the file only
}

/// Whether the web engine can isolate its processes; where it cannot, it ends the whole program. It never can
/// for the administrator, and some systems do not allow it.
static bool hasSandbox()
{
    if (qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX"))
        return true; // whoever set it wants no isolation
    if (::geteuid() == 0)
        return false;
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(::unshare(CLONE_NEWUSER | CLONE_NEWPID) == 0 ? EXIT_SUCCESS : EXIT_FAILURE);
    int status = -1;
    return child > 0 && ::waitpid(child, &status, 0) == child && status == EXIT_SUCCESS;
}

static void openInBrowser(const QUrl &url)
{
    if (!QDesktopServices::openUrl(url))
        alertMessage(QApplication::activeWindow(),
                     u"No browser could be opened for "_s + url.toDisplayString());
}

QDialog *webPage::makeScreen(QWidget *parent, QString &problem)
{
    if (!hasSandbox()) {
        problem = u"The web engine cannot run safely for this user on this system."_s;
        return nullptr;
    }
    QPluginLoader loader(moduleName);
    auto *module = qobject_cast<WebPageModule *>(loader.instance());
    if (!module) {
        problem = loader.errorString();
        return nullptr;
    }
    const auto openLater = [](const QUrl &url) { // not in the middle of the web engine's work
        QMetaObject::invokeMethod(
            qApp, [url] { openInBrowser(url); }, Qt::QueuedConnection);
    };
    return module->makeScreen(
        {.log = [](const char *line) { diagnostics::line(line); }, .openExternal = openLater}, parent);
}
