#include "widgets/Alert.h"

#include <QApplication>
#include <QGridLayout>
#include <QLabel>

Alert::Alert(QWidget *parent, const QString &text, const QString &informativeText)
    : QMessageBox(Warning, QApplication::applicationDisplayName(), text, NoButton, parent)
{
    constexpr int width = 380;
    setTextFormat(Qt::PlainText);
    setInformativeText(informativeText);
    // The text format reaches the first label only.
    if (auto *label = findChild<QLabel *>(QStringLiteral("qt_msgbox_informativelabel")))
        label->setTextFormat(Qt::PlainText);
    auto *grid = static_cast<QGridLayout *>(layout());
    grid->addItem(new QSpacerItem(width, 0), grid->rowCount(), 0, 1, grid->columnCount());
}

void alertMessage(QWidget *parent, const QString &message)
{
    Alert alert(parent, QString(), message);
    alert.addButton(QMessageBox::Ok);
    alert.exec();
}
