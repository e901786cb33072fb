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
#include "Stage.h"
#include "TaskFormSteps.h"
#include "ToolSteps.h"
#include "TourFailure.h"
#include "TourHome.h"
#include "model/TaskManager.h"
#include "platform/Folders.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "program/Application.h"
#include "program/Program.h"
#include "support/HttpsServer.h"
#include "support/PostgresServer.h"

#include <QSettings>

#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// Sets the server up as its administrator would, for one user, and lets the user's account name it.
static void makeHomeOnServer(const PostgresServer &server)
{
    const QString user = u"gardener"_s;
    server.runFile(u"admin"_s, u"" SOURCE_DIR "/resources/cloud/postgresql.sql"_s);
    server.run(u"admin"_s, u"CREATE ROLE %1 LOGIN PASSWORD '%1' IN ROLE quorvane"_s.arg(user));
    qputenv("PGPASSWORD", user.toUtf8());
    QSettings(folders::config() + u"/cloud.ini"_s, QSettings::IniFormat).setValue(u"url"_s, server.url(user));
}

/// The same user's program in another home.
static void receiveElsewhere(CloudSteps &steps, NotificationCenter &systemNotices)
{
    const QTemporaryDir home;
    TaskManager manager(Preferences::standard());
    Program program(manager, systemNotices,
                    {home.filePath(u"Documents"_s), folders::config(), home.filePath(u"data"_s),
                     home.filePath(u"state"_s)});
    program.mainWindow().show();
    steps.receiveList(MainWindowHandle(program.mainWindow()));
    const auto size = [](const QString &path) {
        return ExpectedList::readRows(path).size();
    };
    require(size(home.filePath(u"Documents/zandulist.txt"_s)) == manager.tasks().size(),
            u"the other machine's file holds the list"_s);
}

/// The tour plays the desktop, too: it sets the appearance and posts the notice, and leaves the real one
/// alone.
static void giveTour(Application &application, Stage &stage, const QString &taskListPath, QDate today)
{
    NotificationCenter systemNotices;
    application.followAppearance(systemNotices);

    PostgresServer server;
    makeHomeOnServer(server);
    const Program::Folders here = Program::Folders::ofUser();
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
        Program program(TaskManager::shared(), systemNotices, here, gatewayAddress);
        program.mainWindow().show();
        const MainWindowHandle main(program.mainWindow());

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

        CloudSteps cloudSteps(stage, main, expected, program);
        cloudSteps.copyToCloud();
        cloudSteps.updateFromCloud();
        cloudSteps.deleteTask();
        receiveElsewhere(cloudSteps, systemNotices);
        fileSteps.closeWindow(main, taskListPath);
    }
    TaskManager manager(Preferences::standard());
    Program program(manager, systemNotices, here, gatewayAddress);
    program.mainWindow().show();
    fileSteps.openAgain(MainWindowHandle(program.mainWindow()));
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
    Application application(argc, argv);
    try {
        giveTour(application, stage, home.taskListPath(), today);
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
