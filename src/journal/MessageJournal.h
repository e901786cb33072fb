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

    const QString &folder() const { return storeFolder; }

signals:
    /// What has become of some messages is in the journal; on the thread on which the receiver lives.
    void written();
    /// Something the user has to know; on the thread on which the receiver lives.
    void told(const QString &sentence);

private:
    void write(const std::vector<SentMessage> &begun, const Recorded &recorded);
    JournalStore &openedStore();

    QString storeFolder;
    std::mutex mutex;
    std::vector<SentMessage> noted; ///< and not written yet
    bool isWritePosted = false;
    QThread thread;
    QObject threadContext;
    std::unique_ptr<JournalStore> store; ///< belongs to the thread
};
