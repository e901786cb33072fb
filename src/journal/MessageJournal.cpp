#include "journal/MessageJournal.h"

#include <QDateTime>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds gathering(20); // one write takes about as long as many
constexpr std::chrono::seconds untilNextAttempt(5);

} // namespace

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

void MessageJournal::start()
{
    const std::lock_guard lock(mutex);
    if (!thread.isRunning())
        thread.start();
}

void MessageJournal::record(std::vector<SentMessage> messages, Recorded recorded)
{
    start();
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

bool MessageJournal::isUnderWay(qint64 identifier) const
{
    const std::lock_guard lock(mutex);
    return underWay.contains(identifier);
}

void MessageJournal::forget(const std::optional<QString> &person)
{
    start();
    QMetaObject::invokeMethod(
        &threadContext,
        [this, person] {
            const auto except = [this] {
                const std::lock_guard lock(mutex);
                return underWay;
            }();
            JournalStore &journal = openedStore();
            const bool isForgotten = journal.forget(person, except);
            emit forgotten(isForgotten ? QString() : journal.problem());
        },
        Qt::QueuedConnection);
}

void MessageJournal::tryAgain(const QStringList &numbers)
{
    start();
    QMetaObject::invokeMethod(
        &threadContext,
        [this, numbers] {
            write({}, {}); // lest a refusal from before mark them again
            JournalStore &journal = openedStore();
            const bool isDone = std::ranges::all_of(
                numbers, [&journal](const QString &number) { return journal.tryAgain(number); });
            if (isDone)
                emit written();
            else
                emit told(u"The mark stays, since it could not be taken away in %1: %2."_s.arg(
                    journal.filePath(), journal.problem()));
        },
        Qt::QueuedConnection);
}

JournalStore &MessageJournal::openedStore()
{
    if (!store) {
        store = std::make_unique<JournalStore>(storeFolder);
        store->removeOld(QDateTime::currentMSecsSinceEpoch());
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
        for (const SentMessage &message : begun)
            underWay.insert(message.id);
    }
    if (begun.empty() && ended.empty())
        return;
    JournalStore &journal = openedStore();
    const bool isWritten = journal.write(
        begun, ended, begun.empty() ? JournalStore::Durability::Process : JournalStore::Durability::Machine);
    const QString problem = isWritten ? QString() : journal.problem();
    {
        const std::lock_guard lock(mutex);
        for (const SentMessage &message : isWritten ? ended : begun)
            underWay.erase(message.id);
        if (!isWritten && !ended.empty()) {
            noted.insert(noted.begin(), ended.begin(), ended.end());
            if (!std::exchange(isWritePosted, true))
                QTimer::singleShot(untilNextAttempt, &threadContext, [this] { write({}, {}); });
        }
    }
    if (recorded)
        recorded(problem);
    tell(problem, bool(recorded));
}

void MessageJournal::tell(const QString &problem, bool isRecording)
{
    if (const QString aside = store->takeAsidePath(); !aside.isEmpty())
        emit told(u"The journal of messages was damaged. It is kept in %1, and a new one has been "
                  "begun."_s.arg(aside));
    if (problem.isEmpty())
        emit written();
    else if (isRecording || !isFailing) // what is tried again is told once
        emit told(
            u"%1 not be written to the journal of messages, %2: %3."_s.arg(
                isRecording ? u"What is to be sent could"_s : u"What has become of some messages could"_s,
                store->filePath(), problem) +
            (isRecording ? u" Nothing further is sent."_s : QString()));
    isFailing = !problem.isEmpty();
}
