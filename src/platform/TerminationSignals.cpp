#include "platform/TerminationSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

constexpr std::array terminating{SIGTERM, SIGINT, SIGHUP};
int received = -1; // counts the signals; the only thing that a handler touches
bool isQuitting = false;

void count(int)
{
    const int error = errno; // belongs to what the signal has interrupted
    const quint64 one = 1;
    [[maybe_unused]] const ssize_t size = ::write(received, &one, sizeof one);
    errno = error;
}

} // namespace

bool terminationSignals::isReceived()
{
    return isQuitting;
}

void terminationSignals::quitOnThem()
{
    received = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (received < 0)
        return;
    auto *notifier = new QSocketNotifier(received, QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [notifier] {
        notifier->setEnabled(false);
        isQuitting = true;
        for (const int signal : terminating)
            std::signal(signal, SIG_DFL);
        QCoreApplication::quit();
    });
    for (const int signal : terminating) {
        struct sigaction present = {};
        ::sigaction(signal, nullptr, &present);
        if (present.sa_handler == SIG_IGN) // whoever started the program wants it so
            continue;
        struct sigaction wanted = {};
        wanted.sa_handler = count;
        wanted.sa_flags = SA_RESTART;
        ::sigaction(signal, &wanted, nullptr);
    }
}
