#pragma once

#include <QString>

/// The user's folders the program keeps files in. None of them need exist yet.
namespace folders {

/// The documents folder; empty when the desktop names none.
QString documents();
/// `$XDG_CONFIG_HOME/quorvane`.
QString config();
/// `$XDG_DATA_HOME/quorvane`.
QString data();
/// `$XDG_STATE_HOME/quorvane`, by default `~/.local/state/quorvane` (XDG Base Directory, version 0.8).
QString state();

} // namespace folders
