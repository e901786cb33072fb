#include "cloud/TaskRecord.h"
#include "contacts/Contact.h"
#include "contacts/PersistentContainer.h"
#include "model/TaskManager.h"
#include "platform/Preferences.h"
#include "platform/RedoFile.h"
#include "taskfile/TaskListFile.h"
#include "widgets/WindowSize.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>

using namespace Qt::StringLiterals;

// What reads files and records, given whatever bytes there may be. One program for each function: FUZZ names
// the one that this one calls.

namespace {

void require(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

/// A file with these bytes, in memory where there is such a file system.
QString fileWith(const QByteArray &bytes, const QString &name = u"file"_s)
{
    static const QTemporaryDir folder(u"/dev/shm/quorvane-fuzz-XXXXXX"_s);
    QFile file(folder.filePath(name));
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    return file.fileName();
}

Preferences &preferences()
{
    static Preferences none(u"/nonexistent/preferences.ini"_s);
    return none;
}

[[maybe_unused]] void list(const QByteArray &bytes)
{
    TaskManager manager(preferences());
    TaskListFile file(manager, QString(), QString());
    file.parseFile(QString::fromUtf8(bytes));
    const QByteArray once = file.text();
    TaskManager again(preferences());
    TaskListFile fileAgain(again, QString(), QString());
    fileAgain.parseFile(QString::fromUtf8(once));
    require(fileAgain.text() == once && fileAgain.skippedRows() == 0);
}

[[maybe_unused]] void redo(const QByteArray &bytes)
{
    if (const auto read = redoFile::read(fileWith(bytes)))
        require(read->content.size() + read->path.size() < bytes.size());
}

[[maybe_unused]] void ini(const QByteArray &bytes)
{
    const QString path = fileWith(bytes);
    IniFile file(path);
    const QString text = QString::fromUtf8(bytes);
    if (!text.contains(u'\0') && file.store({{u"key"_s, text}}))
        require(IniFile(path).text(u"key"_s) == text);
}

[[maybe_unused]] void windowstate(const QByteArray &bytes)
{
    const IniFile file(fileWith(bytes));
    for (const QString &key : {u"width"_s, u"column3"_s, u"sortColumn"_s})
        if (const auto number = windowSize::number(file, key, -1, 100))
            require(*number >= -1 && *number <= 100);
}

[[maybe_unused]] void contacts(const QByteArray &bytes)
{
    const QString path = fileWith(bytes, u"Model.sqlite"_s);
    PersistentContainer container(contactModel(), path.chopped(13));
    container.loadPersistentStores();
    for (const ManagedObject &object : container.viewContext().fetch(Clients::fetchRequest()))
        Contact(object).setValue(Contact::Name, u"new"_s);
    container.viewContext().save();
}

/// Fields in any order, of any type and with any value.
[[maybe_unused]] void record(const QByteArray &bytes)
{
    CloudRecord fetched = newTaskRecord();
    const QList<CloudRecordType::Field> &fields = taskRecordType().fields;
    for (const QByteArray &part : bytes.split('|')) {
        const auto name = fields[qsizetype(uchar(part.isEmpty() ? 0 : part[0])) % fields.size()].name;
        const QByteArray value = part.mid(2);
        switch (part.size() > 1 ? part[1] % 4 : 0) {
        case 0:
            fetched.setValue(name, QString::fromUtf8(value));
            break;
        case 1:
            fetched.setValue(name, value.toLongLong());
            break;
        case 2:
            fetched.setValue(name, value.toDouble());
            break;
        default:
            fetched.setValue(name, Instant(std::chrono::milliseconds(value.toLongLong())));
        }
    }
    TaskManager manager(preferences());
    manager.addTask(taskOfRecord(fetched, manager.blankTask()));
    TaskListFile file(manager, QString(), QString());
    require(file.text().count('^') == 1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int count = 0;
    static const QCoreApplication application(count, nullptr);
    FUZZ(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    return 0;
}
