#include "Gateway.h"
#include "Steps.h"
#include "Tour.h"
#include "model/TaskManager.h"
#include "platform/Folders.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "program/Application.h"
#include "program/Program.h"
#include "support/PostgresServer.h"
#include "support/ScratchHome.h"

#include <QSettings>

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// Sets the server up as its administrator would, for one user, and lets the user's account name it.
static void makeHomeOnServer(const PostgresServer &server)
{
    const QString user = u"gardener"_s;
    server.run(u"admin"_s, QString::fromUtf8(contentOf(u"" SOURCE_DIR "/resources/cloud/postgresql.sql"_s)));
    server.run(u"admin"_s, u"CREATE ROLE %1 LOGIN PASSWORD '%1' IN ROLE quorvane"_s.arg(user));
    qputenv("PGPASSWORD", user.toUtf8());
    QSettings(folders::config() + u"/cloud.ini"_s, QSettings::IniFormat).setValue(u"url"_s, server.url(user));
}

static void goThroughSteps(Tour &tour, Gateway &gateway)
{
    const Person client{u"Gärtnerei Öz & Töchter"_s, u"+49 30 5550 123"_s};
    const Person teamMember{u"Aoife Brennan"_s, u"0151 / 555-0142"_s};
    openWindow(tour);
    pickEveryView(tour);
    search(tour);
    sortByName(tour);
    selectTask(tour);
    hideAndUnhide(tour);
    move(tour);
    moveInAnotherView(tour);
    cloneTask(tour);
    closeTask(tour);
    undoAndRedo(tour);
    addClient(tour, client);
    addTeamMember(tour, teamMember);
    addTask(tour, client, teamMember);
    editTask(tour);
    shareTask(tour);
    setUpAccount(tour);
    lookAtNumbers(tour, teamMember);
    textClient(tour, gateway, client);
    textTeamMember(tour, gateway, teamMember);
    lookAtReport(tour);
    lookAtSentMessages(tour, gateway, client);
    writeNotes(tour);
    drawOnWhiteboard(tour);
#ifdef HAS_GUIDE
    readGuide(tour);
#endif
    switchToDarkAndBack(tour);
    bringBackTask(tour);
    copyToCloud(tour);
    updateFromCloud(tour);
    deleteTask(tour);
}

/// The tour plays the desktop, too: it sets the appearance and posts the notice, and leaves the real one
/// alone.
static void giveTour(Application &application, Stage &stage)
{
    NotificationCenter systemNotices;
    application.followAppearance(systemNotices);
    const PostgresServer server;
    makeHomeOnServer(server);
    const Program::Folders here = Program::Folders::ofUser();
    ExpectedList expected(here.documents + u"/zandulist.txt"_s, QDate::currentDate());
    Gateway gateway; // made before the program, which has its last messages answered when it ends
    {
        Program program(TaskManager::shared(), systemNotices, here, gateway.address());
        Tour tour(stage, expected, program, systemNotices);
        goThroughSteps(tour, gateway);
        {
            const QTemporaryDir home;
            TaskManager manager(Preferences::standard());
            Program there(manager, systemNotices,
                          {home.filePath(u"Documents"_s), here.config, home.filePath(u"data"_s),
                           home.filePath(u"state"_s)});
            Tour other(stage, expected, there, systemNotices);
            receiveElsewhere(other);
        }
        closeWindow(tour);
    }
    TaskManager manager(Preferences::standard());
    Program program(manager, systemNotices, here, gateway.address());
    Tour tour(stage, expected, program, systemNotices);
    openAgain(tour);
}

/// Puts the sample where the program looks for its task list; one of its tasks is due today.
static void placeTaskList(const QString &samplePath)
{
    QByteArray sample = contentOf(samplePath);
    require(sample.contains("@TODAY@"), samplePath + u": is no sample with a task that is due today"_s);
    sample.replace("@TODAY@", QDate::currentDate().toString(u"M/d/yy"_s).toUtf8());
    writeTo(folders::documents() + u"/zandulist.txt"_s, sample);
}

/// The tour's own lines keep the standard output; what the program writes there goes to a file.
static void divertDiagnostics(const QString &path)
{
    stdout = ::fdopen(::dup(STDOUT_FILENO), "w");
    const int file = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    require(stdout && file >= 0 && ::dup2(file, STDOUT_FILENO) >= 0, u"standard output cannot be diverted"_s);
    ::close(file);
}

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fputs("usage: quorvane-tour PICTURE-FOLDER SAMPLE-TASK-LIST\n", stderr);
        return EXIT_FAILURE;
    }
    ScratchHome home; // before the application object, which looks for its folders
    if (::geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1"); // which the administrator cannot have
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    Application application(argc, argv);
    try {
        Stage stage(QDir(QString::fromLocal8Bit(argv[1])).absolutePath());
        try {
            placeTaskList(QString::fromLocal8Bit(argv[2]));
            divertDiagnostics(home.path(u"diagnostics.txt"_s));
            QDir::setCurrent(folders::documents());
            giveTour(application, stage);
            stage.finish();
            return EXIT_SUCCESS;
        } catch (const TourFailure &failure) {
            stage.fail(QString::fromUtf8(failure.what()) + u"\n    the files are left in "_s + home.keep());
        }
    } catch (const TourFailure &failure) {
        std::fprintf(stderr, "quorvane-tour: %s\n", failure.what());
    }
    return EXIT_FAILURE;
}
