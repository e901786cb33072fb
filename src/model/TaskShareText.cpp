#include "model/TaskShareText.h"

#include <QStringList>

using namespace Qt::StringLiterals;

static const QString storePage = u"https://quorvane.example/download"_s;

QString shareFooter()
{
    return u"Sent with Quorvane. Download from the App Store for Mac:\n\n"_s + storePage + u'\n';
}

QString taskShareText(const task &shared, const QString &messageKey)
{
    const Calendar calendar;
    return QStringList{
        u"ToDo"_s,
        QString(),
        u"Task: "_s + shared.name,
        u"Start Date: "_s + shortDate(calendar.dayOf(shared.date)),
        u"Start Time: "_s + clockTime(shared.startHour, shared.startMin),
        u"End Time: "_s + clockTime(shared.endHour, shared.endMin),
        u"Due Date: "_s + shortDate(calendar.dayOf(shared.due)),
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
