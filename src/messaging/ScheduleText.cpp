#include "messaging/ScheduleText.h"

#include "app/UIUtil.h"
#include "gateway/MessagingSettings.h"
#include "platform/Preferences.h"

#include <algorithm>

using namespace Qt::StringLiterals;

const QString &nameIn(const task &entry, RecipientKind kind)
{
    return kind == RecipientKind::Client ? entry.client : entry.teamMember;
}

std::vector<ScheduledTask> tasksForSchedules(RecipientKind kind, TaskList tasks)
{
    std::ranges::stable_sort(tasks, {}, [](const SharedTask &entry) { return entry->date; });
    std::vector<ScheduledTask> schedule;
    schedule.reserve(size_t(tasks.size()));
    for (const SharedTask &entry : tasks)
        schedule.push_back({entry, matchedName(nameIn(*entry, kind))});
    return schedule;
}

ScheduleText::ScheduleText(RecipientKind recipientKind, Instant first, Instant last,
                           const Preferences &userPreferences)
    : kind(recipientKind)
    , start(first)
    , end(last)
    , preferences(userPreferences)
{
}

bool ScheduleText::matches(const std::optional<QString> &name, const ScheduledTask &candidate,
                           DayLines lines) const
{
    const auto isSameDayOrEarlier = [this, lines](Instant a, Instant b) {
        return lines == DayLines::Written ? util().isSameDayOrEarlier(a, b, calendar)
                                          : util().compareDays(a, b, calendar) >= 0;
    };
    return name && candidate.name == *name && isSameDayOrEarlier(start, candidate.entry->date) &&
           isSameDayOrEarlier(candidate.entry->date, end);
}

QDate ScheduleText::firstDay() const
{
    return calendar.dayOf(start);
}

QDate ScheduleText::lastDay() const
{
    return calendar.dayOf(end);
}

QDate ScheduleText::dayOf(const task &entry) const
{
    return calendar.dayOf(entry.date);
}

QString ScheduleText::header(const task &first) const
{
    return preferences.text(messagingKey::messageTitle).value_or(QString()) + u'\n' +
           (kind == RecipientKind::Client ? u"Client Schedule: "_s : u"Team Member Schedule: "_s) +
           nameIn(first, kind) + u'\n' + dateText(start) + u'-' + dateText(end) + u"\n\r"_s;
}

QString ScheduleText::taskMessage(const task &entry) const
{
    // One after the other, since both are written to the diagnostic lines.
    const QString startTime = util().formatTime(entry.startHour, entry.startMin);
    const QString endTime = util().formatTime(entry.endHour, entry.endMin);
    return dateText(entry.date) + u' ' + startTime + u'-' + dateText(entry.due) + u' ' + endTime +
           wordsOf(entry);
}

QString ScheduleText::wordsOf(const task &entry) const
{
    return u' ' + entry.name + u'-' + (kind == RecipientKind::Client ? entry.teamMember : entry.client);
}

QString ScheduleText::rangeAndFrame() const
{
    QStringList parts{QString::number(int(kind)), dateText(start), dateText(end)};
    for (const QString &key :
         {messagingKey::accountId, messagingKey::sendingPhoneNo, messagingKey::notifications,
          messagingKey::messageTitle, messagingKey::messageFooter, messagingKey::overwrite,
          messagingKey::testPhoneNo})
        parts.append(preferences.text(key).value_or(QString()));
    return parts.join(u'\n');
}

QString ScheduleText::footer() const
{
    return preferences.text(messagingKey::messageFooter).value_or(QString());
}

QString ScheduleText::dateText(Instant instant) const
{
    const QDate day = calendar.dayOf(instant);
    QString &text = dayTexts[day];
    if (text.isEmpty())
        text = shortDate(day);
    return text;
}
