#pragma once

#include "versions/VersionFile.h"

#include <vector>

/// A moment by the machine's two clocks.
struct ClockReading
{
    static ClockReading now();

    Instant time;                         ///< may be set by anybody, to any time
    std::chrono::milliseconds sinceStart; ///< of the machine; nobody sets it
};

/// The clock by which versions age, in milliseconds. It only goes forward.
///
/// The system's clock may be set forward or back by years, which must not make versions look old. So within
/// one run this one goes as the machine's time since its start does, and from one run to the next as the
/// system's clock does, as long as that is plausible: a step back, or one of more than a month, counts as no
/// time at all. Then versions stay longer than they would have to.
class VersionClock
{
public:
    /// \param newest  of the versions so far; null for none
    qint64 at(const ClockReading &now, const Version *newest);

private:
    std::optional<qint64> atMachineStart;
};

/// Which of the versions stay: all of the last hour, of a day the last one of each hour, of a year the last
/// one of each day, of all together those with which the newest take at most 64 MB. What counts is their age
/// when the newest was kept, since none has to go as long as none comes.
/// \param versions  the oldest first
std::vector<bool> areStaying(const QList<Version> &versions);
