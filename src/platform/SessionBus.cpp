#include "platform/SessionBus.h"

#include "platform/FileDescriptor.h"

#include <QByteArray>
#include <QDBusConnectionInterface>
#include <QTextStream>

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr char variable[] = "DBUS_SESSION_BUS_ADDRESS";

/// The addresses at which the bus may be, in the order in which they are tried.
QByteArrayList addresses()
{
    if (const QByteArray named = qgetenv(variable); !named.isEmpty())
        return named.split(';');
    return {"unix:path=" + qgetenv("XDG_RUNTIME_DIR") + "/bus"};
}

/// The socket's name of an address as the D-Bus Specification 0.41, "Server Addresses", describes it; empty
/// where it has another transport than a Unix socket.
QByteArray socketNameOf(const QByteArray &address)
{
    constexpr QByteArrayView unixSocket("unix:");
    constexpr QByteArrayView file("path=");
    constexpr QByteArrayView abstract("abstract=");
    if (!address.startsWith(unixSocket))
        return {};
    for (const QByteArray &part : address.sliced(unixSocket.size()).split(',')) {
        if (part.startsWith(file))
            return QByteArray::fromPercentEncoding(part.sliced(file.size()));
        if (part.startsWith(abstract))
            return '\0' + QByteArray::fromPercentEncoding(part.sliced(abstract.size()));
    }
    return {};
}

enum class Answer { None, Some, NobodyThere };

/// Begins to log in, and waits for the first byte of what the bus says to that.
Answer ask(int connection, const QByteArray &socketName)
{
    constexpr int patience = 1000; // milliseconds
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    if (socketName.isEmpty() || size_t(socketName.size()) > sizeof address.sun_path)
        return Answer::NobodyThere;
    std::ranges::copy(socketName, address.sun_path);
    const auto size = socklen_t(offsetof(sockaddr_un, sun_path) + size_t(socketName.size()));
    if (::connect(connection, reinterpret_cast<const sockaddr *>(&address), size) != 0)
        return errno == EAGAIN ? Answer::None : Answer::NobodyThere; // too many wait for it already
    const QByteArray user = QByteArray::number(qulonglong{::getuid()}).toHex();
    pollfd answer{.fd = connection, .events = POLLIN, .revents = 0};
    const bool isSilent = writeFully(connection, '\0' + QByteArray("AUTH EXTERNAL ") + user + "\r\n") &&
                          ::poll(&answer, 1, patience) == 0;
    return isSilent ? Answer::None : Answer::Some;
}

} // namespace

void sessionBus::leaveIfSilent()
{
    Answer answer = Answer::NobodyThere;
    for (const QByteArray &address : addresses()) {
        const int connection = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        answer = ask(connection, socketNameOf(address));
        ::close(connection);
        if (answer != Answer::NobodyThere)
            break;
    }
    if (answer != Answer::None)
        return;
    qputenv(variable, "disabled:");
    QTextStream(stderr) << u"quorvane: The session bus does not answer; the program goes on without it.\n"_s;
}

QDBusConnection sessionBus::open()
{
    constexpr int limit = 3000; // milliseconds
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected())
        bus.interface()->setTimeout(limit);
    return bus;
}
