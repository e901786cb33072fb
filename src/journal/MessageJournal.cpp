#include "journal/MessageJournal.h"

#include <QTimer>

using namespace Qt::StringLiterals;

constexpr std::chrono::milliseconds gathering(20); // one write takes about as long as many

MessageJournal::MessageJournal(const QString &folder)
    : storeFolder(folder)
{
    threadContext.moveToThread(&thread);
    thread.setObjectName(u"journal"_s);
    connect(&thread, &QThread::finished, &threadContext, [this] { store.reset(); });
}

MessageJournal::~MessageJournal()
{
    // Behind what is queued.
    QMetaObject::invokeMethod(
        &threadContext,
        [this] {
            write({}, {});
            thread.quit();
        },
        Qt::QueuedConnection);
    thread.wait();
}

void MessageJournal::record(std::vector<SentMessage> messages, Recorded recorded)
{
    {
        const std::lock_guard lock(mutex);
        if (!thread.isRunning())
            thread.start();
    }
    QMetaObject::invokeMethod(
        &threadContext,
        [this, begun = std::move(messages), done = std::move(recorded)] { write(begun, done); },
        Qt::QueuedConnection);
}

void MessageJournal::note(const SentMessage &message)
{
    const std::lock_guard lock(mutex);
    noted.push_back(message);
    if (!std::exchange(isWritePosted, true)) // those that come until then go with it
        QMetaObject::invokeMethod(
            &threadContext,
            [this] { QTimer::singleShot(gathering, &threadContext, [this] { write({}, {}); }); },
            Qt::QueuedConnection);
}

JournalStore &MessageJournal::openedStore()
{
    if (!store) {
        store = std::make_unique<JournalStore>(storeFolder);
        if (store->open())
            store->removeOld();
        if (const QString aside = store->takeAsidePath(); !aside.isEmpty())
            emit told(u"The journal of messages was damaged. It is kept in %1, and a new one has been "
                      "begun."_s.arg(aside));
    }
    return *store;
}

void MessageJournal::write(const std::vector<SentMessage> &begun, const Recorded &recorded)
{
    std::vector<SentMessage> ended;
    {
        const std::lock_guard lock(mutex);
        ended.swap(noted);
        isWritePosted = isWritePosted && !begun.empty();
    }
    if (begun.empty() && ended.empty())
        return;
    JournalStore &journal = openedStore();
    const bool isWritten = journal.write(
        begun, ended, begun.empty() ? JournalStore::Durability::Process : JournalStore::Durability::Machine);
    if (!isWritten && !ended.empty()) {
        const std::lock_guard lock(mutex);
        noted.insert(noted.begin(), ended.begin(), ended.end()); // with the next ones
    }
    if (isWritten && begun.empty())
        emit written();
    const QString problem = isWritten ? QString() : journal.problem();
    if (recorded)
        recorded(problem);
    if (!isWritten)
        emit told(u"%1 not be written to the journal of messages, %2: %3."_s.arg(
                      recorded ? u"What is to be sent could"_s : u"What has become of some messages could"_s,
                      journal.filePath(), problem) +
                  (recorded ? u" Nothing further is sent."_s : QString()));
}
