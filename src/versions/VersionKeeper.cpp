#include "versions/VersionKeeper.h"

#include "platform/Diagnostics.h"

#include <QDir>
#include <QFile>

#include <utility>

using namespace Qt::StringLiterals;

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

VersionKeeper::Outcome VersionKeeper::keep(const QByteArray &text, const ClockReading &now)
{
    if (QFile::exists(versionFile::pathOf(folder, lastNumber + 1)))
        lookAgain(); // another program over the same folder has been first
    const Version *newest = versions.isEmpty() ? nullptr : &versions.constLast();
    if (!newestText && newest)
        newestText = textOf(*newest);
    if (newestText == text)
        return Outcome::Same;
    Version version{.number = lastNumber + 1, .time = now.time, .clock = clock.at(now, newest)};
    if (newestText) {
        version.before = newest->number;
        version.summary = VersionSummary::of(ListRows(*newestText), ListRows(text));
    } else {
        version.summary.tasks = ListRows(text).size();
    }
    if (!versionFile::write(folder, version, text))
        return Outcome::Failed;
    lastNumber = version.number;
    versions.append(version);
    newestText = text;
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
