#pragma once

#include "contacts/Contact.h"

#include <QHash>
#include <QIcon>
#include <QList>
#include <QSet>
#include <QVariant>

class NumberCheck;

/// What is remarkable about the contacts of a list: a number to which no text will go, none at all, and a
/// name or a number that two of them have. Found out for those only that are asked for.
class ContactMarks
{
public:
    /// Both have to outlive the marks.
    ContactMarks(const QList<Contact> &contacts, NumberCheck &numbers);

    /// The numbers whose owners have asked for no more texts, however they are written.
    void setDeclined(const QSet<QString> &numbers);
    const QSet<QString> &declinedNumbers() const { return declined; }
    /// Those of them that are the contact's.
    QStringList declinedNumbers(int row);
    const QSet<int> &declinedRows();

    /// The list, or what its contacts are, has changed.
    void forget();

    /// Sentences about the contact's name or number; empty when there is nothing remarkable.
    QString remark(int row, Contact::Attribute attribute);
    /// The number as it should be written; empty when it is right, or when that is not known.
    QString correctedNumber(int row) const;
    /// How the cell looks that shows the contact's name or number, beyond its text.
    QVariant data(int row, Contact::Attribute attribute, int role);

private:
    using Groups = QHash<QString, QList<int>>; ///< rows in ascending order

    void group();
    QString numberIdentity(int row) const;
    /// Which other contact of the row's group there is; empty when there is none.
    QString another(const Groups &groups, const QString &key, int row) const;

    const QList<Contact> &contacts;
    NumberCheck &numbers;
    QSet<QString> declined;
    QSet<int> rowsOfDeclined;
    QIcon icon;
    bool isGrouped = false;
    Groups ofName;      ///< as by `matchedName`
    Groups ofNumberEnd; ///< by their last digits; numbers of different ends are not the same
    Groups ofNumber;    ///< those of one end that several have
};
