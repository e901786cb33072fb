#include "program/StartCheck.h"

#include "app/UIUtil.h"
#include "widgets/Alert.h"

#include <QApplication>
#include <QLocale>
#include <QTextStream>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

/// Has the application's event loop show it, without which a signal could not end it.
void show(const QStringList &sentences, const std::function<void()> &window)
{
    QTextStream(stderr) << u"quorvane: "_s + sentences.join(u' ') + u'\n';
    const auto showAndLeave = [window] {
        window();
        QCoreApplication::exit();
    };
    QMetaObject::invokeMethod(qApp, showAndLeave, Qt::QueuedConnection);
    QApplication::exec();
}

void tellOf(const LockFile::Owner &other)
{
    const QString message = u"Quorvane is running already, as process %1 on the machine %2, and could not be "
                            "brought to the front. Look for its window, or end that process and start "
                            "again."_s.arg(QString::number(other.processId), other.machine);
    show({message}, [message] { alertMessage(nullptr, message); });
}

bool askAbout(const LockFile::Owner &other, const QString &lockPath)
{
    const QString question = other.isElsewhere
                                 ? u"Is Quorvane running on the machine %1?"_s.arg(other.machine)
                                 : u"Is Quorvane running already?"_s;
    const QString started = QLocale().toString(other.since, QLocale::ShortFormat);
    const QString reason =
        other.isElsewhere
            ? u"It was started there on %1 as process %2. It cannot be seen from here whether it still runs."_s
                  .arg(started, QString::number(other.processId))
            : u"The file \"%1\" is locked by a program that has not said which one it is."_s.arg(lockPath);
    const QString consequence = u"Two running programs overwrite each other's changes."_s;
    bool isWanted = false;
    show({question, reason, consequence}, [&] {
        isWanted = util().askYesNo(question, reason + u' ' + consequence + u" Start all the same?"_s);
    });
    return isWanted;
}

} // namespace

bool mayStart(SingleInstance &instance, SingleInstance::Outcome outcome)
{
    using enum SingleInstance::Outcome;
    if (outcome == Uncertain && askAbout(instance.otherProgram(), instance.lockPath()))
        outcome = instance.acquire(true);
    if (outcome == Running)
        tellOf(instance.otherProgram());
    return outcome == Acquired;
}
