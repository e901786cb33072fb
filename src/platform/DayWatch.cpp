#include "platform/DayWatch.h"

#include "platform/Calendar.h"

#include <QFileSystemWatcher>
#include <QSocketNotifier>

#include <sys/timerfd.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

DayWatch::DayWatch(QObject *parent)
    : QObject(parent)
    , timer(::timerfd_create(CLOCK_REALTIME, TFD_CLOEXEC | TFD_NONBLOCK))
{
    const auto tell = [this] {
        waitForMidnight();
        emit dayMayHaveChanged();
    };
    if (timer >= 0) {
        auto *notifier = new QSocketNotifier(timer, QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this, [this, tell] {
            quint64 expirations = 0;
            // Fails when the clock was set, which is news as well.
            [[maybe_unused]] const ssize_t size = ::read(timer, &expirations, sizeof expirations);
            tell();
        });
        waitForMidnight();
    }
    // The zone's file is a link that is replaced.
    auto *zone = new QFileSystemWatcher({u"/etc"_s}, this);
    connect(zone, &QFileSystemWatcher::directoryChanged, this,
            [tell, known = QTimeZone::systemTimeZoneId()]() mutable {
                if (const QByteArray present = QTimeZone::systemTimeZoneId();
                    std::exchange(known, present) != present)
                    tell();
            });
}

DayWatch::~DayWatch()
{
    if (timer >= 0)
        ::close(timer);
}

void DayWatch::waitForMidnight()
{
    const Calendar calendar;
    const Instant midnight = calendar.startOfDay(calendar.dayOf(Calendar::now()).addDays(1));
    itimerspec next = {};
    next.it_value.tv_sec = std::chrono::ceil<std::chrono::seconds>(midnight.time_since_epoch()).count();
    ::timerfd_settime(timer, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &next, nullptr);
}
