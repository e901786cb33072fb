#pragma once

#include <QString>

class Gateway;
class Tour;
struct Person;

// The steps, in the order in which they are gone.

// The list, looked at.
void openWindow(Tour &tour);
void pickEveryView(Tour &tour);
void search(Tour &tour);
void sortByName(Tour &tour);
void selectTask(Tour &tour);

// The commands on a selected task.
void hideAndUnhide(Tour &tour);
void move(Tour &tour);
void moveInAnotherView(Tour &tour);
void cloneTask(Tour &tour);
void closeTask(Tour &tour);
void undoAndRedo(Tour &tour);

// People, and a task for them.
void addClient(Tour &tour, const Person &client);
void addTeamMember(Tour &tour, const Person &teamMember);
void addTask(Tour &tour, const Person &client, const Person &teamMember);
void editTask(Tour &tour);
void shareTask(Tour &tour);

// Messages.
void setUpAccount(Tour &tour);
void lookAtNumbers(Tour &tour, const Person &teamMember);
void textClient(Tour &tour, Gateway &gateway, const Person &client);
void textTeamMember(Tour &tour, Gateway &gateway, const Person &teamMember);
void lookAtReport(Tour &tour);
void lookAtSentMessages(Tour &tour, const Gateway &gateway, const Person &client);

// Tools.
void writeNotes(Tour &tour);
void drawOnWhiteboard(Tour &tour);
void readGuide(Tour &tour);

// Appearance.
void switchToDarkAndBack(Tour &tour);

// Earlier versions.
void bringBackTask(Tour &tour);

// The cloud.
void copyToCloud(Tour &tour);
/// A local change is overwritten by what the cloud has.
void updateFromCloud(Tour &tour);
void deleteTask(Tour &tour);
/// \param other  shows the window of the same user on another machine, with an empty list
void receiveElsewhere(Tour &other);

// The end, and the next start.
void closeWindow(Tour &tour);
void openAgain(Tour &tour);
