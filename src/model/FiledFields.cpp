#include "model/FiledFields.h"

#include "model/task.h"

#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

/// What is lost of a colour by inverting it does not count.
static bool areAlike(const Color &a, const Color &b)
{
    constexpr double tolerance = 1e-9;
    return std::abs(a.red - b.red) < tolerance && std::abs(a.green - b.green) < tolerance &&
           std::abs(a.blue - b.blue) < tolerance && std::abs(a.alpha - b.alpha) < tolerance;
}

QStringList differingFields(const task &a, const task &b)
{
    const Calendar calendar;
    QStringList names;
    for (const auto &[name, differs] :
         {std::pair(u"Name"_s, a.name != b.name),
          {u"Start date"_s, calendar.dayOf(a.date) != calendar.dayOf(b.date)},
          {u"Due date"_s, calendar.dayOf(a.due) != calendar.dayOf(b.due)},
          {u"Start time"_s, a.startHour != b.startHour || a.startMin != b.startMin},
          {u"End time"_s, a.endHour != b.endHour || a.endMin != b.endMin},
          {u"Status"_s, a.status != b.status || a.statusName != b.statusName},
          {u"Priority"_s, a.priority != b.priority || a.priorityName != b.priorityName},
          {u"Client"_s, a.client != b.client},
          {u"Team member"_s, a.teamMember != b.teamMember},
          {u"Color"_s, !areAlike(a.color, b.color)},
          {u"Description"_s, a.desc != b.desc}})
        if (differs)
            names.append(name);
    return names;
}

bool areFiledAlike(const task &a, const task &b)
{
    return a.key == b.key && a.hidden == b.hidden && differingFields(a, b).isEmpty();
}
