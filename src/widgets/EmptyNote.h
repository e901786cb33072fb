#pragma once

#include <QFrame>

class QAbstractItemView;
class QLabel;
class QPushButton;

/// Stands in a table as long as it has no rows: what the table is for, and a first step.
class EmptyNote : public QFrame
{
    Q_OBJECT

public:
    /// \param view  has its model already
    explicit EmptyNote(QAbstractItemView &view);

    /// \param sentence  what the table is for, or why nothing stands in it
    /// \param step      the text of the button; none where it is empty
    void tell(const QString &sentence, const QString &step = {});

signals:
    /// The button was pressed.
    void stepTaken();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void follow();

    QAbstractItemView &view;
    QLabel *sentence;
    QPushButton *step;
};
