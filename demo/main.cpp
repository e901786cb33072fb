#include "CloudSteps.h"
#include "ContactSteps.h"
#include "Desktop.h"
#include "ExpectedList.h"
#include "MainWindowAppearanceSteps.h"
#include "MainWindowCommandSteps.h"
#include "MainWindowFileSteps.h"
#include "MainWindowHandle.h"
#include "MainWindowListSteps.h"
#include "MessageSteps.h"
#include "Profile.h"
#include "Stage.h"
#include "TaskFormSteps.h"
#include "ToolSteps.h"
#include "TourFailure.h"
#include "TourHome.h"
#include "model/Appearance.h"
#include "model/TaskManager.h"
#include "platform/Folders.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "support/HttpsServer.h"
#include "support/PostgresServer.h"
#include "widgets/Palettes.h"

#include <QApplication>
#include <QIcon>
#include <QPixmapCache>
#include <QSettings>
#include <QStyleFactory>

#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

static void setUpApplication()
{
    QApplication::setApplicationName(u"quorvane"_s);
    QApplication::setApplicationDisplayName(u"Quorvane"_s);
    QApplication::setWindowIcon(QIcon(u":/quorvane.svg"_s));
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::addLibraryPath(QApplication::applicationDirPath() + u"/" QUORVANE_MODULE_PATH ""_s);
}

/// Sets the server up as its administrator would, for one user.
static CloudHome homeOnServer(const PostgresServer &server)
{
    const QString user = u"gardener"_s;
    server.runFile(u"admin"_s, u"" SOURCE_DIR "/resources/cloud/postgresql.sql"_s);
    server.run(u"admin"_s, u"CREATE ROLE %1 LOGIN PASSWORD '%1' IN ROLE quorvane"_s.arg(user));
    qputenv("PGPASSWORD", user.toUtf8());
    const QString accountFile = folders::config() + u"/cloud.ini"_s;
    QSettings(accountFile, QSettings::IniFormat).setValue(u"url"_s, server.url(user));
    return CloudHome::read(accountFile, folders::data());
}

/// The same user's program in another home.
static void receiveElsewhere(CloudSteps &steps, NotificationCenter &systemNotices, const CloudHome &cloudHome)
{
    const QTemporaryDir home;
    TaskManager manager(Preferences::standard());
    Profile profile(manager, systemNotices, cloudHome, {},
                    {home.filePath(u"Documents"_s), home.filePath(u"data"_s), home.filePath(u"state"_s)});
    steps.receiveList(MainWindowHandle(profile.window));
    const auto size = [](const QString &path) {
        return ExpectedList::readRows(path).size();
    };
    require(size(home.filePath(u"Documents/zandulist.txt"_s)) == manager.tasks.size(),
            u"the other machine's file holds the list"_s);
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

    PostgresServer server;
    const CloudHome cloudHome = homeOnServer(server);
    const Profile::Folders here{folders::documents(), folders::data(), folders::state()};
    // Made before the program, which has its last messages answered when it ends.
    const HttpsServer gateway([](const HttpsServer::Request &) {
        return HttpsServer::Answer{HttpsServer::response("201 CREATED", R"({"status": "queued"})")};
    });
    const GatewayAddress gatewayAddress{
        .host = u"127.0.0.1"_s, .port = gateway.port(), .trusted = {gateway.certificate()}};
    Desktop desktop(systemNotices);
    ExpectedList expected(taskListPath, today);
    MainWindowFileSteps fileSteps(stage, expected);
    {
        Profile profile(TaskManager::shared(), systemNotices, cloudHome, gatewayAddress, here);
        const MainWindowHandle main(profile.window);

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
        const QString clientPhoneNo = u"+49 30 5550 123"_s;
        const QString memberPhoneNo = u"0151 / 555-0142"_s;
        ContactSteps contactSteps(stage, main, desktop);
        contactSteps.addClient(client, clientPhoneNo);
        contactSteps.addTeamMember(teamMember, memberPhoneNo);

        TaskFormSteps formSteps(stage, main, expected, desktop, today);
        formSteps.addTask(client, teamMember);
        formSteps.editTask();
        formSteps.shareTask(folders::documents() + u"/shared task.txt"_s);

        MessageSteps messageSteps(stage, main, expected, desktop, gateway, today);
        messageSteps.setUpAccount();
        messageSteps.sendToClients(client, clientPhoneNo);
        messageSteps.sendToTeamMembers(teamMember, memberPhoneNo);

        ToolSteps toolSteps(stage, main, desktop);
        toolSteps.writeNotes(folders::documents() + u"/zandunotes.txt"_s);
        toolSteps.drawOnWhiteboard(QDir::current().filePath(u"zandulistwhiteboard.png"_s));
        toolSteps.readGuide();

        MainWindowAppearanceSteps(stage, main, expected, taskListPath, desktop).switchToDarkAndBack();

        CloudSteps cloudSteps(stage, main, expected, profile);
        cloudSteps.copyToCloud();
        cloudSteps.updateFromCloud();
        cloudSteps.deleteTask();
        receiveElsewhere(cloudSteps, systemNotices, cloudHome);
        fileSteps.closeWindow(main, taskListPath);
    }
    TaskManager manager(Preferences::standard());
    Profile profile(manager, systemNotices, cloudHome, gatewayAddress, here);
    fileSteps.openAgain(MainWindowHandle(profile.window));
}

static int runTour(const QString &pictureFolder, const QString &samplePath, int argc, char **argv)
{
    const QDate today = QDate::currentDate();
    TourHome home;
    home.placeTaskList(samplePath, today);
    Stage stage(QDir(pictureFolder).absolutePath(), home.divertStandardOutput());
    QDir::setCurrent(folders::documents());
    if (::geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1"); // which the administrator cannot have
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
