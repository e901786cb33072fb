#pragma once

class QByteArray;
class QString;
class QWidget;

/// Asks for a file and writes the content to it. Why that failed is told in an alert.
/// \param suggestedPath  what the dialog offers; a name without a suffix gets its one
/// \param kinds          filters of the file dialog
/// \return true when the content is in the file
bool saveToFile(QWidget &window, const QString &suggestedPath, const QString &kinds,
                const QByteArray &content);
