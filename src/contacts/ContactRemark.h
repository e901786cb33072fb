#pragma once

#include <QBoxLayout>
#include <QTimer>
#include <QWidget>

class ContactTable;
class QLabel;
class QPushButton;
class QTableView;

/// Says below a table of contacts what is remarkable about the current one, and offers to put its number
/// right. It comes up with the first remark and keeps its place then.
class ContactRemark : public QWidget
{
    Q_OBJECT

public:
    /// \param view       shows the contacts; both have to outlive this
    /// \param direction  from the sentences to the button
    ContactRemark(QTableView &view, const ContactTable &contacts, QBoxLayout::Direction direction,
                  QWidget *parent);

signals:
    /// The number of the contact in this row is to be written so.
    void correctionWanted(int row, const QString &number);
    /// The contact in this row, who has asked for no more messages, is to be sent some all the same.
    void anotherTryWanted(int row);

private:
    void connectActions();
    void showRemark();

    QTableView &view;
    const ContactTable &contacts;
    QLabel *sentences;
    QPushButton *correct;
    QPushButton *tryAgain;
    QString offered; ///< the number on the button
    QTimer delay;    ///< several changes at once are one
};
