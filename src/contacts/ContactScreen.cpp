#include "contacts/ContactScreen.h"

#include "ui_ContactScreen.h"
#include "widgets/Unsaved.h"

using namespace Qt::StringLiterals;

ContactScreen::ContactScreen(const QString &dataFolder, QWidget *parent)
    : Screen(parent)
    , ui(std::make_unique<Ui::ContactScreen>())
    , persistentContainer(contactModel(), dataFolder)
{
    ui->setupUi(this);
    persistentContainer.loadPersistentStores();
    managedObjectContext = &persistentContainer.viewContext();
}

ContactScreen::~ContactScreen() = default;

void ContactScreen::showContacts(ContactTable &contacts, const QString &title, const QString &addTip,
                                 const QString &removeTip)
{
    setWindowTitle(title);
    ui->table->setAccessibleName(title);
    ui->table->setTable(contacts);
    ui->addButton->setToolTip(addTip);
    ui->removeButton->setToolTip(removeTip);
}

/// Changes that cannot be saved stay in the window, unless the user lets them go.
bool ContactScreen::viewShouldClose()
{
    ui->table->endEditing();
    const auto save = [this] {
        return managedObjectContext->save();
    };
    const auto asText = [this] {
        const QAbstractItemModel &contacts = *ui->table->model();
        QByteArray lines;
        for (int row = 0; row < contacts.rowCount(); ++row)
            lines += contacts.index(row, Contact::Name).data().toString().toUtf8() + '\t' +
                     contacts.index(row, Contact::PhoneNo).data().toString().toUtf8() + '\n';
        return lines;
    };
    const Unsaved unsaved{
        .what = u"The contacts"_s,
        .path = persistentContainer.path(),
        .reason = [] { return u"another program keeps it to itself, or it cannot be written"_s; },
        .tryAgain = save,
        .content = asText};
    return save() || unsaved.mayBeLeft(*this, u"&Close Without Saving"_s);
}

void ContactScreen::viewWillDisappear()
{
    ui->table->endEditing();
    managedObjectContext->save();
}
