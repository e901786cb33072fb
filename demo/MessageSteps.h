#pragma once

#include <QDate>
#include <QString>

class Desktop;
class ExpectedList;
class HttpsServer;
class MainWindowHandle;
class QDialog;
class Stage;

/// The steps in which the gateway's account is set up and people are sent their schedules.
class MessageSteps
{
public:
    /// \param gateway  what the program takes for the gateway
    MessageSteps(Stage &stage, const MainWindowHandle &main, const ExpectedList &expected, Desktop &desktop,
                 const HttpsServer &gateway, QDate today);

    void setUpAccount();
    void sendToClients(const QString &client, const QString &phoneNo);
    void sendToTeamMembers(const QString &teamMember, const QString &phoneNo);

private:
    QDialog &openScreen();
    QStringList scheduleOf(const QString &person, int field, const QString &heading) const;
    void checkReceived(const QString &phoneNo, const QStringList &messages);

    Stage &stage;
    const MainWindowHandle &main;
    const ExpectedList &expected;
    Desktop &desktop;
    const HttpsServer &gateway;
    QDate firstDay;
    QDate lastDay;
    qsizetype checkedRequests = 0;
};
