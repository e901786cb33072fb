#include "program/Application.h"

#include "model/Appearance.h"
#include "platform/Diagnostics.h"
#include "platform/Folders.h"
#include "platform/NotificationCenter.h"
#include "widgets/Palettes.h"

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QIcon>
#include <QPixmapCache>
#include <QSettings>
#include <QStyleFactory>
#include <QTemporaryFile>

#include <csignal>

using namespace Qt::StringLiterals;

Application::Application(int &argc, char **argv)
    : QApplication(argc, argv)
{
    std::signal(SIGPIPE, SIG_IGN); // whoever reads the diagnostic lines may go away
    std::signal(SIGXFSZ, SIG_IGN); // a file that may not grow is a failed write like any other
    setApplicationName(u"quorvane"_s);
    setApplicationDisplayName(u"Quorvane"_s);
    setApplicationVersion(QStringLiteral(QUORVANE_VERSION));
    setDesktopFileName(u"example.quorvane.Quorvane"_s);
    setWindowIcon(QIcon(u":/quorvane.svg"_s));
    setStyle(QStyleFactory::create(u"Fusion"_s));
    setQuitOnLastWindowClosed(false);
    addLibraryPath(applicationDirPath() + u"/" QUORVANE_MODULE_PATH ""_s);
    QDir::setSearchPaths(u"bundle"_s, {u":/bundle"_s});
    installEventFilter(&wheelGuard);
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            &diagnostics::flush);
}

void Application::followAppearance(NotificationCenter &systemNotices)
{
    const auto showPalette = [] {
        QPixmapCache::clear(); // it holds disabled icons in the shades of the palette they were made for
        setPalette(isDarkMode() ? palettes::dark() : palettes::light());
    };
    systemNotices.observe(notice::appearanceChanged, this, showPalette);
    showPalette();
}

void Application::findWritableFolder()
{
    const QString documents = folders::documents();
    const bool isWritable = QTemporaryFile(u"quorvane-XXXXXX"_s).open(); // its permissions alone do not tell
    if (!isWritable && !documents.isEmpty() && QDir().mkpath(documents))
        QDir::setCurrent(documents);
}

void Application::keepDialogSettings()
{
    const QString lockPath = folders::state() + u"/QtProject.conf.lock"_s;
    const bool isFree = QFile::remove(lockPath) || !QFileInfo::exists(lockPath);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       isFree ? folders::state() : u"/dev/null"_s);
}
