#include "support/Dialogs.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QTest>

AlertAnswer::AlertAnswer(const QString &button, const std::function<void(QMessageBox &)> &look)
{
    timer.callOnTimeout([this, button, look] {
        auto *alert = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!alert)
            return;
        timer.stop();
        shown = true;
        if (look)
            look(*alert);
        text = alert->text();
        informativeText = alert->informativeText();
        for (const QLabel *label : alert->findChildren<QLabel *>())
            isPlain = isPlain && (label->textFormat() == Qt::PlainText || label->text().isEmpty());
        isWarning = alert->icon() == QMessageBox::Warning;
        for (QAbstractButton *choice : alert->buttons()) {
            buttons.append(choice->text().remove(u'&'));
            if (buttons.last() == button)
                QTest::mouseClick(choice, Qt::LeftButton);
        }
    });
    timer.start(0);
}
