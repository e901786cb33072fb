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
        for (QAbstractButton *choice : alert->buttons())
            if (choice->text().remove(u'&') == button)
                QTest::mouseClick(choice, Qt::LeftButton);
    });
    timer.start(0);
}

QString toldIn(const QWidget &window)
{
    QString texts;
    for (const QFrame *banner : window.findChildren<QFrame *>(QStringLiteral("banner")))
        if (banner->isVisible())
            texts += banner->findChild<QLabel *>()->text();
    return texts;
}

void choose(const QWidget &window, const QString &choice)
{
    for (QAbstractButton *button : window.findChildren<QAbstractButton *>())
        if (button->isVisible() && button->text().remove(u'&') == choice)
            button->click();
}
