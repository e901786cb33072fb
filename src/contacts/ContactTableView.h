#pragma once

#include "widgets/RowTableView.h"

class ContactTable;

/// Shows a table of contacts, whose cells are edited in place.
class ContactTableView : public RowTableView
{
    Q_OBJECT

public:
    using RowTableView::RowTableView;

    void setTable(ContactTable &table);

    /// Adds a contact and lets the user type its name.
    void addContact();
    /// Removes the selected contacts, if any.
    void removeSelected();
    /// Takes what is being typed into the table.
    void endEditing();

signals:
    /// A name was typed in; `nameField` is the cell's text field.
    void nameEdited(QObject *nameField);

protected:
    void commitData(QWidget *editor) override;

private:
    ContactTable *contacts = nullptr;
};
