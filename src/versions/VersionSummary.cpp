#include "versions/VersionSummary.h"

using namespace Qt::StringLiterals;

namespace {

using enum TaskChange::Kind;

constexpr qsizetype mostNamed = 3; // of a kind
constexpr qsizetype longestName = 60;

QString shortened(QString name)
{
    if (name.size() > longestName)
        name = name.first(longestName - 1) + u'…';
    return name.isEmpty() ? u"(no name)"_s : name;
}

} // namespace

VersionSummary VersionSummary::of(const ListRows &before, const ListRows &after)
{
    const VersionDiff diff = VersionDiff::between(before, after);
    VersionSummary summary{.tasks = after.size(),
                           .added = diff.count(Added),
                           .changed = diff.count(Changed),
                           .removed = diff.count(Removed),
                           .moved = diff.moved};
    for (const auto kind : {Added, Changed, Removed}) {
        qsizetype left = mostNamed;
        for (const TaskChange &change : diff.changes)
            if (change.kind == kind && left-- > 0)
                summary.names.append(
                    QChar::fromLatin1(char(kind)) +
                    shortened(kind == Removed ? before.nameOf(change.before) : after.nameOf(change.after)));
        if (left < 0)
            summary.names.append(QChar::fromLatin1(char(kind)) + u"…"_s);
    }
    return summary;
}

QString VersionSummary::text() const
{
    QStringList parts;
    const auto append = [&](qsizetype count, TaskChange::Kind kind, const QString &what) {
        QStringList named;
        for (const QString &name : names)
            if (name.startsWith(QChar::fromLatin1(char(kind))))
                named.append(name.sliced(1));
        if (count > 0)
            parts.append(u"%1 %2: %3"_s.arg(QString::number(count), what, named.join(u", "_s)));
    };
    append(added, Added, u"added"_s);
    append(changed, Changed, u"changed"_s);
    append(removed, Removed, u"removed"_s);
    if (moved > 0)
        parts.append(u"%1 moved"_s.arg(moved));
    if (!parts.isEmpty())
        return parts.join(u"; "_s);
    return tasks == 1 ? u"1 task"_s : u"%1 tasks"_s.arg(tasks);
}
