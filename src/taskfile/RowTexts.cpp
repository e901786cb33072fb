#include "taskfile/RowTexts.h"

#include <algorithm>

void RowTexts::useOnlyFor(const QByteArray &circumstances)
{
    next = missed = 0;
    if (std::exchange(madeFor, circumstances) != circumstances)
        keep({}, {}, {});
}

QByteArrayView RowTexts::find(const SharedTask &entry)
{
    constexpr qsizetype near = 3;      // as far as one command moves a task
    constexpr qsizetype mostMade = 50; // rows that cost less to be made anew than all places to be noted
    for (qsizetype index = next; index < std::min(next + near, tasks.size()); ++index)
        if (&*tasks.at(index) == &*entry) {
            next = index + 1;
            return row(index);
        }
    if (++missed <= mostMade)
        return {};
    if (places.isEmpty())
        for (qsizetype index = 0; index < tasks.size(); ++index)
            places.insert(&*tasks.at(index), index);
    const auto place = places.constFind(&*entry);
    if (place == places.cend())
        return {};
    next = *place + 1;
    return row(*place);
}

QByteArrayView RowTexts::row(qsizetype index) const
{
    const qsizetype start = index == 0 ? 0 : ends[index - 1];
    return QByteArrayView(text).sliced(start, ends[index] - start);
}

void RowTexts::keep(const TaskList &written, const QByteArray &writtenText, QList<qsizetype> rowEnds)
{
    tasks = written;
    text = writtenText;
    ends = std::move(rowEnds);
    places.clear();
}
