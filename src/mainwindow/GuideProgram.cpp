#include "mainwindow/GuideProgram.h"

#include "model/Appearance.h"
#include "platform/Diagnostics.h"
#include "platform/NotificationCenter.h"
#include "widgets/Alert.h"

#include <QApplication>
#include <QKeyEvent>
#include <QStandardPaths>

#include <chrono>

using namespace Qt::StringLiterals;

static QString programPath()
{
    return QStandardPaths::findExecutable(u"quorvane-guide"_s, QCoreApplication::libraryPaths());
}

bool GuideProgram::isInstalled()
{
    return !programPath().isEmpty();
}

GuideProgram::GuideProgram(NotificationCenter &systemNotices, QObject *parent)
    : QProcess(parent)
{
    systemNotices.observe(notice::appearanceChanged, this, [this] { tellAppearance(); });
    connect(qApp, &QCoreApplication::aboutToQuit, this, &QProcess::closeWriteChannel);
    connect(this, &QProcess::readyReadStandardOutput, this, [this] {
        while (canReadLine())
            obey(readLine().trimmed());
    });
    connect(this, &QProcess::finished, this, &GuideProgram::judgeEnd);
    connect(this, &QProcess::errorOccurred, this, [this](ProcessError error) {
        if (error == FailedToStart)
            tellUser(u"could not be started"_s, errorString());
    });
}

GuideProgram::~GuideProgram()
{
    constexpr std::chrono::milliseconds patience(2000);
    disconnect();
    closeWriteChannel();
    waitForFinished(int(patience.count()));
}

void GuideProgram::bringToFront()
{
    if (state() == NotRunning)
        start(programPath(), QStringList());
    tellAppearance();
    write("raise\n");
}

void GuideProgram::obey(const QByteArray &line)
{
    constexpr QByteArrayView keyWord("key ");
    const QKeySequence keys =
        line.startsWith(keyWord) ? QString::fromUtf8(line.sliced(keyWord.size())) : QString();
    if (keys.isEmpty())
        diagnostics::line(line);
    else
        QCoreApplication::postEvent(
            parent(), new QKeyEvent(QEvent::KeyPress, keys[0].key(), keys[0].keyboardModifiers()));
}

void GuideProgram::tellAppearance()
{
    if (state() != NotRunning)
        write(isDarkMode() ? "dark\n" : "light\n");
}

void GuideProgram::judgeEnd(int status, ExitStatus howItEnded)
{
    const QString report = QString::fromLocal8Bit(readAllStandardError()).trimmed();
    const QString lastWords =
        report.section(u'\n', -1).section(u"] "_s, -1); // without the place in its source
    if (howItEnded == CrashExit)
        tellUser(u"has crashed"_s, lastWords);
    else if (status != EXIT_SUCCESS)
        tellUser(u"has ended with status %1"_s.arg(status), lastWords);
}

void GuideProgram::tellUser(const QString &whatHappened, const QString &why)
{
    const QString message = u"The guide cannot be shown: its program %1. F1 tries again.\n\n"_s;
    alertMessage(QApplication::activeWindow(), (message.arg(whatHappened) + why).trimmed());
}
