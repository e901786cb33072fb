#include "widgets/Banner.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <utility>

using namespace Qt::StringLiterals;

Banner::Banner(QWidget *parent)
    : QFrame(parent)
    , message(new QLabel(this))
    , buttons(new QHBoxLayout)
{
    setObjectName(u"banner"_s);
    setFrameShape(StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    message->setTextFormat(Qt::PlainText);
    message->setWordWrap(true);
    message->setForegroundRole(QPalette::ToolTipText);
    message->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(message, 1);
    layout->addLayout(buttons);
    hide();
}

void Banner::tell(const QString &text, const QList<Choice> &choices)
{
    message->setText(text);
    show();
    // The same choices keep their buttons: one of them may have the focus, or be pressed just now.
    QStringList texts;
    for (const Choice &choice : choices)
        texts.append(QString(choice.text).remove(u'&')); // the window's own keys come first
    if (std::exchange(shownTexts, texts) == texts)
        return;
    while (QLayoutItem *item = buttons->takeAt(0)) {
        item->widget()->deleteLater(); // one of them may be what brought this about
        item->widget()->hide();
        delete item;
    }
    for (const Choice &choice : choices) {
        auto *button = new QPushButton(QString(choice.text).remove(u'&'), this);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, choice.action);
        buttons->addWidget(button);
        button->show();
    }
}

void Banner::withdraw()
{
    hide();
}
