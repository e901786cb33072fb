#include "contacts/ContactTable.h"

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int furtherColumn = Contact::PhoneNo + 1;
constexpr qsizetype mostOneByOne = 100; // with more, telling the views of each row takes too long

class ContactStep : public QUndoCommand
{
public:
    ContactStep(const QString &text, std::function<void()> change, std::function<void()> takeBack)
        : QUndoCommand(text)
        , redoStep(std::move(change))
        , undoStep(std::move(takeBack))
    {
    }

    void redo() override { redoStep(); }
    void undo() override { undoStep(); }
    /// What takes it back, as a step of its own.
    /// \param stepCount  behind this step
    std::unique_ptr<ContactStep> reversed(int stepCount) const
    {
        auto back = std::make_unique<ContactStep>(text(), undoStep, redoStep);
        back->takesBack = stepCount;
        return back;
    }

    int takesBack = 0; ///< the step behind which there are so many; 0 for none

private:
    std::function<void()> redoStep;
    std::function<void()> undoStep;
};

/// Nothing where there is none.
const ContactStep *stepAt(const QUndoStack &steps, int index)
{
    return static_cast<const ContactStep *>(steps.command(index));
}

QString enumeration(const QList<std::pair<int, Contact>> &rows)
{
    if (rows.size() > 1)
        return u"%1 contacts"_s.arg(rows.size());
    const Contact &contact = rows.first().second;
    QStringList texts{contact.name().value_or(QString()), contact.phoneNo().value_or(QString())};
    texts.removeAll(QString());
    return texts.isEmpty() ? u"an empty contact"_s : texts.join(u", "_s).simplified();
}

} // namespace

void ContactTable::fill(ObjectContext &ofScreen, const FetchRequest &request,
                        std::function<Contact()> insertion)
{
    context = &ofScreen;
    entity = &request.entity;
    create = std::move(insertion);
    reload();
}

void ContactTable::reload()
{
    doneSteps.clear(); // the rows may be others
    beginResetModel();
    forgetMarks();
    contacts.clear();
    for (const ManagedObject &object : context->fetch({*entity}))
        contacts.append(Contact(object));
    endResetModel();
}

void ContactTable::check(NumberCheck &numbers)
{
    marks = std::make_unique<ContactMarks>(contacts, numbers);
}

void ContactTable::addColumn(Further column)
{
    beginInsertColumns({}, columnCount(), columnCount());
    further = std::move(column);
    endInsertColumns();
}

void ContactTable::refreshColumn()
{
    if (rowCount() > 0)
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1),
                         {Qt::DisplayRole, Qt::DecorationRole, Qt::ToolTipRole, Qt::AccessibleTextRole});
}

void ContactTable::setDeclined(const QSet<QString> &numbers)
{
    if (marks->declinedNumbers() == numbers)
        return;
    marks->setDeclined(numbers);
    refreshColumn();
}

void ContactTable::forgetMarks()
{
    if (marks)
        marks->forget();
}

QString ContactTable::remark(int row) const
{
    if (!marks)
        return {};
    QStringList sentences{marks->remark(row, Contact::Name), marks->remark(row, Contact::PhoneNo),
                          further ? further->sentence(contacts[row]) : QString()};
    sentences.removeAll(QString());
    return sentences.join(u' ');
}

QString ContactTable::correctedNumber(int row) const
{
    return marks ? marks->correctedNumber(row) : QString();
}

bool ContactTable::correctNumber(int row, const QString &corrected)
{
    return !corrected.isEmpty() && corrected == correctedNumber(row) &&
           setData(index(row, Contact::PhoneNo), corrected);
}

int ContactTable::add()
{
    const Rows rows{{rowCount(), create()}};
    doneSteps.push(new ContactStep(
        {}, [=, this] { insert(rows); }, [=, this] { take(rows); }));
    return rows.first().first;
}

void ContactTable::remove(QList<int> numbers)
{
    if (numbers.isEmpty())
        return;
    std::ranges::sort(numbers);
    Rows rows;
    for (const int row : numbers)
        rows.append({row, contacts[row]});
    doneSteps.push(new ContactStep(
        u"Removed "_s + enumeration(rows), [=, this] { take(rows); }, [=, this] { insert(rows); }));
}

