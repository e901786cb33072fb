#include "versions/VersionKeeper.h"

#include "platform/Diagnostics.h"

#include <QDir>
#include <QFile>

#include <ctime>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Milliseconds = std::chrono::milliseconds;

constexpr qint64 hour = Milliseconds(1h).count();
constexpr qint64 day = 24 * hour;
constexpr qint64 month = 31 * day;
constexpr qint64 year = 365 * day;

} // namespace

ClockReading ClockReading::now()
{
    timespec sinceStart = {};
    ::clock_gettime(CLOCK_BOOTTIME, &sinceStart); // goes on while the machine sleeps
    return {Calendar::now(),
            std::chrono::duration_cast<Milliseconds>(std::chrono::seconds(sinceStart.tv_sec) +
                                                     std::chrono::nanoseconds(sinceStart.tv_nsec))};
}

std::vector<bool> areStaying(const QList<Version> &versions)
{
    std::vector<bool> staying(size_t(versions.size()));
    qint64 room = 0;
    qint64 hourOfNext = -1; // of the next newer one that stays
    qint64 dayOfNext = -1;
    for (qsizetype index = versions.size(); index-- > 0;) {
        const Version &version = versions[index];
        const qint64 age = versions.constLast().clock - version.clock;
        const bool isWanted = age < hour || (age < day && version.clock / hour != hourOfNext) ||
                              (age < year && version.clock / day != dayOfNext);
        if (!isWanted)
            continue;
        room += version.room;
        if (room > VersionKeeper::mostRoom && index + 1 < versions.size())
            break;
        staying[size_t(index)] = true;
        hourOfNext = version.clock / hour;
        dayOfNext = version.clock / day;
    }
    return staying;
}

VersionKeeper::VersionKeeper(const QString &versionsFolder)
    : folder(versionsFolder)
{
    QDir files(folder);
    for (const QString &name : files.entryList({u"*.version.new"_s}, QDir::Files))
        files.remove(name); // never became whole
    lookAgain();
}

void VersionKeeper::lookAgain()
{
    const versionFile::Listing listing = versionFile::list(folder);
    const bool isNewestThere = !versions.isEmpty() && !listing.versions.isEmpty() &&
                               versions.constLast().number == listing.versions.constLast().number;
    if (!isNewestThere)
        newestText.reset();
    versions = listing.versions;
    checked = 0;
    for (const Version &version : std::as_const(versions))
        lastNumber = std::max(lastNumber, version.number);
    for (const QString &name : listing.unreadable)
        lastNumber = std::max(lastNumber, versionFile::numberOf(name)); // whose place is not to be taken
}

std::optional<QByteArray> VersionKeeper::textOf(const Version &version) const
{
    return versionFile::readText(versionFile::pathOf(folder, version.number));
}

qint64 VersionKeeper::clockAt(const ClockReading &now) const
{
    if (versions.isEmpty())
        return now.time.time_since_epoch().count();
    const Version &newest = versions.constLast();
    if (lastKept)
        return newest.clock + (now.sinceStart - lastKept->sinceStart).count();
    const qint64 step = (now.time - newest.time).count();
    return newest.clock + (step > 0 && step <= month ? step : 0);
}

VersionKeeper::Outcome VersionKeeper::keep(const QByteArray &text, const ClockReading &now)
{
    const bool hasBefore = !versions.isEmpty();
    if (!newestText && hasBefore)
        newestText = textOf(versions.constLast());
    if (newestText == text)
        return Outcome::Same;
    Version version{.number = lastNumber + 1, .time = now.time, .clock = clockAt(now)};
    const ListRows rows(text);
    if (newestText) {
        version.before = versions.constLast().number;
        version.summary = VersionSummary::of(ListRows(*newestText), rows);
    } else {
        version.summary.tasks = rows.size();
    }
    if (!versionFile::write(folder, version, text))
        return Outcome::Failed;
    lastNumber = version.number;
    versions.append(version);
    newestText = text;
    lastKept = now;
    thinOut();
    return Outcome::Kept;
}

void VersionKeeper::thinOut()
{
    const std::vector<bool> staying = areStaying(versions);
    QList<Version> left;
    for (qsizetype index = 0; index < versions.size(); ++index) {
        const QString path = versionFile::pathOf(folder, versions[index].number);
        if (staying[size_t(index)] || (!QFile::remove(path) && QFile::exists(path)))
            left.append(versions[index]);
    }
    if (left.size() != versions.size())
        checked = 0;
    versions = left;
}

bool VersionKeeper::updateSummary()
{
    for (checked = std::max<qsizetype>(checked, 1); checked < versions.size(); ++checked) {
        Version &version = versions[checked];
        const Version &former = versions[checked - 1];
        if (version.before == former.number)
            continue;
        const std::optional<QByteArray> before = textOf(former);
        const std::optional<QByteArray> after = textOf(version);
        version.before = former.number; // also where it cannot be told: that is tried once
        if (!before || !after)
            continue;
        version.summary = VersionSummary::of(ListRows(*before), ListRows(*after));
        if (!versionFile::rewriteHead(folder, version))
            diagnostics::line("Version not updated:", version.number);
        return true;
    }
    return false;
}
