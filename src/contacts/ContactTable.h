#pragma once

#include "contacts/Contact.h"

#include <QAbstractTableModel>

#include <functional>

/// The contacts of one kind as an editable table of names and phone numbers.
class ContactTable : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// Fills the table with the context's records of this kind. The context has to outlive the table.
    template <typename Record>
    void load(ObjectContext &ofScreen)
    {
        fill(ofScreen, Record::fetchRequest(), [&ofScreen]() -> Contact { return Record(ofScreen); });
    }

    /// Fills it anew from the same context.
    void reload();
    /// Adds a contact at the end and returns its row.
    int add();
    /// Removes the rows; they may come in any order.
    void remove(QList<int> rows);

    const Contact &contact(int row) const { return contacts[row]; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    void fill(ObjectContext &ofScreen, const FetchRequest &request, std::function<Contact()> insertion);

    ObjectContext *context = nullptr;
    const Entity *entity = nullptr;
    std::function<Contact()> insert;
    QList<Contact> contacts;
};
