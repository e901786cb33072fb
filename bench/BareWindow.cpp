#include <QApplication>
#include <QTableView>
#include <QTimer>

#include <unistd.h>

/// The least a Qt program with a table does: it shows the table, empty, and says "painted" when that is on
/// screen.
class BareTable : public QTableView
{
protected:
    void paintEvent(QPaintEvent *event) override
    {
        QTableView::paintEvent(event);
        QTimer::singleShot(0, this, [] {
            constexpr char line[] = "painted\n";
            if (::write(STDOUT_FILENO, line, sizeof line - 1) < 0)
                QCoreApplication::exit(EXIT_FAILURE);
        });
    }
};

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    BareTable table;
    table.resize(1280, 720);
    table.show();
    return QApplication::exec();
}
