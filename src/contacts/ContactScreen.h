#pragma once

#include "contacts/ContactTable.h"
#include "contacts/ContactTableView.h"
#include "contacts/PersistentContainer.h"
#include "phone/NumberCheck.h"
#include "widgets/FileReport.h"
#include "widgets/Screen.h"

#include <memory>

class Banner;

namespace Ui {
class ContactScreen;
}

/// What the screen of the clients and the screen of the team members share: the window over the contact
/// store. Changes are saved when the screen goes away, in whatever way it is closed.
class ContactScreen : public Screen
{
    Q_OBJECT

public:
    struct Services
    {
        QString dataFolder;         ///< where the contact store is
        QString sendingNumber = {}; ///< from which texts come, in any form; its country is assumed for others
    };

    ~ContactScreen() override;

protected:
    ContactScreen(const Services &services, QWidget *parent);

    /// What the window calls those whom it lists.
    struct Texts
    {
        QString title;
        QString purpose; ///< shown as long as there is none
        QString add;     ///< tips, and the first step
        QString remove;
    };
    /// Puts these contacts, and the words for them, into the window.
    void showContacts(ContactTable &contacts, const Texts &texts);
    bool viewShouldClose() override;
    void viewWillDisappear() override;

    std::unique_ptr<Ui::ContactScreen> ui;
    PersistentContainer persistentContainer;
    ObjectContext *managedObjectContext = nullptr;

private:
    void undo();
    void redo();
    void tellOfRemoval(int stepCount);
    void takeBackRemoval();
    bool save();
    QByteArray asText() const;
    Unsaved unsaved();

    NumberCheck numbers;
    FileReport report;
    Banner *removal;   ///< of the contacts removed last
    int removedBy = 0; ///< the number of steps with which they were, or 0
    int shownSteps = 0;
    ContactTable *shown = nullptr;
    QStringList unread; ///< what was told when the store's contacts could not be read
};
