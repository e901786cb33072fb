#include "ContactSteps.h"
#include "Desktop.h"
#include "ExpectedList.h"
#include "MainWindowAppearanceSteps.h"
#include "MainWindowCommandSteps.h"
#include "MainWindowFileSteps.h"
#include "MainWindowHandle.h"
#include "MainWindowListSteps.h"
#include "ScratchHome.h"
#include "Stage.h"
#include "TaskFormSteps.h"
#include "TourFailure.h"
#include "app/Palettes.h"
#include "cloud/CloudSync.h"
#include "cloud/TaskRecord.h"
#include "mainwindow/Screens.h"
#include "mainwindow/ViewController.h"
#include "model/Appearance.h"
#include "model/TaskManager.h"
#include "platform/ColorWell.h"
#include "platform/Folders.h"
#include "platform/MainThreadQueue.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "platform/SqlCloudContainer.h"

#include <QApplication>
#include <QIcon>
#include <QPixmapCache>
#include <QStyleFactory>

#include <cstdio>

using namespace Qt::StringLiterals;

static void setUpApplication()
{
    QApplication::setApplicationName(u"quorvane"_s);
    QApplication::setApplicationDisplayName(u"Quorvane"_s);
    QApplication::setWindowIcon(QIcon(u":/quorvane.svg"_s));
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    QApplication::setQuitOnLastWindowClosed(false);
}

/// The tour plays the desktop, too: it sets the appearance and posts the notice, and leaves the real one
/// alone.
static void giveTour(Stage &stage, const QString &taskListPath, QDate today)
{
    NotificationCenter notices;
    NotificationCenter systemNotices;
    const auto followPalette = [] {
        QPixmapCache::clear(); // it holds disabled icons in the shades of the palette they were made for
        QApplication::setPalette(isDarkMode() ? palettes::dark() : palettes::light());
    };
    systemNotices.observe(notice::appearanceChanged, qApp, followPalette);
    followPalette();

    ColorPanel colorPanel;
    Screens screens({TaskManager::shared(), notices, systemNotices, colorPanel, folders::data()});
    SqlCloudContainer container({.kind = CloudHome::Kind::SignedOut}, taskRecordType());
    MainThreadQueue cloudAnswers;
    CloudSync cloud(TaskManager::shared(), notices, container, cloudAnswers);
    Desktop desktop(systemNotices);
    ExpectedList expected(taskListPath, today);
    MainWindowFileSteps fileSteps(stage, expected);
    {
        ViewController window(TaskManager::shared(), notices, systemNotices, screens, cloud, folders::documents(),
                              folders::state());
        window.show();
        const MainWindowHandle main(window);

        MainWindowListSteps listSteps(stage, main, expected);
        listSteps.openWindow();
        listSteps.pickEveryView();
        listSteps.search();
        listSteps.sortByName();
        listSteps.selectTask();

        MainWindowCommandSteps commandSteps(stage, main, expected);
        commandSteps.hideAndUnhide();
        commandSteps.move();
        commandSteps.moveInAnotherView();
        commandSteps.cloneTask();
        commandSteps.closeTask();

        const QString client = u"Gärtnerei Öz & Töchter"_s;
        const QString teamMember = u"Aoife Brennan"_s;
        ContactSteps contactSteps(stage, main, desktop);
        contactSteps.addClient(client, u"+49 30 5550 123"_s);
        contactSteps.addTeamMember(teamMember, u"0151 / 555-0142"_s);

        TaskFormSteps formSteps(stage, main, expected, desktop, today);
        formSteps.addTask(client, teamMember);
        formSteps.editTask();
        formSteps.shareTask(folders::documents() + u"/shared task.txt"_s);

        MainWindowAppearanceSteps(stage, main, expected, taskListPath, desktop).switchToDarkAndBack();
        fileSteps.closeWindow(main, taskListPath);
    }
    TaskManager manager(Preferences::standard());
    ViewController window(manager, notices, systemNotices, screens, cloud, folders::documents(), folders::state());
    window.show();
    fileSteps.openAgain(MainWindowHandle(window));
}

static int runTour(const QString &pictureFolder, const QString &samplePath, int argc, char **argv)
{
    const QDate today = QDate::currentDate();
    ScratchHome home;
    home.placeTaskList(samplePath, today);
    Stage stage(pictureFolder, home.divertStandardOutput());
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    QApplication application(argc, argv);
    setUpApplication();
    try {
        giveTour(stage, home.taskListPath(), today);
        stage.finish();
        return EXIT_SUCCESS;
    } catch (const TourFailure &failure) {
        stage.fail(QString::fromUtf8(failure.what()) + u"\n    the files are left in "_s + home.keep());
    }
    return EXIT_FAILURE;
}

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fputs("usage: quorvane-tour PICTURE-FOLDER SAMPLE-TASK-LIST\n", stderr);
        return EXIT_FAILURE;
    }
    try {
        return runTour(QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argv[2]), argc, argv);
    } catch (const TourFailure &failure) {
        std::fprintf(stderr, "quorvane-tour: %s\n", failure.what());
    }
    return EXIT_FAILURE;
}
