#pragma once

#include <QObject>
#include <QTimer>

class CloudSync;
class QMainWindow;
struct CloudTransfer;

namespace Ui {
class ViewController;
}

/// Shows in the main window how far a transfer to or from the cloud is, lets the user stop it, and tells at
/// its last answer what has come of it. Another one cannot be started meanwhile.
class CloudStatus : public QObject
{
    Q_OBJECT

public:
    CloudStatus(CloudSync &cloud, Ui::ViewController &ui, QMainWindow &window);

    /// Whether the window may close. While a transfer is under way the first attempt only has it close at the
    /// end; the second one stops the transfer, and so does the system that ends the program.
    bool mayQuit();
    void stop();

private:
    void progress();
    void showProgress();
    void tellEnd(const CloudTransfer &transfer);

    CloudSync &cloud;
    Ui::ViewController &ui;
    QMainWindow &window;
    QTimer pause; ///< while it runs, progress is not shown
    bool isQuitting = false;
};
