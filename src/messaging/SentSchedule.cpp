#include "messaging/SentSchedule.h"

#include "gateway/TextMessage.h"

#include <QLocale>

using namespace Qt::StringLiterals;

static QDateTime momentOf(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds);
}

QString SentSchedule::summary() const
{
    const QString day = QLocale().toString(momentOf(lastSent).date(), QLocale::ShortFormat);
    return isChanged() ? day + u", changed"_s : day;
}

QString SentSchedule::sentence() const
{
    QStringList changes;
    const auto add = [&changes](qint64 count, const QString &what) {
        if (count > 0)
            changes.append(u"%1 %2"_s.arg(count).arg(what));
    };
    add(moved, moved == 1 ? u"task moved"_s : u"tasks moved"_s);
    add(reworded, u"reworded"_s);
    add(added, u"new"_s);
    add(dropped, u"dropped"_s);
    return u"Last sent %1; %2."_s.arg(QLocale().toString(momentOf(lastSent), QLocale::ShortFormat),
                                      changes.isEmpty() ? u"nothing has changed since"_s
                                                        : u"changed: "_s + changes.join(u", "_s));
}

namespace {

/// What one person was told.
struct Told
{
    qint64 lastSent = 0;
    QHash<QString, QString> texts; ///< by the task's key
};

QHash<QString, Told> toldTo(RecipientKind kind, const std::vector<SentMessage> &sent, QDate firstDay,
                            QDate lastDay)
{
    QHash<QString, Told> told;
    for (const SentMessage &message : sent) {
        if (message.isTeamMember != (kind == RecipientKind::TeamMember))
            continue;
        Told &person = told[matchedName(message.person)];
        person.lastSent = std::max(person.lastSent, message.moment);
        if (!message.taskKey.isEmpty() && message.taskDay >= firstDay && message.taskDay <= lastDay)
            person.texts.insert(message.taskKey, message.text);
    }
    return told;
}

void compare(SentSchedule &schedule, QHash<QString, QString> &texts, const task &entry, const QString &text,
             const QString &words)
{
    const auto before = texts.constFind(entry.key);
    if (before == texts.cend())
        ++schedule.added;
    else if (*before != text)
        ++(before->endsWith(words) ? schedule.moved : schedule.reworded);
    if (before != texts.cend())
        texts.erase(before);
}

} // namespace

QHash<QString, SentSchedule> sentSchedules(const RunSnapshot &run, const std::vector<SentMessage> &sent)
{
    QHash<QString, SentSchedule> schedules;
    QHash<QString, Told> told = toldTo(run.kind, sent, run.text.firstDay(), run.text.lastDay());
    for (auto person = told.cbegin(); person != told.cend(); ++person)
        schedules.insert(person.key(), {.lastSent = person->lastSent});
    for (const ScheduledTask &candidate : run.tasks) {
        const auto person = told.find(candidate.name);
        if (person == told.end() ||
            !run.text.matches(candidate.name, candidate, ScheduleText::DayLines::Omitted))
            continue;
        const task &entry = *candidate.entry;
        compare(schedules[candidate.name], person->texts, entry, cutToLength(run.text.taskMessage(entry)),
                run.text.wordsOf(entry));
    }
    for (auto person = told.cbegin(); person != told.cend(); ++person)
        schedules[person.key()].dropped = person->texts.size();
    return schedules;
}
