#pragma once

#include <QLineEdit>
#include <QPointer>

class QLabel;

/// A text field that can be marked as wrong: with a red frame, and a sentence below it that says what to do.
/// The mark goes when the text changes and when the field is hidden.
class MarkedField : public QLineEdit
{
    Q_OBJECT

public:
    explicit MarkedField(QWidget *parent = nullptr);

    /// Marks the field, selects its text and gives it the focus.
    void mark(const QString &explanation);
    void unmark();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void placeNote();

    QPointer<QLabel> note; ///< the sentence; there while the field is marked
};
