#include "model/TaskShareText.h"

#include <QLocale>
#include <QStringList>

using namespace Qt::StringLiterals;

static const QString storePage = u"https://quorvane.example/download"_s;

static QString timeText(qint64 hour, qint64 minute)
{
    return QString::asprintf("%02lld:%02lld", qlonglong{hour}, qlonglong{minute});
}

QString shareFooter()
{
    return u"Sent with Quorvane. Download from the App Store for Mac:\n\n"_s + storePage + u'\n';
}

QString taskShareText(const task &shared, const QString &messageKey)
{
    const Calendar calendar;
    const auto dateText = [&](Instant instant) {
        return QLocale().toString(calendar.dayOf(instant), QLocale::ShortFormat);
    };
    return QStringList{
        u"ToDo"_s,
        QString(),
        u"Task: "_s + shared.name,
        u"Start Date: "_s + dateText(shared.date),
        u"Start Time: "_s + timeText(shared.startHour, shared.startMin),
        u"End Time: "_s + timeText(shared.endHour, shared.endMin),
        u"Due Date: "_s + dateText(shared.due),
        u"Description: "_s + shared.desc,
        QString(),
        u"Client:"_s + shared.client,
        u"Team Member:"_s + shared.teamMember,
        QString(),
        u"Task Key: "_s + shared.key,
        u"Message Key: "_s + messageKey,
        QString(),
        shareFooter(),
    }
        .join(u'\n');
}
