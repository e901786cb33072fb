#include "widgets/EmptyNote.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

EmptyNote::EmptyNote(QAbstractItemView &shown)
    : QFrame(shown.viewport())
    , view(shown)
    , sentence(new QLabel(this))
    , step(new QPushButton(this))
{
    setObjectName(u"emptyNote"_s);
    sentence->setTextFormat(Qt::PlainText);
    sentence->setWordWrap(true);
    sentence->setAlignment(Qt::AlignCenter);
    step->setAutoDefault(false);
    step->hide();
    auto *layout = new QVBoxLayout(this);
    layout->addStretch();
    layout->addWidget(sentence);
    layout->addWidget(step, 0, Qt::AlignHCenter);
    layout->addStretch();
    connect(step, &QPushButton::clicked, this, &EmptyNote::stepTaken);
    const QAbstractItemModel *model = view.model();
    connect(model, &QAbstractItemModel::modelReset, this, &EmptyNote::follow);
    connect(model, &QAbstractItemModel::rowsInserted, this, &EmptyNote::follow);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &EmptyNote::follow);
    view.viewport()->installEventFilter(this);
    follow();
}

void EmptyNote::tell(const QString &text, const QString &stepText)
{
    sentence->setText(text);
    step->setText(stepText);
    step->setVisible(!stepText.isEmpty());
}

bool EmptyNote::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        setGeometry(view.viewport()->rect());
    return false;
}

void EmptyNote::follow()
{
    setGeometry(view.viewport()->rect());
    setVisible(view.model()->rowCount() == 0);
}
