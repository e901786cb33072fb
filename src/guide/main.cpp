#include "guide/ViewControllerEnhancement.h"
#include "platform/Diagnostics.h"
#include "platform/TerminationSignals.h"
#include "widgets/Palettes.h"
#include "widgets/Screen.h"

#include <QApplication>
#include <QFile>
#include <QIcon>
#include <QLoggingCategory>
#include <QQuickWindow>
#include <QSocketNotifier>
#include <QStyleFactory>

#include <unistd.h>

using namespace Qt::StringLiterals;

/// One line of what the task planner says; without it there is no guide.
static void obey(const QByteArray &line, QWidget &window)
{
    if (line == "dark\n") {
        QApplication::setPalette(palettes::dark());
    } else if (line == "light\n") {
        QApplication::setPalette(palettes::light());
    } else if (line == "raise\n") {
        bringToFront(window);
    } else {
        QApplication::quit();
    }
}

int main(int argc, char **argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software); // needs no graphics driver
    // The last line of standard error is what the user is told when the engine fails.
    QLoggingCategory::setFilterRules(u"qt.webenginecontext.info=false"_s);
    QApplication application(argc, argv);
    QApplication::setApplicationDisplayName(u"Quorvane"_s);
    QApplication::setDesktopFileName(u"example.quorvane.Quorvane"_s);
    QApplication::setWindowIcon(QIcon(u":/quorvane.svg"_s));
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    terminationSignals::quitOnThem();

    ViewControllerEnhancement window;
    diagnostics::flush();
    QFile planner; // unbuffered, so that the notifier tells of every line
    if (!planner.open(STDIN_FILENO, QIODevice::ReadOnly | QIODevice::Unbuffered))
        return EXIT_FAILURE;
    const QSocketNotifier notifier(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &window,
                     [&] { obey(planner.readLine(), window); });
    return QApplication::exec();
}