void ContactTable::takeBackRemoval(int stepCount)
{
    if (stepCount == doneSteps.index())
        doneSteps.undo();
    else
        doneSteps.push(stepAt(doneSteps, stepCount - 1)->reversed(stepCount).release());
}

std::optional<ContactTable::Removal> ContactTable::removalBetween(int earlierCount, int count) const
{
    const bool isDone = earlierCount < count;
    const ContactStep *step = stepAt(doneSteps, isDone ? count - 1 : count);
    if (!step || step->text().isEmpty() || isDone == (step->takesBack > 0))
        return std::nullopt;
    return Removal{isDone ? count : step->takesBack, step->text()};
}

void ContactTable::insert(const Rows &rows)
{
    for (const auto &[row, contact] : rows)
        context->restoreObject(contact);
    if (rows.size() > mostOneByOne) {
        beginResetModel();
        QList<Contact> all;
        auto kept = contacts.cbegin();
        for (const auto &[row, contact] : rows) {
            for (; all.size() < row; ++kept)
                all.append(*kept);
            all.append(contact);
        }
        all.append({kept, contacts.cend()});
        contacts = all;
        forgetMarks();
        endResetModel();
    } else {
        for (const auto &[row, contact] : rows) {
            beginInsertRows({}, row, row);
            contacts.insert(row, contact);
            forgetMarks();
            endInsertRows();
        }
    }
    emit touched(rows.first().first);
}

void ContactTable::take(const Rows &rows)
{
    for (const auto &[row, contact] : rows)
        context->deleteObject(contact);
    if (rows.size() > mostOneByOne) {
        beginResetModel();
        contacts.removeIf([](const Contact &contact) { return contact.isDeleted(); });
        forgetMarks();
        endResetModel();
        return;
    }
    for (auto entry = rows.crbegin(); entry != rows.crend(); ++entry) {
        const int row = entry->first;
        beginRemoveRows({}, row, row);
        contacts.removeAt(row);
        forgetMarks();
        endRemoveRows();
    }
}

int ContactTable::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(contacts.size());
}

int ContactTable::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : further ? furtherColumn + 1 : furtherColumn;
}

QVariant ContactTable::data(const QModelIndex &index, int role) const
{
    if (index.column() == furtherColumn) {
        const Contact &contact = contacts[index.row()];
        return role == Qt::DisplayRole   ? further->summary(contact)
               : role == Qt::ToolTipRole ? further->sentence(contact)
                                         : QVariant();
    }
    const auto attribute = Contact::Attribute(index.column());
    const QVariant mark =
        marks && role != Qt::EditRole ? marks->data(index.row(), attribute, role) : QVariant();
    if (mark.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
        return mark;
    return contacts[index.row()].value(attribute).value_or(QString());
}

bool ContactTable::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole)
        return false;
    const int row = index.row();
    const auto attribute = Contact::Attribute(index.column());
    const std::optional<QString> before = contacts[row].value(attribute);
    const std::optional<QString> after = value.toString();
    if (before != after)
        doneSteps.push(new ContactStep(
            {}, [=, this] { setText(row, attribute, after); },
            [=, this] { setText(row, attribute, before); }));
    return true;
}

void ContactTable::setText(int row, Contact::Attribute attribute, const std::optional<QString> &text)
{
    contacts[row].setValue(attribute, text);
    forgetMarks();
    const QModelIndex cell = index(row, int(attribute));
    emit dataChanged(cell, cell);
    if (marks) // those of others, too, that have or had the same name or number
        emit dataChanged(index(0, 0), index(rowCount() - 1, Contact::PhoneNo),
                         {Qt::DecorationRole, Qt::ToolTipRole, Qt::AccessibleTextRole});
    emit touched(row);
}

QVariant ContactTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    if (section == furtherColumn)
        return further->title;
    return section == Contact::Name ? u"Name"_s : u"Phone Number"_s;
}

Qt::ItemFlags ContactTable::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return index.isValid() && index.column() != furtherColumn ? flags | Qt::ItemIsEditable : flags;
}
