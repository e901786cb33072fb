#include "contacts/ContactTableView.h"

#include "contacts/ContactTable.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QInputMethod>
#include <QLineEdit>
#include <QShortcut>
#include <QStyledItemDelegate>

using namespace Qt::StringLiterals;

namespace {

/// A cell that was opened and left without typing stays as it was: an absent text does not become an empty
/// one.
class ContactDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &,
                          const QModelIndex &index) const override
    {
        auto *field = new QLineEdit(parent);
        field->setFrame(false);
        field->setAutoFillBackground(true);
        field->setObjectName(index.column() == int(Contact::Name) ? u"nameField"_s : u"phoneNoField"_s);
        return field;
    }

    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override
    {
        if (static_cast<QLineEdit *>(editor)->isModified())
            QStyledItemDelegate::setModelData(editor, model, index);
    }
};

} // namespace

void ContactTableView::setTable(ContactTable &table)
{
    contacts = &table;
    setModel(contacts);
    setItemDelegate(new ContactDelegate(this));
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    connect(new QShortcut(Qt::Key_Delete, this, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated,
            this, &ContactTableView::removeSelected);
    connect(contacts, &ContactTable::touched, this, [this](int row) {
        if (state() != EditingState)
            setCurrentIndex(contacts->index(row, std::max(currentIndex().column(), 0)));
    });
}

void ContactTableView::addContact()
{
    endEditing();
    const QModelIndex name = contacts->index(contacts->add(), int(Contact::Name));
    setCurrentIndex(name);
    scrollTo(name);
    edit(name);
}

void ContactTableView::removeSelected()
{
    endEditing();
    QList<int> rows;
    for (const QModelIndex &index : selectionModel()->selectedRows())
        rows.append(index.row());
    contacts->remove(rows);
}

void ContactTableView::endEditing()
{
    QGuiApplication::inputMethod()->commit();
    if (QWidget *editor = indexWidget(currentIndex())) {
        commitData(editor);
        closeEditor(editor, QAbstractItemDelegate::NoHint);
    }
}

void ContactTableView::commitData(QWidget *editor)
{
    RowTableView::commitData(editor);
    if (editor->objectName() == u"nameField")
        emit nameEdited(editor);
}
