#pragma once

#include "contacts/Contact.h"
#include "contacts/ContactMarks.h"

#include <QAbstractTableModel>
#include <QSet>
#include <QUndoStack>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

/// The contacts of one kind as an editable table of names and phone numbers. Whatever is done to it can be
/// taken back.
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

    /// Marks from now on what is remarkable about the contacts. The numbers have to outlive the table.
    void check(NumberCheck &numbers);
    /// Shows in a further column what is said of each contact; its tool tip tells more.
    struct Further
    {
        QString title;
        std::function<QString(const Contact &contact)> summary;
        std::function<QString(const Contact &contact)> sentence;
    };
    void addColumn(Further column);
    /// What that column says has changed.
    void refreshColumn();
    /// Marks the contacts with numbers whose owners have asked for no more texts. The contacts have to be
    /// checked already.
    void setDeclined(const QSet<QString> &numbers);
    bool isDeclined(int row) const { return declinedRows().contains(row); }
    const QSet<int> &declinedRows() const { return marks->declinedRows(); }
    /// The numbers that were declined and are this contact's, as they were written then.
    QStringList declinedNumbers(int row) const { return marks->declinedNumbers(row); }

    /// What is remarkable about the contact in this row, in sentences.
    QString remark(int row) const;
    /// The contact's number as it should be written; empty when it is right, or when that is not known.
    QString correctedNumber(int row) const;
    /// Writes the number as it should be; false when that is no longer what the caller has been told.
    bool correctNumber(int row, const QString &corrected);

    /// Fills it anew from the same context. What was done before can no longer be taken back.
    void reload();
    /// Adds a contact at the end and returns its row.
    int add();
    /// Removes the rows; they may come in any order.
    void remove(QList<int> rows);

    /// Takes back the step behind which there are so many, with what was done since left as it is. A step
    /// that removes contacts, since which none was removed.
    void takeBackRemoval(int stepCount);

    /// A step that has removed contacts, or the taking back of which was taken back.
    struct Removal
    {
        int stepCount; ///< behind the step
        QString text;  ///< tells of it
    };
    /// The removal by which the number of steps that are done has become another; nothing for anything else.
    std::optional<Removal> removalBetween(int earlierCount, int count) const;

    /// What was done.
    QUndoStack &steps() { return doneSteps; }

    const Contact &contact(int row) const { return contacts[row]; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

signals:
    /// A contact in this row was added, brought back or changed; the first one of several.
    void touched(int row);

private:
    /// Contacts by the row in which they are, in the order of the rows.
    using Rows = QList<std::pair<int, Contact>>;

    void fill(ObjectContext &ofScreen, const FetchRequest &request, std::function<Contact()> insertion);
    void insert(const Rows &rows);
    void take(const Rows &rows);
    void forgetMarks();
    void setText(int row, Contact::Attribute attribute, const std::optional<QString> &text);

    ObjectContext *context = nullptr;
    const Entity *entity = nullptr;
    std::function<Contact()> create;
    QList<Contact> contacts;
    std::unique_ptr<ContactMarks> marks; ///< none as long as nothing is checked
    std::optional<Further> further;
    QUndoStack doneSteps;
};
