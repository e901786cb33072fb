#include "FaultInjector.h"
#include "contacts/Contact.h"
#include "contacts/PersistentContainer.h"
#include "journal/JournalStore.h"
#include "model/TaskManager.h"
#include "platform/Preferences.h"
#include "platform/ProtectedFile.h"
#include "taskfile/TaskListFile.h"
#include "versions/VersionKeeper.h"

#include <QCoreApplication>
#include <QFile>

#include <cerrno>
#include <utility>

using namespace Qt::StringLiterals;

// Saves one of the program's files while something goes wrong: `saver
// list|version|text|preferences|contacts|journal FOLDER STEP kill|full|room|EIO|EINTR [TEXT]`. With room, the
// disk is full until the list asks for room. With the name of an error one call fails once, and what was not
// saved then is saved again. Ends with 0 when all was saved, 1 when that has failed, 9 when it was killed.

namespace {

int step = 0;
faultInjector::Fault fault;
int error = 0;
bool isRoomMade = false; ///< as soon as the disk is full

/// Whether it saves; with a passing fault, at the second attempt.
int attempt(const auto &save)
{
    faultInjector::arm(step, fault, error);
    const bool isSaved = save() || (fault == faultInjector::Fault::Once && save());
    faultInjector::disarm();
    return isSaved ? EXIT_SUCCESS : EXIT_FAILURE;
}

int saveList(const QString &folder)
{
    Preferences preferences(folder + u"/none.ini"_s);
    TaskManager manager(preferences);
    const QString state = folder + u"/state"_s;
    const QString redoPath = redoFile::pathFor(folder + u"/zandulist.txt"_s, state);
    const auto makeRoom = [redoPath](const QString &path, qint64) {
        const bool isFull = path == redoPath || QFile::exists(redoPath); // the disk of this path
        if (isRoomMade && isFull)
            faultInjector::disarm();
        return isRoomMade && isFull;
    };
    TaskListFile file(manager, folder, state, {.makeRoom = makeRoom});
    bool isFirst = true;
    return attempt([&] {
        if (std::exchange(isFirst, false)) {
            file.parseFile(file.readFile());
            manager.addTask({.key = u"new"_s, .name = u"new"_s});
        } else {
            file.followFile();
        }
        return file.writeFile();
    });
}

int saveVersion(const QString &folder)
{
    VersionKeeper keeper(folder + u"/versions"_s);
    return attempt(
        [&] { return keeper.keep("new^", ClockReading::now()) != VersionKeeper::Outcome::Failed; });
}

int saveText(const QString &folder, const QByteArray &text)
{
    ProtectedFile file(folder + u"/documents/list.txt"_s, folder + u"/state"_s);
    return attempt([&] { return (file.read(), file.write(text)); });
}

int savePreferences(const QString &folder)
{
    Preferences preferences(folder + u"/preferences.ini"_s);
    return attempt([&] { return preferences.store({{u"account"_s, u"new"_s}, {u"secret"_s, u"new"_s}}); });
}

int saveContacts(const QString &folder)
{
    PersistentContainer container(contactModel(), folder);
    container.loadPersistentStores();
    for (const ManagedObject &object : container.viewContext().fetch(Clients::fetchRequest()))
        for (const auto attribute : {Contact::Name, Contact::PhoneNo})
            Contact(object).setValue(attribute, u"new"_s);
    return attempt([&] { return container.viewContext().save(); });
}

int saveMessage(const QString &folder)
{
    JournalStore journal(folder);
    return attempt(
        [&] { return journal.write({{.id = 2, .text = u"new"_s}}, {}, JournalStore::Durability::Machine); });
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 5)
        return EXIT_FAILURE;
    const QString &what = arguments[1];
    const QString &how = arguments[4];
    step = arguments[3].toInt();
    fault = how == u"kill"                     ? faultInjector::Fault::Kill
            : how == u"full" || how == u"room" ? faultInjector::Fault::Full
                                               : faultInjector::Fault::Once;
    isRoomMade = how == u"room";
    error = how == u"EIO" ? EIO : how == u"EINTR" ? EINTR : ENOSPC;
    return what == u"list"          ? saveList(arguments[2])
           : what == u"version"     ? saveVersion(arguments[2])
           : what == u"text"        ? saveText(arguments[2], arguments.value(5).toUtf8())
           : what == u"preferences" ? savePreferences(arguments[2])
           : what == u"journal"     ? saveMessage(arguments[2])
                                    : saveContacts(arguments[2]);
}
