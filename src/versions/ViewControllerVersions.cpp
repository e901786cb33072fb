#include "versions/ViewControllerVersions.h"

#include "model/Appearance.h"
#include "model/TaskManager.h"
#include "platform/NotificationCenter.h"
#include "ui_ViewControllerVersions.h"
#include "versions/VersionStore.h"
#include "widgets/Alert.h"
#include "widgets/Background.h"
#include "widgets/TaskRowDelegate.h"

#include <QLocale>
#include <QShortcut>

using namespace Qt::StringLiterals;

using enum TaskChange::Kind;

namespace {

/// Such as "5/12/26, 2:03 PM".
QString momentOf(const Version &version)
{
    const QDateTime time = Calendar::localTime(version.time);
    return shortDate(time.date()) + u", "_s + QLocale().toString(time.time(), QLocale::ShortFormat);
}

QString tasks(qsizetype count)
{
    return count == 1 ? u"1 task"_s : u"%1 tasks"_s.arg(count);
}

/// What has become of the version's list.
QString changesSince(const ComparedVersion &version)
{
    if (version.isToday())
        return u"Today's list is the same."_s;
    QStringList changes;
    for (const auto &[kind, change] :
         {std::pair(Removed, u" removed"_s), {Changed, u" changed"_s}, {Added, u" added"_s}})
        if (const qsizetype count = version.count(kind); count > 0)
            changes.append(tasks(count) + change);
    return changes.isEmpty() ? u"Since then only the order of the tasks has changed."_s
                             : u"Since then: "_s + changes.join(u", "_s) + u'.';
}

} // namespace

ViewControllerVersions::ViewControllerVersions(const Services &screenServices, QWidget *parent)
    : Screen(parent)
    , ui(setUpForm<Ui::ViewControllerVersions>(*this))
    , services(screenServices)
{
    constexpr int rowHeight = 30;       // pixels
    constexpr int sinceThenWidth = 150; // pixels
    constexpr int listWidth = 360;      // pixels
    ui->tasksTable->setModel(&table);
    ui->tasksTable->setItemDelegate(new TaskRowDelegate(ui->tasksTable));
    ui->tasksTable->verticalHeader()->setDefaultSectionSize(rowHeight);
    ui->tasksTable->setColumnWidth(VersionTable::sinceThenColumn, sinceThenWidth);
    for (const TaskColumnInfo &column : taskColumns())
        ui->tasksTable->setColumnWidth(int(column.column) + 1, column.width);
    ui->splitter->setSizes({listWidth, width() - listWidth});
    ui->splitter->setStretchFactor(1, 1);
    ui->pages->setCurrentWidget(ui->versionsPage);
    ui->versionsTree->setFocus();
    ui->unreadableLabel->hide();
    ui->skippedLabel->hide();
    connectActions();
    showRows();
    loadListing();
}

ViewControllerVersions::~ViewControllerVersions() = default;

void ViewControllerVersions::connectActions()
{
    connect(ui->versionsTree, &VersionTree::choiceChanged, this, &ViewControllerVersions::loadChosen);
    connect(ui->filterField, &QLineEdit::textChanged, &table, &VersionTable::setFilter);
    connect(ui->compareBox, &QCheckBox::toggled, this, &ViewControllerVersions::showRows);
    connect(ui->tasksTable->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ViewControllerVersions::showChoices);
    connect(&table, &QAbstractItemModel::modelReset, this, &ViewControllerVersions::showChoices);
    connect(ui->bringBackTasksButton, &QPushButton::clicked, this, &ViewControllerVersions::bringBackTasks);
    connect(ui->bringBackListButton, &QPushButton::clicked, this, &ViewControllerVersions::bringBackList);
    connect(ui->closeButton, &QPushButton::clicked, this, &ViewControllerVersions::reject);
    connect(&services.store, &VersionStore::changed, this, &ViewControllerVersions::loadListing);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, ui->filterField,
            qOverload<>(&QLineEdit::setFocus));
    connect(new QShortcut(Qt::Key_Escape, ui->filterField, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this,
            [this] { ui->filterField->text().isEmpty() ? reject() : ui->filterField->clear(); });
    services.systemNotices.observe(notice::appearanceChanged, this, [this] { loadChosen(); });
}

/// Today's list may have been changed while another window was in front.
void ViewControllerVersions::changeEvent(QEvent *event)
{
    Screen::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        loadChosen();
}

void ViewControllerVersions::loadListing()
{
    inBackground(
        *this, [folder = services.store.folder()] { return versionFile::list(folder); },
        [this, asked = ++listingsAsked](const versionFile::Listing &listing) {
            if (asked == listingsAsked)
                showListing(listing);
        });
}

