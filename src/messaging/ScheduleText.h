#pragma once

#include "model/task.h"

#include <QLocale>

#include <optional>

class Preferences;

/// Somebody who is sent a schedule, as the contact store has it.
struct Recipient
{
    std::optional<QString> name;
    std::optional<QString> phoneNo;
};

enum class RecipientKind { Client, TeamMember };

/// The tasks in the order in which schedules list them: by start moment, equal ones in the order of the list.
TaskList tasksForSchedules(TaskList tasks);

/// Which tasks belong to a recipient's schedule, and the texts of its messages.
///
/// Days are those of the user's time zone and dates in the short form of the user's locale. Used on one
/// thread.
class ScheduleText
{
public:
    /// \param start, end   any moments of the range's first and last day
    /// \param preferences  asked anew for every text
    ScheduleText(RecipientKind kind, Instant start, Instant end, const Preferences &preferences);

    /// True when the task is the recipient's, whatever the case of the name, and begins within the range.
    bool matches(const Recipient &recipient, const task &entry) const;

    /// What comes before the recipient's first task.
    QString header(const task &first) const;
    QString taskMessage(const task &entry) const;
    /// What comes after the last task; empty when nothing does.
    QString footer() const;

private:
    const QString &nameIn(const task &entry) const;
    QString dateText(Instant instant) const;

    RecipientKind kind;
    Instant start;
    Instant end;
    const Preferences &preferences;
    Calendar calendar;
    QLocale locale;
};
