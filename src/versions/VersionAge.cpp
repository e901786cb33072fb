#include "versions/VersionAge.h"

#include <ctime>

using namespace std::chrono_literals;

namespace {

using Milliseconds = std::chrono::milliseconds;

constexpr qint64 hour = Milliseconds(1h).count();
constexpr qint64 day = 24 * hour;
constexpr qint64 month = 31 * day;
constexpr qint64 year = 365 * day;
constexpr qint64 mostRoom = 64LL << 20; // bytes

} // namespace

ClockReading ClockReading::now()
{
    timespec sinceStart = {};
    ::clock_gettime(CLOCK_BOOTTIME, &sinceStart); // goes on while the machine sleeps
    return {Calendar::now(),
            std::chrono::duration_cast<Milliseconds>(std::chrono::seconds(sinceStart.tv_sec) +
                                                     std::chrono::nanoseconds(sinceStart.tv_nsec))};
}

qint64 VersionClock::at(const ClockReading &now, const Version *newest)
{
    if (!atMachineStart) {
        const qint64 step = newest ? (now.time - newest->time).count() : 0;
        const qint64 first = !newest                     ? now.time.time_since_epoch().count()
                             : step > 0 && step <= month ? newest->clock + step
                                                         : newest->clock;
        atMachineStart = first - now.sinceStart.count();
    }
    return *atMachineStart + now.sinceStart.count();
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
        if (room > mostRoom && index + 1 < versions.size())
            break;
        staying[size_t(index)] = true;
        hourOfNext = version.clock / hour;
        dayOfNext = version.clock / day;
    }
    return staying;
}
