#pragma once

#include "messaging/RunSnapshot.h"

#include <QHash>

/// When a person was last sent something for days in a range, and how their schedule differs from it now.
struct SentSchedule
{
    qint64 lastSent = 0; ///< in milliseconds since 1970 in UTC
    qint64 moved = 0;    ///< tasks at another time
    qint64 reworded = 0; ///< tasks with other words
    qint64 added = 0;
    qint64 dropped = 0;

    bool isChanged() const { return moved + reworded + added + dropped > 0; }
    /// In a few words, for a cell.
    QString summary() const;
    /// In a sentence.
    QString sentence() const;
};

/// By the names, as by `matchedName`, of those of the run's recipients who were sent something.
/// \param run   for all people of one kind
/// \param sent  what may have arrived of what was sent for days in the run's range, the oldest first
QHash<QString, SentSchedule> sentSchedules(const RunSnapshot &run, const std::vector<SentMessage> &sent);
