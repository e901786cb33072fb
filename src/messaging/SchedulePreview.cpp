#include "messaging/SchedulePreview.h"

#include "gateway/GatewayRequest.h"
#include "gateway/TextMessage.h"
#include "platform/Diagnostics.h"

#include <QHash>

using namespace Qt::StringLiterals;

PreviewedMessage::PreviewedMessage(const QString &composed)
    : text(cutToLength(composed))
    , cutOff(composed.sliced(text.size()))
    , parts(text)
{
}

SchedulePreview::SchedulePreview(const RunSnapshot &snapshot, const Preferences &preferences)
{
    const diagnostics::Silence silence; // the lines belong to what is sent
    const SendSettings settings(preferences);
    const QString footer = snapshot.text.footer();
    QHash<QString, std::vector<const ScheduledTask *>> tasksOf; // by the recipient's name
    for (const ScheduledTask &entry : snapshot.tasks)
        tasksOf[entry.name].push_back(&entry);
    for (const Recipient &recipient : snapshot.recipients) {
        PreviewedPerson person{.name = recipient.name.value_or(QString()),
                               .number =
                                   settings.testPhoneNo.value_or(recipient.phoneNo.value_or(QString()))};
        const auto name = recipient.name ? std::optional(matchedName(*recipient.name)) : std::nullopt;
        for (const ScheduledTask *candidate : tasksOf.value(name.value_or(QString()))) {
            if (!snapshot.text.matches(name, *candidate, ScheduleText::DayLines::Omitted))
                continue;
            if (person.messages.empty())
                person.messages.emplace_back(snapshot.text.header(*candidate->entry));
            person.messages.emplace_back(snapshot.text.taskMessage(*candidate->entry));
        }
        if (!person.messages.empty() && !footer.isEmpty())
            person.messages.emplace_back(footer);
        previewed.push_back(std::move(person));
    }
}

/// The number with the noun in its singular or plural.
static QString counted(qint64 count, const QString &noun, const QString &plural)
{
    return QString::number(count) + u' ' + (count == 1 ? noun : plural);
}

QString SchedulePreview::summary() const
{
    qint64 messages = 0;
    qint64 parts = 0;
    qint64 reached = 0;
    qint64 withoutNumber = 0;
    for (const PreviewedPerson &person : previewed) {
        messages += qint64(person.messages.size());
        for (const PreviewedMessage &message : person.messages)
            parts += message.parts.parts;
        reached += person.messages.empty() ? 0 : 1;
        withoutNumber += person.number.trimmed().isEmpty() ? 1 : 0;
    }
    if (previewed.empty())
        return {};
    QStringList sentences{u"%1, %2, to %3"_s.arg(counted(messages, u"message"_s, u"messages"_s),
                                                 counted(parts, u"part"_s, u"parts"_s),
                                                 counted(reached, u"person"_s, u"people"_s))};
    if (const qint64 idle = qint64(previewed.size()) - reached; idle > 0)
        sentences.append(counted(idle, u"person has"_s, u"people have"_s) + u" nothing in these days"_s);
    if (withoutNumber > 0)
        sentences.append(counted(withoutNumber, u"has"_s, u"have"_s) + u" no number"_s);
    return sentences.join(u"; "_s);
}
