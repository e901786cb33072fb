#include "contacts/ContactTable.h"

#include <algorithm>

using namespace Qt::StringLiterals;

void ContactTable::fill(ObjectContext &ofScreen, const FetchRequest &request,
                        std::function<Contact()> insertion)
{
    context = &ofScreen;
    entity = &request.entity;
    insert = std::move(insertion);
    reload();
}

void ContactTable::reload()
{
    beginResetModel();
    contacts.clear();
    for (const ManagedObject &object : context->fetch({*entity}))
        contacts.append(Contact(object));
    endResetModel();
}

int ContactTable::add()
{
    const int row = rowCount();
    beginInsertRows({}, row, row);
    contacts.append(insert());
    endInsertRows();
    return row;
}

void ContactTable::remove(QList<int> rows)
{
    constexpr qsizetype mostOneByOne = 100; // with more, telling the views of each row takes too long
    std::ranges::sort(rows, std::ranges::greater());
    if (rows.size() > mostOneByOne) {
        beginResetModel();
        for (const int row : rows)
            context->deleteObject(contacts.takeAt(row));
        endResetModel();
        return;
    }
    for (const int row : rows) {
        beginRemoveRows({}, row, row);
        context->deleteObject(contacts.takeAt(row));
        endRemoveRows();
    }
}

int ContactTable::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(contacts.size());
}

int ContactTable::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 2;
}

QVariant ContactTable::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    return contacts[index.row()].value(size_t(index.column())).value_or(QString());
}

bool ContactTable::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole)
        return false;
    contacts[index.row()].setValue(size_t(index.column()), value.toString());
    emit dataChanged(index, index);
    return true;
}

QVariant ContactTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == Contact::Name ? u"Name"_s : u"Phone Number"_s;
}

Qt::ItemFlags ContactTable::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return index.isValid() ? flags | Qt::ItemIsEditable : flags;
}
