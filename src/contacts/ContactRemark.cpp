#include "contacts/ContactRemark.h"

#include "contacts/ContactTable.h"

#include <QItemSelectionModel>
#include <QLabel>
#include <QPushButton>
#include <QTableView>

using namespace Qt::StringLiterals;

ContactRemark::ContactRemark(QTableView &ofContacts, const ContactTable &table,
                             QBoxLayout::Direction direction, QWidget *parent)
    : QWidget(parent)
    , view(ofContacts)
    , contacts(table)
    , sentences(new QLabel(this))
    , correct(new QPushButton(this))
    , tryAgain(new QPushButton(u"Try Again"_s, this))
{
    sentences->setObjectName(u"contactRemark"_s);
    sentences->setTextFormat(Qt::PlainText);
    sentences->setWordWrap(true);
    sentences->setTextInteractionFlags(Qt::TextSelectableByMouse);
    sentences->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    sentences->setMinimumHeight(2 * fontMetrics().lineSpacing());
    correct->setObjectName(u"correctButton"_s);
    correct->setAutoDefault(false);
    QSizePolicy policy = correct->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    correct->setSizePolicy(policy);
    auto *layout = new QBoxLayout(direction, this);
    layout->setContentsMargins({});
    layout->addWidget(sentences, direction == QBoxLayout::LeftToRight ? 1 : 0);
    layout->addWidget(correct, 0, Qt::AlignLeft | Qt::AlignTop);
    tryAgain->setObjectName(u"tryAgainButton"_s);
    tryAgain->setToolTip(u"Include the person again when all are selected"_s);
    tryAgain->setAutoDefault(false);
    tryAgain->hide();
    layout->addWidget(tryAgain, 0, Qt::AlignLeft | Qt::AlignTop);
    setTabOrder(&view, correct);
    setTabOrder(correct, tryAgain);
    hide();
    connectActions();
}

void ContactRemark::connectActions()
{
    delay.setSingleShot(true);
    delay.setInterval(0);
    connect(&delay, &QTimer::timeout, this, &ContactRemark::showRemark);
    connect(correct, &QPushButton::clicked, this, [this] {
        if (view.currentIndex().isValid())
            emit correctionWanted(view.currentIndex().row(), offered);
    });
    connect(tryAgain, &QPushButton::clicked, this, [this] {
        if (view.currentIndex().isValid())
            emit anotherTryWanted(view.currentIndex().row());
    });
    const auto update = qOverload<>(&QTimer::start);
    connect(view.selectionModel(), &QItemSelectionModel::currentRowChanged, &delay, update);
    for (const auto change : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(&contacts, change, &delay, update);
    connect(&contacts, &QAbstractItemModel::dataChanged, &delay, update);
    connect(&contacts, &QAbstractItemModel::modelReset, &delay, update);
}

void ContactRemark::showRemark()
{
    const int row = view.currentIndex().row();
    const QString words = row < 0 ? QString() : contacts.remark(row);
    offered = row < 0 ? QString() : contacts.correctedNumber(row);
    sentences->setText(words);
    correct->setText(u"Correct to %1"_s.arg(offered));
    correct->setVisible(!offered.isEmpty());
    tryAgain->setVisible(row >= 0 && contacts.isDeclined(row));
    if (!words.isEmpty())
        show();
}
