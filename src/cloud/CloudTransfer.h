#pragma once

#include "cloud/CloudDatabase.h"

#include <QSet>

struct CloudErrand;

/// A copy of the whole list to the cloud, or its update from there, and how far that is.
struct CloudTransfer
{
    enum class Direction { ToCloud, FromCloud };

    Direction direction;
    qint64 tasks = 0; ///< that are to be transferred; 0 as long as that is not known
    qint64 done = 0;  ///< of them
    qint64 failed = 0;
    std::optional<CloudError> error = {}; ///< the first
    bool hasAccount = true;               ///< as far as the account's state has been answered
    bool hasSucceeded = false;            ///< when it has ended
    std::stop_source stop = {};           ///< the user stops it
    QSet<QString> deletedKeys = {};       ///< of tasks that the user has deleted meanwhile
    QString deleteProblem = {};           ///< what became of that, when it failed

    /// What has been fetched is merged to the end.
    bool canBeStopped() const
    {
        return !stop.stop_requested() && (direction == Direction::ToCloud || tasks == 0);
    }
    bool isEmptyFetch() const
    {
        return direction == Direction::FromCloud && tasks == 0 && !error && hasAccount;
    }
    bool isCopied() const { return done + failed == tasks; }
    /// Takes note of an errand that is over.
    void note(const CloudErrand &errand);
    /// The same for the copy of the task with this key.
    void noteCopied(const QString &key, const CloudErrand &errand);
    /// What has come of it in plain words, when it has ended; empty where the account's state or the list
    /// says all.
    QString outcome() const;
    /// All that the user is told then; empty for nothing.
    /// \param accountProblem  what is wrong where there is no account
    QString message(const QString &accountProblem) const;
};
