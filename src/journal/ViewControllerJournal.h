#pragma once

#include "journal/JournalTable.h"
#include "widgets/Screen.h"

#include <QTimer>

#include <memory>

class Banner;
class MessageJournal;

namespace Ui {
class ViewControllerJournal;
}

/// Lists the messages of the journal, finds some of them by day, person and words, shows the whole of one,
/// and forgets what went to a person or everything.
class ViewControllerJournal : public Screen
{
    Q_OBJECT

public:
    /// \param journal  has to outlive the screen
    explicit ViewControllerJournal(MessageJournal &journal, QWidget *parent = nullptr);
    ~ViewControllerJournal() override;

signals:
    /// Somebody would like to send messages.
    void messagesWanted();

protected:
    void changeEvent(QEvent *event) override;

private:
    void connectActions();
    void refresh();
    void fillFilters();
    void showFound();
    bool isNarrowed() const;
    void leaveEmpty();
    void showEmpty();
    void showCurrent();
    void showChoices();
    void showProblem(const QString &problem);
    SentMessage current() const;
    void copyCurrent();
    void forgetPerson();
    void forgetAll();
    void forget(const QString &question, const QString &person);

    std::unique_ptr<Ui::ViewControllerJournal> ui;
    MessageJournal &journal;
    JournalTable table;
    QTimer refreshDelay; ///< gathers what is written while messages are sent
    Banner *problemBanner;
    Banner *newsBanner;
    qint64 currentIdentifier = 0;   ///< of the message that is shown; 0 for none
    std::pair<int, int> shownStamp; ///< of the store when all was read
    bool isForgetting = false;
};
