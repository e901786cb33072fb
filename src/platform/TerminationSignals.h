#pragma once

/// Lets the system end the program by a signal, as when the user logs out, in the way its Quit command does:
/// the screens close and keep what is in them. A second signal ends it at once.
namespace terminationSignals {

/// From now on; the application object has to be there already.
void quitOnThem();
/// Whether one of them has come.
bool isReceived();

} // namespace terminationSignals
