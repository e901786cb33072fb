#include "journal/ViewControllerJournal.h"

#include "app/UIUtil.h"
#include "journal/MessageJournal.h"
#include "ui_ViewControllerJournal.h"
#include "widgets/Banner.h"

#include <QClipboard>
#include <QLocale>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace {

QString messages(qsizetype count)
{
    return count == 1 ? u"1 message"_s : u"%L1 messages"_s.arg(count);
}

} // namespace

ViewControllerJournal::ViewControllerJournal(MessageJournal &messageJournal, QWidget *parent)
    : Screen(parent)
    , ui(setUpForm<Ui::ViewControllerJournal>(*this))
    , journal(messageJournal)
    , table(messageJournal)
    , problemBanner(new Banner(this))
    , newsBanner(new Banner(this))
{
    constexpr int rowHeight = 26;                       // pixels
    constexpr std::array widths = {150, 170, 140, 260}; // pixels
    constexpr std::chrono::milliseconds gathering(500);
    ui->mainLayout->insertWidget(0, problemBanner);
    ui->mainLayout->insertWidget(0, newsBanner);
    refreshDelay.setSingleShot(true);
    refreshDelay.setInterval(gathering);
    ui->table->setModel(&table);
    ui->table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    ui->table->verticalHeader()->setDefaultSectionSize(rowHeight);
    for (size_t column = 0; column < widths.size(); ++column)
        ui->table->setColumnWidth(int(column), widths[column]);
    ui->table->setFocus();
    connectActions();
    refresh();
    ui->table->setCurrentIndex(table.index(0, 0));
}

ViewControllerJournal::~ViewControllerJournal() = default;

void ViewControllerJournal::connectActions()
{
    connect(ui->searchField, &QLineEdit::textChanged, this, &ViewControllerJournal::showFound);
    connect(ui->personBox, &QComboBox::currentIndexChanged, this, &ViewControllerJournal::showFound);
    connect(ui->dayBox, &QComboBox::currentIndexChanged, this, &ViewControllerJournal::showFound);
    connect(ui->table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &ViewControllerJournal::showCurrent);
    connect(&table, &JournalTable::unreadable, this, &ViewControllerJournal::showProblem,
            Qt::QueuedConnection); // the table is being painted
    connect(ui->forgetPersonButton, &QPushButton::clicked, this, &ViewControllerJournal::forgetPerson);
    connect(ui->forgetAllButton, &QPushButton::clicked, this, &ViewControllerJournal::forgetAll);
    connect(ui->firstStepButton, &QPushButton::clicked, this, &ViewControllerJournal::leaveEmpty);
    connect(ui->closeButton, &QPushButton::clicked, this, &ViewControllerJournal::reject);
    connect(&journal, &MessageJournal::written, this, [this] {
        if (!refreshDelay.isActive())
            refreshDelay.start();
    });
    connect(&refreshDelay, &QTimer::timeout, this, &ViewControllerJournal::refresh);
    connect(&journal, &MessageJournal::told, newsBanner,
            [this](const QString &sentence) { newsBanner->tell(sentence, {}); });
    connect(&journal, &MessageJournal::forgotten, this, [this](const QString &problem) {
        isForgetting = false;
        refresh();
        if (!problem.isEmpty())
            newsBanner->tell(u"The messages could not be forgotten: %1."_s.arg(problem), {});
    });
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, ui->searchField,
            qOverload<>(&QLineEdit::setFocus));
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QDialog::reject);
    connect(new QShortcut(QKeySequence::Copy, ui->table, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, &ViewControllerJournal::copyCurrent);
    connect(new QShortcut(Qt::Key_Escape, ui->searchField, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this,
            [this] { ui->searchField->text().isEmpty() ? reject() : ui->searchField->clear(); });
}

/// Messages may have been sent while another window was in front.
void ViewControllerJournal::changeEvent(QEvent *event)
{
    Screen::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() &&
        (!table.problem().isEmpty() || table.store().stamp() != shownStamp))
        refresh();
}

void ViewControllerJournal::refresh()
{
    shownStamp = table.store().stamp();
    fillFilters();
    showFound();
}

/// Fills the box, unless it has these entries, and keeps what is chosen in it as long as it is there.
static void fill(QComboBox &box, const QString &everything,
                 const QList<std::pair<QString, QVariant>> &entries)
{
    bool isSame = box.count() == entries.size() + 1;
    for (int place = 1; isSame && place < box.count(); ++place)
        isSame = box.itemData(place) == entries[place - 1].second;
    if (isSame)
        return;
    const QSignalBlocker blocker(box);
    const QVariant chosen = box.currentData();
    box.clear();
    box.addItem(everything);
    for (const auto &[text, value] : entries)
        box.addItem(text, value);
    box.setCurrentIndex(std::max(chosen.isValid() ? box.findData(chosen) : 0, 0));
}

