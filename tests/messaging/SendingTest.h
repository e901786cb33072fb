#pragma once

#include <QObject>

class SendingTest : public QObject
{
    Q_OBJECT

private slots:
    void buttonsNeedAnAccount_data();
    void buttonsNeedAnAccount();
    void selectsAllOrNone();
    void sendsSchedulesInTheOrderOfTheRows();
    void linesOfARun_data();
    void linesOfARun();
    void runsWithNothingToSend();
    void endsOnce();
    void settingsChangedInTheMiddle();
    void closingTheScreenDoesNotEndTheRun();
    void endOfTheProgramEndsTheRun();
    void runsThatOverlap();
    void monitorDoesNotFloodTheMainThread();
};
