#pragma once

#include <QString>

class QDialog;
class QWidget;

/// The web page screen, which is in a module that is loaded when the screen is first made.
namespace webPage {

/// Whether the module is installed; quick, and loads nothing.
bool isInstalled();

/// The screen, or null when the module cannot be loaded.
/// \param problem  is then set to why
QDialog *makeScreen(QWidget *parent, QString &problem);

} // namespace webPage
