#pragma once

#include <QObject>

class MessagingTest : public QObject
{
    Q_OBJECT

private slots:
    void settingsAreKept();
    void tasksOfARecipient_data();
    void tasksOfARecipient();
    void namesBeyondAsciiAndEmptyOnes();
    void messageTexts();
};
