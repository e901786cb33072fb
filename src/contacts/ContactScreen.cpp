#include "contacts/ContactScreen.h"

#include "ui_ContactScreen.h"

using namespace Qt::StringLiterals;

ContactScreen::ContactScreen(const QString &dataFolder, QWidget *parent)
    : Screen(parent)
    , ui(setUpForm<Ui::ContactScreen>(*this))
    , persistentContainer(contactModel(), dataFolder)
    , report(*ui->mainLayout, [this] { return unsaved(); })
{
    persistentContainer.loadPersistentStores();
    const QString reason = persistentContainer.errorString();
    isReadable = reason.isEmpty();
    if (!isReadable)
        report.tell(true,
                    {u"The contacts in %1 could not be read: %2."_s.arg(persistentContainer.path(), reason)},
                    {});
    managedObjectContext = &persistentContainer.viewContext();
}

ContactScreen::~ContactScreen() = default;

void ContactScreen::showContacts(ContactTable &contacts, const QString &title, const QString &addTip,
                                 const QString &removeTip)
{
    setWindowTitle(title);
    ui->table->setAccessibleName(title);
    ui->table->setTable(contacts);
    shown = &contacts;
    ui->addButton->setToolTip(addTip);
    ui->removeButton->setToolTip(removeTip);
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
    if (isSaved && !std::exchange(isReadable, true)) {
        report.withdrawNews();
        shown->reload();
    }
    return isSaved;
}

QByteArray ContactScreen::asText() const
{
    const QAbstractItemModel &contacts = *ui->table->model();
    QByteArray lines;
    for (int row = 0; row < contacts.rowCount(); ++row)
        lines += contacts.index(row, Contact::Name).data().toString().toUtf8() + '\t' +
                 contacts.index(row, Contact::PhoneNo).data().toString().toUtf8() + '\n';
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