void ViewControllerJournal::fillFilters()
{
    QList<std::pair<QString, QVariant>> people;
    for (const QString &person : table.store().people())
        people.append({person.simplified(), person});
    fill(*ui->personBox, u"Everybody"_s, people);
    QList<std::pair<QString, QVariant>> days;
    for (const QDate day : table.store().days())
        days.append(
            {QLocale().dayName(day.dayOfWeek(), QLocale::ShortFormat) + u", "_s + shortDate(day), day});
    fill(*ui->dayBox, u"All days"_s, days);
}

void ViewControllerJournal::showFound()
{
    const qint64 shown = currentIdentifier;
    const QVariant day = ui->dayBox->currentData();
    table.show({.words = ui->searchField->text().trimmed(),
                .person = ui->personBox->currentData().toString(),
                .day = day.isValid() ? std::optional(day.toDate()) : std::nullopt});
    ui->table->setCurrentIndex(table.index(std::max(table.rowOf(shown), 0), 0));
    if (table.problem().isEmpty())
        problemBanner->withdraw();
    else
        showProblem(table.problem());
    ui->pages->setCurrentWidget(table.rowCount() > 0 ? ui->messagesPage : ui->emptyPage);
    showEmpty();
    showCurrent();
}

bool ViewControllerJournal::isNarrowed() const
{
    return !ui->searchField->text().trimmed().isEmpty() || ui->personBox->currentIndex() > 0 ||
           ui->dayBox->currentIndex() > 0;
}

/// The first step out of an empty table.
void ViewControllerJournal::leaveEmpty()
{
    if (!isNarrowed()) {
        emit messagesWanted();
        return;
    }
    ui->personBox->setCurrentIndex(0);
    ui->dayBox->setCurrentIndex(0);
    ui->searchField->clear();
    ui->searchField->setFocus();
}

/// Says why there is nothing to be seen.
void ViewControllerJournal::showEmpty()
{
    const bool isSearch = isNarrowed();
    ui->emptyLabel->setText(
        !table.problem().isEmpty() ? QString()
        : isSearch                 ? u"No message is like that."_s
                   : u"No messages yet. Every text message that is sent is kept here for a year: when and to "
                     "whom it went, and what became of it."_s);
    ui->firstStepButton->setVisible(table.problem().isEmpty());
    ui->firstStepButton->setText(isSearch ? tr("Show All") : tr("Schedule Messages…"));
    ui->countLabel->setText(table.rowCount() > 0 ? messages(table.rowCount()) : QString());
}

void ViewControllerJournal::showProblem(const QString &problem)
{
    const QString whatNow = table.store().isDamaged()
                                ? u" It is kept beside another one as soon as messages are sent."_s
                                : QString();
    problemBanner->tell(
        u"The journal of messages in %1 cannot be read: %2."_s.arg(table.store().filePath(), problem) +
            whatNow,
        {});
}

SentMessage ViewControllerJournal::current() const
{
    return table.message(ui->table->currentIndex().row());
}

void ViewControllerJournal::showCurrent()
{
    const SentMessage shown = current();
    currentIdentifier = shown.id;
    ui->detailsLabel->setText(shown.id == 0
                                  ? QString()
                                  : u"%1 to %2, %3. %4"_s.arg(momentText(shown), shown.person.simplified(),
                                                              shown.number, journalStateText(shown)));
    if (ui->textView->toPlainText() != shown.text) // what is selected in it stays
        ui->textView->setPlainText(shown.text);
    showChoices();
}

void ViewControllerJournal::showChoices()
{
    constexpr int longestName = 200; // pixels
    const QString person = current().person;
    ui->forgetPersonButton->setText(u"Forget %1…"_s.arg(
        person.isEmpty() ? u"Person"_s
                         : fontMetrics()
                               .elidedText(person.simplified(), Qt::ElideRight, longestName)
                               .replace(u'&', u"&&"_s)));
    ui->forgetPersonButton->setEnabled(!person.isEmpty() && !isForgetting);
    ui->forgetAllButton->setEnabled(ui->dayBox->count() > 1 && !isForgetting); // there are some
}

void ViewControllerJournal::copyCurrent()
{
    const SentMessage shown = current();
    if (shown.id != 0)
        QGuiApplication::clipboard()->setText(
            QStringList{momentText(shown), shown.person, shown.number, shown.text, journalStateText(shown)}
                .join(u'\t'));
}

void ViewControllerJournal::forgetPerson()
{
    const QString person = current().person;
    const qsizetype count = qsizetype(table.store().find({.person = person}).size());
    forget(u"Forget %1 to %2?"_s.arg(messages(count), person.simplified()), person);
}

void ViewControllerJournal::forgetAll()
{
    forget(u"Forget everything: %1?"_s.arg(messages(qsizetype(table.store().find({}).size()))), {});
}

/// \param person  empty for everybody
void ViewControllerJournal::forget(const QString &question, const QString &person)
{
    if (!util().askYesNo(question, u"They are removed from the journal, which cannot be undone. What is just "
                                   "being sent stays in it."_s))
        return;
    isForgetting = true;
    newsBanner->withdraw();
    showChoices();
    journal.forget(person.isEmpty() ? std::nullopt : std::optional(person));
}
