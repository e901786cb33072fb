#pragma once

#include "platform/IniFile.h"

#include <optional>

class QDialog;
class QWidget;

/// What windows keep from one time to the next, as plain numbers that are checked when they are read.
namespace windowSize {

using Values = QList<std::pair<QString, QString>>;

/// The file for it.
QString path(const QString &stateFolder);

/// The number under the key; nothing when there is none within these limits.
std::optional<int> number(const IniFile &file, const QString &key, int least, int most);

/// Gives the window the size that is kept under the name, if any.
/// \param name  empty for the main window
void restore(QWidget &window, const IniFile &file, const QString &name = {});
/// What is to be kept of the window.
Values valuesOf(const QWidget &window, const QString &name = {});

/// Gives the dialog the size it had when it was last closed, and keeps the one with which it is closed.
/// \param dialog  its object name is what its size is kept under
void keep(QDialog &dialog, const QString &stateFolder);

} // namespace windowSize
