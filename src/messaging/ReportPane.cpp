#include "messaging/ReportPane.h"

#include "messaging/RunReport.h"
#include "widgets/SaveToFile.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QTableView>

#include <algorithm>

using namespace Qt::StringLiterals;

static QLabel *newLabel(QWidget &parent, const QString &name)
{
    auto *label = new QLabel(&parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

static QPushButton *newButton(QWidget &parent, const QString &name, const QString &text,
                              const QString &toolTip)
{
    auto *button = new QPushButton(text, &parent);
    button->setObjectName(name);
    button->setToolTip(toolTip);
    button->setAutoDefault(false);
    return button;
}

static QTableView *newTable(QWidget &parent)
{
    auto *table = new QTableView(&parent);
    table->setObjectName(u"reportTable"_s);
    table->setAccessibleName(u"What has become of the messages"_s);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setTabKeyNavigation(false);
    table->setWordWrap(false);
    table->setCornerButtonEnabled(false);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setHighlightSections(false);
    table->horizontalHeader()->setStretchLastSection(true);
    return table;
}

ReportPane::ReportPane(QWidget *parent)
    : QWidget(parent)
    , problemsOnly(new QCheckBox(u"O&nly problems"_s, this))
    , table(newTable(*this))
    , state(newLabel(*this, u"reportState"_s))
    , sum(newLabel(*this, u"reportSum"_s))
    , news(newLabel(*this, u"reportNews"_s))
    , copyButton(newButton(*this, u"copyReport"_s, u"Cop&y"_s, u"Copy the selected rows, or all"_s))
    , saveButton(newButton(*this, u"saveReport"_s, u"Sa&ve as CSV…"_s, u"For a spreadsheet"_s))
    , againButton(
          newButton(*this, u"sendAgain"_s, u"Send Aga&in…"_s,
                    u"Send the refused messages once more, or the selected ones, each exactly as it was"_s))
    , deliveryButton(newButton(*this, u"askForDelivery"_s, u"Ask for &Delivery"_s,
                               u"Ask the gateway whether the messages have come to the phones"_s))
{
    problemsOnly->setObjectName(u"problemsOnly"_s);
    auto *column = new QVBoxLayout(this);
    for (QWidget *widget : std::initializer_list<QWidget *>{problemsOnly, table, state, sum, news})
        column->addWidget(widget, widget == table ? 1 : 0);
    auto *buttons = new QGridLayout;
    buttons->addWidget(againButton, 0, 0);
    buttons->addWidget(deliveryButton, 0, 1);
    buttons->addWidget(copyButton, 1, 0);
    buttons->addWidget(saveButton, 1, 1);
    column->addLayout(buttons);
    connectActions();
    show(nullptr);
}

void ReportPane::connectActions()
{
    connect(problemsOnly, &QCheckBox::toggled, this, [this](bool isOn) {
        if (report)
            report->showProblemsOnly(isOn);
        update();
    });
    connect(copyButton, &QPushButton::clicked, this, &ReportPane::copy);
    connect(new QShortcut(QKeySequence::Copy, table, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, &ReportPane::copy);
    connect(saveButton, &QPushButton::clicked, this, &ReportPane::saveAsCsv);
    connect(againButton, &QPushButton::clicked, this, [this] { emit sendAgainWanted(messagesToSend()); });
    connect(deliveryButton, &QPushButton::clicked, this, &ReportPane::deliveryWanted);
}

bool ReportPane::show(RunReport *shown)
{
    if (report == shown && report)
        return false;
    report = shown;
    table->setModel(report);
    if (report) {
        report->showProblemsOnly(problemsOnly->isChecked());
        constexpr int rowsLookedAt = 50;
        QHeaderView &header = *table->horizontalHeader();
        header.setResizeContentsPrecision(rowsLookedAt);
        header.setSectionResizeMode(RunReport::Number, QHeaderView::ResizeToContents);
        header.setSectionResizeMode(RunReport::State, QHeaderView::Stretch);
        connect(report, &RunReport::changed, this, &ReportPane::update);
        connect(report, &QObject::destroyed, this, [this, shown] {
            if (report == shown)
                show(nullptr);
        });
        connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this, &ReportPane::update);
    }
    update();
    return true;
}

void ReportPane::setMaySend(bool isOn)
{
    maySend = isOn;
    update();
}

void ReportPane::update()
{
    const QString summary = report ? report->summary() : QString();
    sum->setText(summary.isEmpty() ? u"No messages have been sent since the program was started."_s
                                   : summary);
    const QString told = report ? report->news() : QString();
    news->setText(told);
    news->setVisible(!told.isEmpty());
    const int row = table->currentIndex().row();
    state->setText(report && row >= 0 ? stateText(report->message(row)) : QString());
    const bool isAnyShown = report && report->rowCount() > 0;
    const bool isAnyAccepted =
        report && std::ranges::any_of(report->allMessages(), [](const SentMessage &message) {
            return message.state == MessageState::Accepted;
        });
    copyButton->setEnabled(isAnyShown);
    saveButton->setEnabled(isAnyShown);
    againButton->setEnabled(maySend && report && report->isComplete() && !messagesToSend().empty());
    deliveryButton->setEnabled(isAnyAccepted && !report->isBeingAsked());
}

/// The selected rows or, without a selection, all.
std::vector<int> ReportPane::chosenRows() const
{
    std::vector<int> rows;
    for (const QModelIndex &index : table->selectionModel()->selectedRows())
        rows.push_back(index.row());
    std::ranges::sort(rows);
    if (rows.empty())
        for (int row = 0; row < report->rowCount(); ++row)
            rows.push_back(row);
    return rows;
}

/// All that were refused or, of those that are selected, all that have certainly not arrived; a message that
/// may have arrived only when it alone is selected.
std::vector<SentMessage> ReportPane::messagesToSend() const
{
    std::vector<SentMessage> wanted;
    if (!report)
        return wanted;
    const auto take = [&wanted](const SentMessage &message, bool isWanted) {
        if (isWanted)
            wanted.push_back(message);
    };
    if (!table->selectionModel()->hasSelection()) {
        for (const SentMessage &message : report->allMessages())
            take(message, message.state == MessageState::Refused);
        return wanted;
    }
    const std::vector<int> rows = chosenRows();
    for (const int row : rows) {
        const SentMessage &message = report->message(row);
        take(message, message.isProblem() && (message.state != MessageState::NoAnswer || rows.size() == 1));
    }
    return wanted;
}

void ReportPane::copy()
{
    QStringList lines;
    if (report)
        for (const int row : chosenRows())
            lines.append(report->plainText(row));
    if (!lines.isEmpty())
        QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}

void ReportPane::saveAsCsv()
{
    if (saveToFile(*window(), u"messages.csv"_s, u"Comma-separated values (*.csv)"_s, report->csv()))
        report->tell(u"The report is saved."_s);
}