void ViewControllerVersions::showListing(const versionFile::Listing &listing)
{
    constexpr qsizetype mostNamed = 3;
    QStringList names = listing.unreadable;
    if (const qsizetype more = names.size() - mostNamed; more > 0) {
        names.resize(mostNamed);
        names.append(u"%1 more"_s.arg(more));
    }
    ui->unreadableLabel->setText(u"Not readable as versions, and left out: %1"_s.arg(names.join(u", "_s)));
    ui->unreadableLabel->setToolTip(services.store.folder());
    ui->unreadableLabel->setVisible(!names.isEmpty());
    ui->pages->setCurrentWidget(listing.versions.isEmpty() ? ui->emptyPage : ui->versionsPage);
    ui->versionsTree->show(listing.versions);
}

void ViewControllerVersions::loadChosen()
{
    const std::optional<Version> version = ui->versionsTree->chosen();
    const int asked = ++versionsAsked;
    const bool isShown = version && version->number == shown.number;
    if (!version || (isShown && comparedAt == services.manager.changeCount()))
        return;
    const bool isDark = isDarkMode();
    const auto load = [path = versionFile::pathOf(services.store.folder(), version->number),
                       today = services.manager.workingList(), isDark]() -> Loaded {
        const std::optional<QByteArray> text = versionFile::readText(path);
        return text ? Loaded{true, ComparedVersion(*text, today, isDark)} : Loaded{};
    };
    inBackground(
        *this, load,
        [this, asked, version = *version, changes = services.manager.changeCount()](const Loaded &loaded) {
            if (asked != versionsAsked)
                return;
            comparedAt = changes;
            showLoaded(version, loaded);
        });
}

void ViewControllerVersions::showLoaded(const Version &version, const Loaded &loaded)
{
    const qsizetype skipped = loaded.version.skippedRows();
    ui->titleLabel->setText(u"The list of %1, %2"_s.arg(momentOf(version), tasks(version.summary.tasks)));
    ui->skippedLabel->setText(loaded.isReadable
                                  ? u"%1 of its rows could not be read and are not shown."_s.arg(skipped)
                                  : u"The file %1 is damaged: this version cannot be shown."_s.arg(
                                        versionFile::pathOf(services.store.folder(), version.number)));
    ui->skippedLabel->setVisible(skipped > 0 || !loaded.isReadable);
    shown = loaded.isReadable ? version : Version();
    table.show(loaded.version);
}

void ViewControllerVersions::showRows()
{
    const bool isComparing = ui->compareBox->isChecked();
    table.setComparing(isComparing);
    ui->tasksTable->setColumnHidden(VersionTable::sinceThenColumn, !isComparing);
}

QList<ComparedVersion::Row> ViewControllerVersions::chosenRows() const
{
    QList<int> places;
    for (const QModelIndex &index : ui->tasksTable->selectionModel()->selectedRows())
        places.append(index.row());
    std::ranges::sort(places);
    QList<ComparedVersion::Row> rows;
    for (const int place : places)
        if (table.rowAt(place).isDifferent())
            rows.append(table.rowAt(place));
    return rows;
}

/// Offers what would do something, and says what.
void ViewControllerVersions::showChoices()
{
    const qsizetype chosen = chosenRows().size();
    ui->bringBackTasksButton->setEnabled(chosen > 0);
    ui->bringBackTasksButton->setToolTip(
        chosen > 0 ? u"Make %1 what it was then; what is gone is added again"_s.arg(tasks(chosen))
                   : u"Choose tasks that have been changed or removed since"_s);
    ui->bringBackListButton->setEnabled(shown.number > 0 && !table.version().isToday());
    ui->changesLabel->setText(shown.number > 0 ? changesSince(table.version()) : QString());
}

void ViewControllerVersions::bringBackTasks()
{
    const QList<ComparedVersion::Row> rows = chosenRows();
    bringBack(table.version().withTasks(rows, isDarkMode()),
              rows.size() == 1 ? u"Bring Back Task"_s : u"Bring Back %1 Tasks"_s.arg(rows.size()));
}

void ViewControllerVersions::bringBackList()
{
    bringBack(table.version().wholeList(isDarkMode()), u"Bring Back the List of "_s + momentOf(shown));
}

void ViewControllerVersions::bringBack(const TaskList &list, const QString &stepName)
{
    const bool isCurrent = comparedAt == services.manager.changeCount();
    if (isCurrent)
        services.bringBack(list, stepName);
    loadChosen();
    if (!isCurrent)
        alertMessage(
            this, u"The list has been changed meanwhile. Nothing has been brought back; please look at the "
                  "comparison, and press the button again."_s);
}
