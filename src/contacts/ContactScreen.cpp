#include "contacts/ContactScreen.h"

#include "ui_ContactScreen.h"

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

void ContactScreen::viewWillDisappear()
{
    ui->table->endEditing();
    managedObjectContext->save();
}
