#pragma once

#include "messaging/RunSnapshot.h"

#include <QHash>
#include <QSet>

/// When a person was last sent something for days in a range, and how their schedule differs from it now.
struct SentSchedule
{
    qint64 lastSent = 0; ///< in milliseconds since 1970 in UTC
    qint64 moved = 0;    ///< tasks at another time
    qint64 reworded = 0; ///< tasks with other words
    qint64 added = 0;
    qint64 dropped = 0;

    bool operator==(const SentSchedule &) const = default;
    bool isChanged() const { return moved + reworded + added + dropped > 0; }
    /// In a few words, for a cell.
    QString summary() const;
    /// In a sentence.
    QString sentence() const;
};

/// What the people of one kind were sent for days in a range, compared with what they would be sent now.
class SentSchedules
{
public:
    SentSchedules() = default;
    /// \param run   for all people of the kind
    /// \param sent  what may have arrived of what was sent for days in the run's range, the oldest first
    SentSchedules(const RunSnapshot &run, const std::vector<SentMessage> &sent);

    bool operator==(const SentSchedules &) const = default;
    /// Nothing when they were sent nothing.
    std::optional<SentSchedule> of(const Recipient &recipient) const;

private:
    QString identity(const QString &name, const QString &phoneNo) const;

    QSet<QString> sharedNames; ///< that several people have, who are told apart by their numbers
    QHash<QString, SentSchedule> schedules;
};
