#include "contacts/Contact.h"
#include "contacts/PersistentContainer.h"
#include "journal/JournalStore.h"
#include "platform/Preferences.h"
#include "platform/ProtectedFile.h"
#include "support/TestProgram.h"
#include "versions/VersionKeeper.h"

#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

const QByteArray oldRow = "3/7/24|old||1.0|1.0|1.0|1.0|3/9/24|0|0|Open|None|old|false|8|0|17|0||^";

/// What the program finds at its next start: old or new, or whatever else.
QString found(const QString &what, const QString &folder)
{
    const QString path = folder + u"/zandulist.txt"_s;
    const auto seenBefore = ProtectedFile::peek(path, folder + u"/state"_s);
    ProtectedFile::replayAll(folder + u"/state"_s);
    if (what == u"list") {
        const QByteArray list = contentOf(path);
        return seenBefore != list ? u"seen otherwise"_s
               : list == oldRow   ? u"old"_s
               : list.startsWith(oldRow) && list.count('^') == 2 && list.endsWith('^')
                   ? u"new"_s
                   : QString::fromUtf8(list);
    }
    if (what == u"version") {
        const versionFile::Listing listing = versionFile::list(folder + u"/versions"_s);
        const qint64 newest = listing.versions.isEmpty() ? 0 : listing.versions.last().number;
        const auto text = versionFile::readText(versionFile::pathOf(folder + u"/versions"_s, newest));
        return listing.unreadable.isEmpty() && text ? QString::fromUtf8(text->chopped(1)) : u"lost"_s;
    }
    if (what == u"text")
        return QString::fromUtf8(contentOf(folder + u"/documents/list.txt"_s));
    if (what == u"preferences") {
        const Preferences preferences(folder + u"/preferences.ini"_s);
        const QString account = preferences.text(u"account"_s).value_or(u"none"_s);
        const QString secret = preferences.text(u"secret"_s).value_or(u"none"_s);
        return account == secret ? account : account + u" with "_s + secret;
    }
    if (what == u"journal") {
        JournalStore journal(folder);
        const std::vector<qint64> messages = journal.find({});
        return messages == std::vector<qint64>{1}      ? u"old"_s
               : messages == std::vector<qint64>{2, 1} ? u"new"_s
                                                       : u"lost"_s;
    }
    PersistentContainer container(contactModel(), folder);
    container.loadPersistentStores();
    const auto records = container.viewContext().fetch(Clients::fetchRequest());
    if (records.size() != 1)
        return u"lost"_s;
    const Contact contact(records.front());
    return contact.name() == contact.phoneNo() ? contact.name().value_or(u"none"_s) : u"half"_s;
}

constexpr int mostSteps = 25; // of any save

void makeOld(const QString &folder)
{
    writeTo(folder + u"/zandulist.txt"_s, oldRow);
    writeTo(folder + u"/documents/list.txt"_s, "old");
    VersionKeeper(folder + u"/versions"_s).keep("old^", ClockReading::now());
    Preferences(folder + u"/preferences.ini"_s).store({{u"account"_s, u"old"_s}, {u"secret"_s, u"old"_s}});
    JournalStore(folder).write({{.id = 1, .text = u"old"_s}}, {}, JournalStore::Durability::Machine);
    PersistentContainer container(contactModel(), folder);
    container.loadPersistentStores();
    Clients client(container.viewContext());
    client.setValue(Contact::Name, u"old"_s);
    client.setValue(Contact::PhoneNo, u"old"_s);
    container.viewContext().save();
}

} // namespace

/// Lets every call of every save go wrong in every way.
class FaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsLost_data()
    {
        QTest::addColumn<QString>("what");
        QTest::addColumn<QString>("how");
        for (const char *what : {"list", "version", "text", "preferences", "contacts", "journal"})
            for (const char *how : {"kill", "full", "EIO", "EINTR"})
                QTest::addRow("%s %s", what, how) << QString::fromLatin1(what) << QString::fromLatin1(how);
    }

    void listTakesTheRoomOfVersions()
    {
        for (int step = 0; step < mostSteps; ++step) {
            const QTemporaryDir folder;
            makeOld(folder.path());
            const QStringList arguments{u"list"_s, folder.path(), QString::number(step), u"room"_s};
            QCOMPARE(QProcess::execute(u"" BINARY_DIR "/bin/saver"_s, arguments), EXIT_SUCCESS);
            QCOMPARE(found(u"list"_s, folder.path()), u"new"_s);
        }
    }

    void nothingIsLost()
    {
        QFETCH(const QString, what);
        QFETCH(const QString, how);
        const bool isPassing = how.startsWith(u'E');
        bool isNewSeen = false;
        for (int step = 0, result = -1; result != EXIT_SUCCESS || (isPassing && step < mostSteps); ++step) {
            QVERIFY(step < mostSteps || isPassing);
            const QTemporaryDir folder;
            makeOld(folder.path());
            const QStringList arguments{what, folder.path(), QString::number(step), how, u"new"_s};
            result = QProcess::execute(u"" BINARY_DIR "/bin/saver"_s, arguments);
            const QString text = found(what, folder.path());
            const QByteArray place = QByteArray::number(step) + ": " + text.toUtf8();
            QVERIFY2(text == u"new" || (text == u"old" && !(isNewSeen && how == u"kill")), place);
            QVERIFY2((result != EXIT_SUCCESS && !isPassing) || text == u"new", place);
            isNewSeen |= text == u"new";
        }
    }
};

static const TestClass<FaultsTest> registered;
#include "FaultsTest.moc"
