#pragma once

#include "contacts/Contact.h"
#include "model/task.h"

#include <QHash>

#include <optional>
#include <vector>

class Preferences;

/// Somebody who is sent a schedule, as the contact store has it.
struct Recipient
{
    std::optional<QString> name = {};
    std::optional<QString> phoneNo = {};
};

enum class RecipientKind { Client, TeamMember };

/// A task and, as by `matchedName`, the name of the recipient whose schedule it belongs to.
struct ScheduledTask
{
    SharedTask entry;
    QString name;
};

/// The tasks in the order in which schedules list them: by start moment, equal ones in the order of the list.
std::vector<ScheduledTask> tasksForSchedules(RecipientKind kind, TaskList tasks);

/// Which tasks belong to a recipient's schedule, and the texts of its messages.
///
/// Days are those of the user's time zone and dates in the short form of the user's locale. Used on one
/// thread.
class ScheduleText
{
public:
    /// \param start, end   any moments of the range's first and last day
    /// \param preferences  title and footer are read again for every text
    ScheduleText(RecipientKind kind, Instant start, Instant end, const Preferences &preferences);

    /// Whether diagnostic lines say how the task's day compares with the range.
    enum class DayLines { Written, Omitted };

    /// True when the task belongs to the recipient with this name, as by `matchedName`, and begins within the
    /// range.
    bool matches(const std::optional<QString> &name, const ScheduledTask &candidate, DayLines lines) const;

    QDate firstDay() const;
    QDate lastDay() const;
    /// The day on which the task begins.
    QDate dayOf(const task &entry) const;
    /// What comes before the recipient's first task.
    QString header(const task &first) const;
    QString taskMessage(const task &entry) const;
    /// The end of that message, which says what is to be done and with whom.
    QString wordsOf(const task &entry) const;
    /// What all recipients' messages have in common: kind, days, title, footer, and where they go instead.
    QString rangeAndFrame() const;
    /// What comes after the last task; empty when nothing does.
    QString footer() const;

private:
    QString dateText(Instant instant) const;

    RecipientKind kind;
    Instant start;
    Instant end;
    const Preferences &preferences;
    Calendar calendar;
    mutable QHash<QDate, QString> dayTexts; ///< those that were made
};

/// The name by which the task is matched: of its client or of its team member.
const QString &nameIn(const task &entry, RecipientKind kind);
