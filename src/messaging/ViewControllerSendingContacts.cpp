#include "contacts/ContactRemark.h"
#include "messaging/ScheduleRuns.h"
#include "messaging/ViewControllerSending.h"
#include "platform/Diagnostics.h"
#include "ui_ViewControllerSending.h"
#include "widgets/Alert.h"

#include <QCheckBox>

#include <algorithm>

using namespace Qt::StringLiterals;

// The contacts in the screen: who is selected, what is remarkable about them, and how numbers are put right.

/// In ascending order. Qt's own list of them takes long where there are many ranges.
static std::vector<int> selectedRows(const QTableView &table)
{
    std::vector<int> rows;
    for (const QItemSelectionRange &range : table.selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    std::ranges::sort(rows);
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

/// The contacts of the selected rows, in the order of the rows.
static std::vector<Contact> selectedIn(const QTableView &table, const ContactTable &contacts)
{
    std::vector<Contact> selected;
    for (const int row : selectedRows(table))
        selected.push_back(contacts.contact(row));
    return selected;
}

/// Selects these rows, which ascend, and no others: in as few ranges as there can be, since each costs time.
static void selectOnly(const QTableView &table, const std::vector<int> &rows)
{
    const QAbstractItemModel &model = *table.model();
    QItemSelection selection;
    for (size_t first = 0; first < rows.size();) {
        size_t last = first;
        while (last + 1 < rows.size() && rows[last + 1] == rows[last] + 1)
            ++last;
        selection.append({model.index(rows[first], 0), model.index(rows[last], model.columnCount() - 1)});
        first = last + 1;
    }
    table.selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
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
    std::vector<int> rows;
    for (int row = 0, found = 0; found < std::ssize(selected); ++row)
        if (contacts.contact(row) == selected[size_t(found)]) { // which come in the same order
            rows.push_back(row);
            ++found;
        }
    selectOnly(table, rows);
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

QCheckBox &ViewControllerSending::allBox(RecipientKind kind) const
{
    return kind == RecipientKind::Client ? *ui->allClients : *ui->allTeamMembers;
}

/// Lets the check box say whether all are selected, but those who have asked for no more messages.
void ViewControllerSending::followSelection(RecipientKind kind)
{
    const ContactTable &contacts = table(kind);
    const qsizetype selected = std::ssize(selectedRows(view(kind)));
    allBox(kind).setChecked(selected > 0 && selected >= contacts.rowCount() - contacts.declinedRows().size());
}

/// Lets the check boxes follow when rows are selected one by one.
void ViewControllerSending::keepInStep()
{
    for (const RecipientKind kind : {RecipientKind::Client, RecipientKind::TeamMember}) {
        const auto follow = [this, kind] {
            followSelection(kind);
        };
        connect(view(kind).selectionModel(), &QItemSelectionModel::selectionChanged, this, follow);
        connect(view(kind).model(), &QAbstractItemModel::modelReset, this, follow);
    }
}

/// Everybody but those who have asked for no more messages.
void ViewControllerSending::selectAll(RecipientKind kind)
{
    const ContactTable &contacts = table(kind);
    std::vector<int> rows;
    for (int row = 0; row < contacts.rowCount(); ++row)
        if (!contacts.isDeclined(row))
            rows.push_back(row);
    selectOnly(view(kind), rows);
    followSelection(kind);
}

void ViewControllerSending::selectClients(QObject *)
{
    const bool isOn = ui->allClients->isChecked();
    diagnostics::line(isOn ? 1 : 0);
    isOn ? selectAll(RecipientKind::Client) : ui->clientsTable->clearSelection();
}

void ViewControllerSending::selectTeamMembers(QObject *)
{
    const bool isOn = ui->allTeamMembers->isChecked();
    diagnostics::line(isOn ? 1 : 0);
    isOn ? selectAll(RecipientKind::TeamMember) : ui->teamMembers->clearSelection();
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
            [this, &contacts](int row) { runs.journal().tryAgain(contacts.declinedNumbers(row)); });
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

/// Those whose schedule is not what they were sent for these days.
std::vector<int> ViewControllerSending::changedRows(RecipientKind kind)
{
    const ContactTable &contacts = table(kind);
    std::vector<int> rows;
    for (int row = 0; row < contacts.rowCount(); ++row)
        if (const std::optional<SentSchedule> sent = sentSchedule(kind, contacts.contact(row));
            sent && sent->isChanged() && !contacts.isDeclined(row))
            rows.push_back(row);
    return rows;
}

void ViewControllerSending::selectChanged(RecipientKind kind)
{
    selectOnly(view(kind), changedRows(kind));
}
