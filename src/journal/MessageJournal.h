#pragma once

#include "journal/JournalStore.h"

#include <QObject>
#include <QThread>

#include <functional>
#include <mutex>

/// Keeps what was handed over, when, to whom and with which answer, by a thread of its own. Made and
/// destroyed on the main thread, used on any.
///
/// Messages are in the journal before they leave, safe from a power cut; what has become of them follows as
/// soon as it is known, safe from a crash of the program, and from a power cut with the next messages. A
/// message without an answer may therefore have arrived.
class MessageJournal : public QObject
{
    Q_OBJECT

public:
    /// \param folder  where the file is
    explicit MessageJournal(const QString &folder);
    /// Writes what it has been told before.
    ~MessageJournal() override;

    /// Called on the journal's thread when the messages are safe, or with the reason why they cannot be.
    using Recorded = std::function<void(const QString &problem)>;
    void record(std::vector<SentMessage> messages, Recorded recorded);
    /// What has become of a message that was recorded.
    void note(const SentMessage &message);

    /// Whether the message is just being handed over, or is about to be.
    bool isUnderWay(qint64 identifier) const;
    /// Removes what went to the person, or everything, but not what is under way. Tells when that is done.
    void forget(const std::optional<QString> &person);

    /// The owners of the numbers have no longer said that they want no messages.
    void tryAgain(const QStringList &numbers);

    const QString &folder() const { return storeFolder; }

signals:
    /// There is something else in the file.
    void written();
    /// \param problem  why it could not be; empty when it is
    void forgotten(const QString &problem);
    /// Something the user has to know; on the thread on which the receiver lives.
    void told(const QString &sentence);

private:
    void start();
    void write(const std::vector<SentMessage> &begun, const Recorded &recorded);
    void tell(const QString &problem, bool isRecording);
    JournalStore &openedStore();

    QString storeFolder;
    mutable std::mutex mutex;
    std::vector<SentMessage> noted; ///< and not written yet
    std::set<qint64> underWay;      ///< recorded, and nothing else known
    bool isWritePosted = false;
    QThread thread;
    QObject threadContext;
    std::unique_ptr<JournalStore> store; ///< belongs to the thread
    bool isFailing = false;              ///< the last write did; belongs to the thread
};
