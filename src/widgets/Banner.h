#pragma once

#include <QFrame>
#include <QList>

#include <functional>

class QBoxLayout;
class QLabel;

/// A message at the top of a window, which stays there until what it tells of is over or the user has dealt
/// with it. It stops nobody from working.
class Banner : public QFrame
{
    Q_OBJECT

public:
    struct Choice
    {
        QString text; ///< of its button
        std::function<void()> action;
    };

    explicit Banner(QWidget *parent);

    /// Shows the message, instead of one that is shown, with a button for each choice. Choices with the same
    /// texts as before have to do the same as before.
    void tell(const QString &message, const QList<Choice> &choices);
    void withdraw();

private:
    QLabel *message;
    QBoxLayout *buttons;
    QStringList shownTexts; ///< of the buttons
};
