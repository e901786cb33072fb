#pragma once

#include <QDBusConnection>

namespace sessionBus {

/// Has the program, all that it starts included, do without the session bus when somebody accepts connections
/// there but does not answer within about a second: Qt would wait for ever. Says so in a line on standard
/// error. To be called before anything uses the bus, which the application object may already do.
void leaveIfSilent();

/// The session bus, on which no call that is made without a limit of its own waits longer than some seconds.
QDBusConnection open();

} // namespace sessionBus
