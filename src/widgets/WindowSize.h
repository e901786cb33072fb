#pragma once

#include <QSettings>

#include <optional>

class QDialog;
class QWidget;

/// What windows keep from one time to the next, as plain numbers that are checked when they are read.
namespace windowSize {

/// The file for it.
QString path(const QString &stateFolder);

/// The number under the key; nothing when there is none within these limits.
std::optional<int> number(const QSettings &settings, const QString &key, int least, int most);

/// Gives the window the size that is kept in the settings' group, if any.
void restore(QWidget &window, const QSettings &settings);
void save(const QWidget &window, QSettings &settings);

/// Gives the dialog the size it had when it was last closed, and keeps the one with which it is closed.
/// \param dialog  its object name is what its size is kept under
void keep(QDialog &dialog, const QString &stateFolder);

} // namespace windowSize
