#pragma once

#include <QString>

class Desktop;
class MainWindowHandle;
class QDialog;
class Stage;

/// The steps in which clients and team members are kept.
class ContactSteps
{
public:
    ContactSteps(Stage &stage, const MainWindowHandle &main, Desktop &desktop);

    void addClient(const QString &name, const QString &phoneNo);
    void addTeamMember(const QString &name, const QString &phoneNo);

private:
    QDialog &open(const QString &menuEntry, const QString &screen);
    void add(const QString &menuEntry, const QString &screen, const QString &name, const QString &phoneNo);

    Stage &stage;
    const MainWindowHandle &main;
    Desktop &desktop;
};
