#include "contacts/ContactRemark.h"
#include "messaging/ViewControllerSending.h"
#include "platform/Diagnostics.h"
#include "ui_ViewControllerSending.h"
#include "widgets/Alert.h"

#include <QCheckBox>

#include <algorithm>

using namespace Qt::StringLiterals;

// The contacts in the screen: who is selected, what is remarkable about them, and how numbers are put right.

/// The contacts of the selected rows, in the order of the rows.
static std::vector<Contact> selectedIn(const QTableView &table, const ContactTable &contacts)
{
    QList<int> rows;
    for (const QModelIndex &index : table.selectionModel()->selectedRows())
        rows.append(index.row());
    std::ranges::sort(rows);
    std::vector<Contact> selected;
    for (const int row : rows)
        selected.push_back(contacts.contact(row));
    return selected;
}

/// Lets the table show what its context holds now, with the same contacts selected.
/// \return the names of those selected that are gone
template <typename Record>
static QStringList reload(const QTableView &table, ContactTable &contacts, ObjectContext &context)
{
    std::vector<Contact> selected = selectedIn(table, contacts);
    contacts.load<Record>(context);
    QStringList gone;
    std::erase_if(selected, [&gone](const Contact &contact) {
        if (contact.isDeleted())
            gone.append(contact.name().value_or(QString()));
        return contact.isDeleted();
    });
    QItemSelection rows;
    for (int row = 0, found = 0; found < std::ssize(selected); ++row)
        if (contacts.contact(row) == selected[size_t(found)]) { // which come in the same order
            rows.append({contacts.index(row, 0), contacts.index(row, contacts.columnCount() - 1)});
            ++found;
        }
    table.selectionModel()->select(rows, QItemSelectionModel::Select);
    return gone;
}

/// The first of the items, and how many more there are.
static QString enumeration(QStringList items)
{
    constexpr qsizetype mostNamed = 8;
    if (const qsizetype more = items.size() - mostNamed; more > 0) {
        items.resize(mostNamed);
        items.append(u"%1 more"_s.arg(more));
    }
    return items.join(u", "_s);
}

std::vector<Contact> ViewControllerSending::selectedContacts(RecipientKind kind) const
{
    return selectedIn(view(kind), kind == RecipientKind::Client ? clientsArray : teamMembersArray);
}

static qsizetype declinedRows(const ContactTable &contacts)
{
    qsizetype count = 0;
    for (int row = 0; row < contacts.rowCount(); ++row)
        count += contacts.isDeclined(row) ? 1 : 0;
    return count;
}

/// Lets the check box follow when rows are selected one by one.
void ViewControllerSending::keepInStep(QTableView &table, const ContactTable &contacts, QCheckBox &selectAll)
{
    const auto follow = [&table, &contacts, &selectAll] {
        const qsizetype selected = table.selectionModel()->selectedRows().size();
        selectAll.setChecked(selected > 0 && selected >= contacts.rowCount() - declinedRows(contacts));
    };
    connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, &selectAll, follow);
    connect(table.model(), &QAbstractItemModel::modelReset, &selectAll, follow);
}

/// Selects everybody but those who have asked for no more messages, or nobody.
static void select(QTableView &table, const ContactTable &contacts, const QCheckBox &selectAll)
{
    const bool isOn = selectAll.isChecked();
    diagnostics::line(isOn ? 1 : 0);
    if (!isOn) {
        table.clearSelection();
        return;
    }
    table.selectAll();
    for (int row = 0; row < contacts.rowCount(); ++row)
        if (contacts.isDeclined(row))
            table.selectionModel()->select(contacts.index(row, 0),
                                           QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
}

void ViewControllerSending::selectClients(QObject *)
{
    select(*ui->clientsTable, clientsArray, *ui->allClients);
}

void ViewControllerSending::selectTeamMembers(QObject *)
{
    select(*ui->teamMembers, teamMembersArray, *ui->allTeamMembers);
}

/// Reads the contacts anew when they were changed meanwhile. False when that changes whom the user has
/// selected, who then is told.
/// \param consequence  more sentences to tell them
bool ViewControllerSending::areContactsNewest(const QString &consequence)
{
    const ObjectContext::Refresh result = managedObjectContext->refresh();
    if (result == ObjectContext::Refresh::Unchanged)
        return true;
    QString hindrance = u"The contacts cannot be read; another program may be keeping them to itself."_s;
    if (result == ObjectContext::Refresh::Changed) {
        const QStringList gone =
            reload<Clients>(*ui->clientsTable, clientsArray, *managedObjectContext) +
            reload<TeamMembers>(*ui->teamMembers, teamMembersArray, *managedObjectContext);
        if (gone.isEmpty())
            return true;
        hindrance = u"No longer among the contacts: %1."_s.arg(enumeration(gone));
    }
    alertMessage(this, hindrance + u' ' + consequence);
    lastPress.start();
    return false;
}

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
