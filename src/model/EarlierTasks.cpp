#include "model/EarlierTasks.h"

SharedTask EarlierTasks::sameAs(task read)
{
    const qsizetype place = placeOf(read.key);
    if (place < 0)
        return read;
    next = place + 1;
    if (!haveEqualFields(*tasks.at(place), read))
        return read;
    ++found;
    return tasks.at(place);
}

/// Mostly behind the one before; −1 for nowhere.
qsizetype EarlierTasks::placeOf(const QString &key)
{
    if (next < tasks.size() && tasks.at(next)->key == key)
        return next;
    if (places.isEmpty())
        for (qsizetype place = 0; place < tasks.size(); ++place)
            places.insert(tasks.at(place)->key, place);
    return places.value(key, -1);
}
