#pragma once

#include "versions/VersionFile.h"

/// A moment by the system's two clocks.
struct ClockReading
{
    static ClockReading now();

    Instant time;                         ///< may be set by anybody, to any time
    std::chrono::milliseconds sinceStart; ///< of the machine; nobody sets it
};

/// Keeps versions of the list in their folder, and thins out the older ones: all of the last hour stay, of a
/// day one an hour, of a year one a day, of all together at most 64 MB, the newest ones. May wait for the
/// disk.
///
/// The system's clock may be set forward or back by years, which must not make versions look old. So their
/// age is told by a clock that only goes forward: within one run it goes as the machine's time since its
/// start does, and from one run to the next as the system's clock does, as long as that is plausible. A step
/// back, or one of more than a month, counts as no time at all: then versions stay longer than they would
/// have to. What counts is the age at the time of the newest version, since no version has to go as long as
/// none comes.
class VersionKeeper
{
public:
    static constexpr qint64 mostRoom = 64 * 1024 * 1024; ///< bytes

    explicit VersionKeeper(const QString &folder);

    enum class Outcome { Kept, Same, Failed };

    /// Keeps the text, unless it is that of the newest version, and removes what is not to be kept any
    /// longer. Failed when it could not be written, with the reason in errno; then nothing has changed.
    Outcome keep(const QByteArray &text, const ClockReading &now);
    /// Has one version tell what it changed against the one that is before it now, if the one that was has
    /// been removed. False when there is no such version.
    bool updateSummary();
    /// Looks into the folder again, from which somebody else has removed versions.
    void lookAgain();

private:
    qint64 clockAt(const ClockReading &now) const;
    void thinOut();
    std::optional<QByteArray> textOf(const Version &version) const;

    QString folder;
    QList<Version> versions;              ///< the oldest first
    qint64 lastNumber = 0;                ///< that was ever given
    std::optional<QByteArray> newestText; ///< once it is known
    std::optional<ClockReading> lastKept; ///< in this run
    qsizetype checked = 0;                ///< versions of which the summaries are up to date
};

/// Whether each of the versions stays.
std::vector<bool> areStaying(const QList<Version> &versions);
