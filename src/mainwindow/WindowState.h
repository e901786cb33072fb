#pragma once

#include <QSettings>

class QHeaderView;
class QMainWindow;

/// Keeps the main window's size and the table's column widths and sort indicator from one start to the next,
/// in a file of its own beside the program's other state.
class WindowState
{
public:
    explicit WindowState(const QString &stateFolder);

    /// What has not been kept, or cannot be used, stays as it is.
    void restore(QMainWindow &window, QHeaderView &header) const;
    void save(const QMainWindow &window, const QHeaderView &header);

private:
    QSettings settings;
};
