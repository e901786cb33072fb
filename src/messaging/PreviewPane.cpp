#include "messaging/PreviewPane.h"

#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTableView>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

static QLabel *newLabel(QWidget &parent, const QString &name)
{
    auto *label = new QLabel(&parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    parent.layout()->addWidget(label);
    return label;
}

PreviewPane::PreviewPane(QWidget *parent)
    : QWidget(parent)
{
    auto *column = new QVBoxLayout(this);
    warning = newLabel(*this, u"warning"_s);
    warning->setAutoFillBackground(true);
    warning->setMargin(6);
    QPalette colors = warning->palette(); // the same in light and dark
    colors.setColor(QPalette::Window, QColor(0xff, 0xd5, 0x4f));
    colors.setColor(QPalette::WindowText, Qt::black);
    warning->setPalette(colors);
    table = new QTableView(this);
    table->setObjectName(u"previewTable"_s);
    table->setAccessibleName(u"What will be sent"_s);
    table->setModel(&messages);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setTabKeyNavigation(false);
    table->setWordWrap(false);
    table->setCornerButtonEnabled(false);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setHighlightSections(false);
    table->horizontalHeader()->setSectionResizeMode(PreviewTable::Message, QHeaderView::Stretch);
    table->setColumnWidth(PreviewTable::Parts, fontMetrics().horizontalAdvance(u"Parts 00"_s));
    column->addWidget(table, 3);
    whole = new QPlainTextEdit(this);
    whole->setObjectName(u"wholeMessage"_s);
    whole->setAccessibleName(u"The selected message"_s);
    whole->setReadOnly(true);
    whole->setTabChangesFocus(true);
    column->addWidget(whole, 1);
    remark = newLabel(*this, u"messageRemark"_s);
    sum = newLabel(*this, u"previewSum"_s);
    connect(table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) { showMessage(current.row()); });
}

void PreviewPane::show(std::vector<SchedulePreview> previews, const QStringList &warnings)
{
    QStringList sums;
    for (const SchedulePreview &preview : previews)
        sums.append(preview.summary());
    sums.removeAll(QString());
    const int row = qMax(0, table->currentIndex().row());
    messages.show(std::move(previews));
    table->setCurrentIndex(messages.index(row < messages.rowCount() ? row : 0, PreviewTable::Message));
    showMessage(table->currentIndex().row());
    warning->setText(warnings.join(u'\n'));
    warning->setVisible(!warnings.isEmpty());
    sum->setText(sums.isEmpty() ? u"Select people to see what they will be sent."_s : sums.join(u'\n'));
}

void PreviewPane::showMessage(int row)
{
    const PreviewedMessage *message = messages.message(row);
    whole->setPlainText(message ? message->text : QString());
    remark->setText(message ? explanation(*message) : QString());
}
