#include "messaging/SentSchedule.h"

#include "gateway/TextMessage.h"

#include <QLocale>

#include <algorithm>

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
    qint64 run = 0;                            ///< the last one
    QHash<QString, const SentMessage *> tasks; ///< by their keys

    void add(const SentMessage &message)
    {
        if (run != message.run) // whose schedule takes the place of what was sent for these days before
            tasks.removeIf([&message](const auto &task) {
                return (*task)->taskDay >= message.firstDay && (*task)->taskDay <= message.lastDay;
            });
        run = message.run;
        lastSent = std::max(lastSent, message.moment);
        if (!message.taskKey.isEmpty())
            tasks.insert(message.taskKey, &message);
    }
};

/// Whether the text, which may be cut off, ends with these words.
bool says(const QString &text, const QString &words)
{
    constexpr qsizetype enough = 40;
    const qsizetype start = text.indexOf(words.left(enough));
    return start >= 0 && words.startsWith(QStringView(text).sliced(start));
}

} // namespace

QString SentSchedules::identity(const QString &name, const QString &phoneNo) const
{
    const QString matched = matchedName(name);
    return sharedNames.contains(matched) ? matched + u'\n' + phoneNo : matched;
}

std::optional<SentSchedule> SentSchedules::of(const Recipient &recipient) const
{
    const auto found = schedules.constFind(
        identity(recipient.name.value_or(QString()), recipient.phoneNo.value_or(QString())));
    return found == schedules.cend() ? std::nullopt : std::optional(*found);
}

SentSchedules::SentSchedules(const RunSnapshot &run, const std::vector<SentMessage> &sent)
{
    QSet<QString> names;
    for (const Recipient &recipient : run.recipients)
        if (const QString name = matchedName(recipient.name.value_or(QString())); names.contains(name))
            sharedNames.insert(name);
        else
            names.insert(name);
    QHash<QString, Told> told;                // by the person's identity
    QHash<QString, QSet<QString>> identities; // by the name
    for (const SentMessage &message : sent)
        if (message.isTeamMember == (run.kind == RecipientKind::TeamMember)) {
            const QString person = identity(message.person, message.phoneNo);
            told[person].add(message);
            identities[matchedName(message.person)].insert(person);
        }
    for (auto person = told.cbegin(); person != told.cend(); ++person)
        schedules.insert(person.key(), {.lastSent = person->lastSent});
    for (const ScheduledTask &candidate : run.tasks) {
        const auto people = identities.constFind(candidate.name);
        if (people == identities.cend() ||
            !run.text.matches(candidate.name, candidate, ScheduleText::DayLines::Omitted))
            continue;
        const task &entry = *candidate.entry;
        const QString text = cutToLength(run.text.taskMessage(entry));
        for (const QString &person : *people) {
            const SentMessage *before = told[person].tasks.take(entry.key);
            if (!before)
                ++schedules[person].added;
            else if (before->text != text)
                ++(says(before->text, run.text.wordsOf(entry)) ? schedules[person].moved
                                                               : schedules[person].reworded);
        }
    }
    for (auto person = told.cbegin(); person != told.cend(); ++person)
        schedules[person.key()].dropped =
            std::ranges::count_if(person->tasks, [&run](const SentMessage *message) {
                return message->taskDay >= run.text.firstDay() && message->taskDay <= run.text.lastDay();
            });
}
