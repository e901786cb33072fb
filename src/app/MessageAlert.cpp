#include "app/MessageAlert.h"

#include <QApplication>
#include <QMessageBox>

void alertMessage(QWidget *parent, const QString &message)
{
    QMessageBox alert(QMessageBox::Warning, QApplication::applicationDisplayName(), QString(), QMessageBox::Ok,
                      parent);
    alert.setTextFormat(Qt::PlainText);
    alert.setInformativeText(message);
    alert.exec();
}
