#include "app/AppDelegate.h"
#include "cloud/CloudSync.h"
#include "cloud/SqlCloudContainer.h"
#include "cloud/TaskRecord.h"
#include "mainwindow/Screens.h"
#include "mainwindow/ViewController.h"
#include "messaging/ScheduleRuns.h"
#include "model/Appearance.h"
#include "model/TaskManager.h"
#include "platform/DesktopAppearance.h"
#include "platform/Diagnostics.h"
#include "platform/Folders.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "platform/SingleInstance.h"
#include "platform/TerminationSignals.h"
#include "widgets/ColorWell.h"
#include "widgets/Palettes.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QIcon>
#include <QPixmapCache>
#include <QStyleFactory>
#include <QTemporaryFile>

#include <chrono>
#include <csignal>
#include <cstdlib>

using namespace Qt::StringLiterals;

static void setUpApplication(QApplication &application)
{
    QApplication::setApplicationName(u"quorvane"_s);
    QApplication::setApplicationDisplayName(u"Quorvane"_s);
    QApplication::setApplicationVersion(QStringLiteral(QUORVANE_VERSION));
    QApplication::setDesktopFileName(u"example.quorvane.Quorvane"_s);
    QApplication::setWindowIcon(QIcon(u":/quorvane.svg"_s));
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::addLibraryPath(QApplication::applicationDirPath() + u"/" QUORVANE_MODULE_PATH ""_s);
    QDir::setSearchPaths(u"bundle"_s, {u":/bundle"_s});
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                     &application, &diagnostics::flush);
}

/// The whiteboard's picture is kept in the working directory, which may be one that nothing can be written to
/// when the desktop starts the program.
static void findHomeForPicture()
{
    const QString documents = folders::documents();
    const bool isWritable = QTemporaryFile(u"quorvane-XXXXXX"_s).open(); // its rights alone do not tell
    if (!isWritable && !documents.isEmpty() && QDir().mkpath(documents))
        QDir::setCurrent(documents);
}

int main(int argc, char **argv)
{
    std::signal(SIGPIPE, SIG_IGN); // whoever reads the diagnostic lines may go away
    std::signal(SIGXFSZ, SIG_IGN); // a file that may not grow is a failed write like any other
    QApplication application(argc, argv);
    setUpApplication(application);

    const QDBusConnection bus = QDBusConnection::sessionBus();
    SingleInstance instance(folders::state(), bus);
    if (!instance.acquire())
        return EXIT_SUCCESS;

    findHomeForPicture();
    terminationSignals::quitOnThem();
    AppDelegate delegate;
    QObject::connect(&application, &QApplication::aboutToQuit, &delegate,
                     &AppDelegate::applicationWillTerminate);

    NotificationCenter notices;
    NotificationCenter systemNotices;
    const auto followPalette = [] {
        QPixmapCache::clear(); // it holds disabled icons in the shades of the palette they were made for
        QApplication::setPalette(isDarkMode() ? palettes::dark() : palettes::light());
    };
    systemNotices.observe(notice::appearanceChanged, &application, followPalette);
    DesktopAppearance appearance(Preferences::standard(), systemNotices, bus);
    appearance.follow();
    followPalette();

    ColorPanel colorPanel;
    ScheduleRuns scheduleRuns(Preferences::standard(), GatewayAddress{});
    Screens screens({TaskManager::shared(), notices, systemNotices, colorPanel, folders::data()},
                    scheduleRuns, {folders::documents(), folders::state()});
    const CloudHome cloudHome = CloudHome::read(folders::config() + u"/cloud.ini"_s, folders::data());
    SqlCloudContainer container(cloudHome, taskRecordType());
    CloudSync cloud(TaskManager::shared(), notices, container);
    ViewController window(TaskManager::shared(), notices, systemNotices, screens, cloud, folders::documents(),
                          folders::state());
    QObject::connect(&instance, &SingleInstance::activated, &window, &ViewController::bringToFront);
    window.show();
    delegate.applicationDidFinishLaunching();
    const int result = QApplication::exec();
    scheduleRuns.stop();
    const QDeadlineTimer deadline(std::chrono::seconds(5));
    const bool isCloudDone = cloud.finish(deadline.remainingTimeAsDuration());
    const bool areMessagesDone = scheduleRuns.finish(deadline.remainingTimeAsDuration());
    if (!isCloudDone || !areMessagesDone) {
        // A server keeps a thread waiting; there is nothing to clean up that may not be left.
        diagnostics::drain();
        std::_Exit(result);
    }
    return result;
}
