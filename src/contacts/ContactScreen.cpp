#include "contacts/ContactScreen.h"

#include "contacts/ContactRemark.h"
#include "ui_ContactScreen.h"
#include "widgets/Banner.h"
#include "widgets/EmptyNote.h"

#include <QShortcut>

#include <utility>

using namespace Qt::StringLiterals;

ContactScreen::ContactScreen(const Services &services, QWidget *parent)
    : Screen(parent)
    , ui(setUpForm<Ui::ContactScreen>(*this))
    , persistentContainer(contactModel(), services.dataFolder)
    , numbers(services.sendingNumber)
    , report(*ui->mainLayout, [this] { return unsaved(); })
    , removal(new Banner(this))
{
    ui->mainLayout->insertWidget(ui->mainLayout->indexOf(ui->table), removal);
    connect(new QShortcut(QKeySequence::Undo, this), &QShortcut::activated, this, &ContactScreen::undo);
    connect(new QShortcut(QKeySequence::Redo, this), &QShortcut::activated, this, &ContactScreen::redo);
    persistentContainer.loadPersistentStores();
    const QString reason = persistentContainer.errorString();
    if (!reason.isEmpty())
        unread = {u"The contacts in %1 could not be read: %2."_s.arg(persistentContainer.path(), reason)};
    report.tell(true, unread, {});
    managedObjectContext = &persistentContainer.viewContext();
}

ContactScreen::~ContactScreen() = default;

void ContactScreen::showContacts(ContactTable &contacts, const Texts &texts)
{
    setWindowTitle(texts.title);
    ui->table->setAccessibleName(texts.title);
    ui->table->setTable(contacts);
    auto *emptyNote = new EmptyNote(*ui->table);
    emptyNote->tell(texts.purpose, texts.add);
    connect(emptyNote, &EmptyNote::stepTaken, ui->addButton, &QPushButton::click);
    shown = &contacts;
    contacts.check(numbers);
    auto *remark = new ContactRemark(*ui->table, contacts, QBoxLayout::LeftToRight, this);
    ui->mainLayout->insertWidget(ui->mainLayout->indexOf(ui->table) + 1, remark);
    connect(remark, &ContactRemark::correctionWanted, this, [this](int row, const QString &number) {
        ui->table->endEditing();
        shown->correctNumber(row, number);
        ui->table->setFocus(); // the button goes
    });
    connect(&contacts.steps(), &QUndoStack::indexChanged, this, &ContactScreen::tellOfRemoval);
    ui->addButton->setToolTip(texts.add);
    ui->removeButton->setToolTip(texts.remove);
}

void ContactScreen::undo()
{
    ui->table->endEditing();
    shown->steps().undo();
}

void ContactScreen::redo()
{
    ui->table->endEditing();
    shown->steps().redo();
}

/// Says what was removed last, as long as that is so.
void ContactScreen::tellOfRemoval(int stepCount)
{
    const int before = std::exchange(shownSteps, stepCount);
    const auto removed = shown->removalBetween(before, stepCount);
    if (stepCount < removedBy || shown->removalBetween(stepCount, before)) {
        removedBy = 0;
        removal->withdraw();
    }
    if (!removed)
        return;
    removedBy = removed->stepCount;
    constexpr int button = 120; // pixels, which it takes from the text
    removal->tell(fontMetrics().elidedText(removed->text, Qt::ElideRight, ui->table->width() - button),
                  {{u"Undo"_s, [this] {
                        takeBackRemoval();
                    }}});
}

/// What was typed since, and what is being typed, stays.
void ContactScreen::takeBackRemoval()
{
    ui->table->endEditing();
    shown->takeBackRemoval(std::exchange(removedBy, 0));
    removal->withdraw();
    ui->table->setFocus();
}

/// Changes that cannot be saved stay in the window, unless the user lets them go.
bool ContactScreen::viewShouldClose()
{
    return report.mayClose(u"&Close Without Saving"_s);
}

bool ContactScreen::save()
{
    ui->table->endEditing();
    const bool isSaved = persistentContainer.save();
    report.tell(isSaved, {}, {});
    if (isSaved && !unread.isEmpty()) {
        report.withdrawNews(std::exchange(unread, {}));
        shown->reload();
    }
    return isSaved;
}

QByteArray ContactScreen::asText() const
{
    const QAbstractItemModel &contacts = *ui->table->model();
    QByteArray lines;
    for (int row = 0; row < contacts.rowCount(); ++row)
        lines += contacts.index(row, Contact::Name).data(Qt::EditRole).toString().toUtf8() + '\t' +
                 contacts.index(row, Contact::PhoneNo).data(Qt::EditRole).toString().toUtf8() + '\n';
    return lines;
}

Unsaved ContactScreen::unsaved()
{
    return {.what = u"The contacts"_s,
            .path = persistentContainer.path(),
            .reason = [this] { return persistentContainer.errorString(); },
            .tryAgain = [this] { return save(); },
            .content = [this] { return asText(); },
            .copySuffix = u"txt"_s,
            .isRepeatable = false}; // it would end what is being typed
}

void ContactScreen::viewWillDisappear()
{
    ui->table->endEditing();
    managedObjectContext->save();
}
