#include "contacts/ContactRemark.h"
#include "messaging/ViewControllerSending.h"
#include "ui_ViewControllerSending.h"
#include "widgets/Alert.h"

using namespace Qt::StringLiterals;

// What is remarkable about the contacts, above all about their numbers, and how those are put right.

/// Marks the contacts in the table, and says below it what is remarkable about the current one.
/// \param column  in which the table stands
void ViewControllerSending::markContacts(QBoxLayout &column, QTableView &table, ContactTable &contacts)
{
    contacts.check(numbers);
    auto *remark = new ContactRemark(table, contacts, QBoxLayout::TopToBottom, this);
    column.insertWidget(column.indexOf(&table) + 1, remark);
    connect(remark, &ContactRemark::anotherTryWanted, this,
            [this, &contacts](int row) { tryAgain(contacts.contact(row)); });
    connect(remark, &ContactRemark::correctionWanted, this,
            [this, &table, &contacts](int row, const QString &number) {
                correctNumber(table, contacts, row, number);
                table.setFocus(); // the button may have gone
            });
}

/// Writes the number as it should be, in the store as well, unless it was changed elsewhere meanwhile: then
/// the table shows what it is now.
void ViewControllerSending::correctNumber(QTableView &table, ContactTable &contacts, int row,
                                          const QString &number)
{
    const Contact contact = contacts.contact(row);
    if (!areContactsNewest(u"The number has not been corrected."_s))
        return;
    for (row = 0; row < contacts.rowCount() && !(contacts.contact(row) == contact);)
        ++row;
    if (row == contacts.rowCount()) // not one of those selected
        return;
    table.selectionModel()->setCurrentIndex(contacts.index(row, Contact::PhoneNo),
                                            QItemSelectionModel::NoUpdate);
    if (!contacts.correctNumber(row, number) || persistentContainer.save())
        return;
    contacts.steps().undo();
    alertMessage(this, u"The number stays as it was, since it could not be saved in %1: %2."_s.arg(
                           persistentContainer.path(), persistentContainer.errorString()));
}
