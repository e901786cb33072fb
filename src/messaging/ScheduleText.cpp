#include "messaging/ScheduleText.h"

#include "app/UIUtil.h"
#include "messaging/MessagingSettings.h"
#include "platform/Preferences.h"

#include <algorithm>

using namespace Qt::StringLiterals;

TaskList tasksForSchedules(TaskList tasks)
{
    std::ranges::stable_sort(tasks, {}, [](const SharedTask &entry) { return entry->date; });
    return tasks;
}

ScheduleText::ScheduleText(RecipientKind recipientKind, Instant first, Instant last,
                           const Preferences &userPreferences)
    : kind(recipientKind)
    , start(first)
    , end(last)
    , preferences(userPreferences)
{
}

const QString &ScheduleText::nameIn(const task &entry) const
{
    return kind == RecipientKind::Client ? entry.client : entry.teamMember;
}

bool ScheduleText::matches(const Recipient &recipient, const task &entry) const
{
    return recipient.name && nameIn(entry).toLower() == recipient.name->toLower() &&
           util().isSameDayOrEarlier(start, entry.date) && util().isSameDayOrEarlier(entry.date, end);
}

QString ScheduleText::header(const task &first) const
{
    return preferences.text(messagingKey::messageTitle).value_or(QString()) + u'\n' +
           (kind == RecipientKind::Client ? u"Client Schedule: "_s : u"Team Member Schedule: "_s) +
           nameIn(first) + u'\n' + dateText(start) + u'-' + dateText(end) + u"\n\r"_s;
}

QString ScheduleText::taskMessage(const task &entry) const
{
    return dateText(entry.date) + u' ' + util().formatTime(entry.startHour, entry.startMin) + u'-' +
           dateText(entry.due) + u' ' + util().formatTime(entry.endHour, entry.endMin) + u' ' + entry.name +
           u'-' + (kind == RecipientKind::Client ? entry.teamMember : entry.client);
}

QString ScheduleText::footer() const
{
    return preferences.text(messagingKey::messageFooter).value_or(QString());
}

QString ScheduleText::dateText(Instant instant) const
{
    return locale.toString(calendar.dayOf(instant), QLocale::ShortFormat);
}
