#pragma once

#include "versions/VersionFile.h"
#include "versions/VersionTable.h"
#include "widgets/Screen.h"

#include <functional>
#include <memory>

class NotificationCenter;
class TaskManager;
class VersionStore;

namespace Ui {
class ViewControllerVersions;
}

/// Lists the earlier versions of the task list, shows one of them beside today's list, and brings back tasks
/// of it or all of it. What may take time is done on other threads.
class ViewControllerVersions : public Screen
{
    Q_OBJECT

public:
    struct Services
    {
        TaskManager &manager; ///< of today's list
        VersionStore &store;
        NotificationCenter &systemNotices;
        /// Makes this the list, as one step of that name.
        std::function<void(const TaskList &list, const QString &stepName)> bringBack;
    };

    explicit ViewControllerVersions(const Services &services, QWidget *parent = nullptr);
    ~ViewControllerVersions() override;

protected:
    void changeEvent(QEvent *event) override;

private:
    struct Loaded
    {
        bool isReadable = false;
        ComparedVersion version = {};
    };

    void connectActions();
    void loadListing();
    void showListing(const versionFile::Listing &listing);
    void loadChosen();
    void showLoaded(const Version &version, const Loaded &loaded);
    void showRows();
    void showChoices();
    QList<ComparedVersion::Row> chosenRows() const;
    void bringBackTasks();
    void bringBackList();
    void bringBack(const TaskList &list, const QString &stepName);

    std::unique_ptr<Ui::ViewControllerVersions> ui;
    Services services;
    VersionTable table;
    Version shown;          ///< the one in the table; its number is 0 for none
    qint64 comparedAt = -1; ///< the manager's count of changes for which it is compared
    int listingsAsked = 0;  ///< only the last answer counts
    int versionsAsked = 0;
};
