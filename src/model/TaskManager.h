#pragma once

#include "model/EarlierTasks.h"
#include "model/TaskHistory.h"

#include <functional>

class ColorWell;
class Preferences;
class QWidget;
class TextView;

/// Owns the user's tasks while the program runs: the list, the view that is shown, the search and the
/// selection. Only its own operations change them.
///
/// The operations on the selected task work on the working list: `backupTasks` during a search, else `tasks`.
/// They do nothing when `selected` addresses no entry. Used on the main thread only.
class TaskManager
{
public:
    explicit TaskManager(Preferences &preferences);
    TaskManager(const TaskManager &) = delete;
    TaskManager &operator=(const TaskManager &) = delete;

    /// The one manager of the running program, made on the first call.
    static TaskManager &shared();

    /// The master list in the user's order; during a search its matching tasks.
    const TaskList &tasks() const { return allOrFound; }
    /// What the chosen view shows of `tasks`.
    const TaskList &tasksInView() const { return shownTasks; }
    /// During a search the master list; otherwise a stale copy of it.
    const TaskList &backupTasks() const { return setAsideTasks; }
    /// The list that holds every task, also during a search.
    const TaskList &workingList() const { return searching ? setAsideTasks : allOrFound; }
    /// How often the working list has been changed so far, for whoever keeps something that follows from it.
    qint64 changeCount() const { return changes; }
    /// How often the whole list has been replaced.
    qint64 loadCount() const { return loads; }
    /// Index in the working list, or −1.
    qint64 selected() const { return selectedIndex; }
    bool isSearching() const { return searching; }
    /// The text of the active or last search.
    const QString &searchTerm() const { return searchedText; }

    qint64 defaultStartHour = 8;
    qint64 defaultStartMin = 0;
    qint64 defaultEndHour = 17;
    qint64 defaultEndMin = 0;
    QString lastMessage; ///< the cloud's last outcome, for the status line
    Preferences &defaults;

    /// Appends a task to the working list. An empty key is replaced by a new one. Returns the task's key. The
    /// default times follow the task's.
    QString addTask(const task &added);
    /// Replaces everything but key and hidden flag of the selected task. The default times follow in any
    /// case.
    void editSelectedTask(const task &edited);
    /// The same, while the selected task as it was becomes a task of its own.
    void editSelectedTaskKeepingOld(const task &edited);
    /// Replaces the whole list by the tasks that the call adds. An active search is applied to them, and the
    /// same task stays selected.
    void load(const std::function<void()> &addTasks);
    /// Takes the stale copy of the list anew, as after loading it.
    void setListAside() { setAsideTasks = allOrFound; }
    /// Replaces every task's colour by its inverse.
    void invertColors();
    /// Says which appearance the colours are held for, after they were read.
    void setColorsInverted(bool inverted) { taskHistory.setInverted(inverted, workingList()); }

    /// What can be undone: the changes of the list but for what is read from its file.
    TaskHistory &history() { return taskHistory; }
    /// What was changed since the last call is one step.
    void endStep() { taskHistory.endStep(workingList(), sortOrder); }
    /// Takes back the last step, or makes it again; what has become of the list, or nothing. The same task
    /// stays selected if it is still there.
    std::optional<TaskStep> undo();
    std::optional<TaskStep> redo();
    /// Replaces the whole list by another in one step. \param stepName  "Undo " stands before it
    void replaceList(const TaskList &list, const QString &stepName);

    // The same with a task in single values.
    QString addTask(const QString &key, Instant date, const QString &name, const QString &desc,
                    const Color &color, Instant due, qint64 status, qint64 priority,
                    const QString &statusName, const QString &priorityName, bool hidden, qint64 startHour,
                    qint64 startMin, qint64 endHour, qint64 endMin, const QString &client,
                    const QString &teamMember);
    void editSelectedTask(Instant date, const QString &name, const QString &desc, const Color &color,
                          Instant due, qint64 status, qint64 priority, const QString &statusName,
                          const QString &priorityName, qint64 startHour, qint64 startMin, qint64 endHour,
                          qint64 endMin, const QString &client, const QString &teamMember);

    /// Selects the task at this index of the working list; −1 for none.
    void select(qint64 index) { selectedIndex = index; }
    /// Selects the last task of the working list with this key and returns its index, or −1.
    qint64 selectTaskByKey(const QString &key);
    /// Selects the task with this key unless it is the selected one: while a dialog about it is open, a merge
    /// may select others.
    void selectAgain(const QString &key);
    /// A copy of the selected task, or a blank one.
    task selectedTask() const;
    /// What stands for a task where there is none: of today, at the default times, for nobody.
    task blankTask() const;
    void deleteSelectedTask();
    void hideSelectedTask();
    void unhideSelectedTask();
    bool isSelectedTaskHidden() const;
    void closeSelectedTask();
    /// Adds a copy of the selected task under a new key.
    void cloneSelectedTask();
    /// Exchanges the selected task of `tasks` with the one above or below it; `selected` keeps its value.
    void moveSelectedTask(bool up);

    /// Puts the selected task of `tasks` at this index, which is one of the list; `selected` keeps its value.
    void moveSelectedTaskTo(qint64 index);

    /// Opens the menu of sharing services for the selected task's text next to the anchor, as soon as the
    /// present event has been handled.
    void shareSelectedTask(QWidget &anchor) const;

    /// The colours of a task that is not there yet: the well as the appearance's ground, the text against it.
    void resetColorWell(ColorWell &well, TextView &text) const;
    /// Takes the well's colour over into the other appearance, and the text's colour with it.
    void invertColorWell(ColorWell &well, TextView &text) const;

    /// Fills `tasksInView` with what the view at this position of the view chooser shows.
    void buildTasksInView(int view);

    /// Narrows `tasks` to those of the master list that hold the text.
    void startSearch(const QString &text);
    /// Brings the master list back to `tasks`.
    void endSearch();
    /// Applies an active search again, after a change of the master list.
    void refreshSearch();

    /// Sorts `tasks` by the descriptor's column; a key that names no column changes nothing.
    void sortByColumn(const SortDescriptor &descriptor);
    /// What the list was last sorted by; nothing once a task was moved.
    const std::optional<SortDescriptor> &sortedBy() const { return sortOrder; }

private:
    bool isSelectedIn(const TaskList &list) const
    {
        return selectedIndex >= 0 && selectedIndex < list.size();
    }
    /// Every change of the list passes here before it is made.
    /// \param verb   what the step does
    /// \param about  the one task it does that to
    void willChange(const QString &verb, const task *about = nullptr, bool isDelete = false);
    /// The working list for changing it.
    TaskList &changedList(const QString &verb, const task &about, bool isDelete = false);
    void endSteps();
    std::optional<TaskStep> apply(std::optional<TaskStep> step);
    void setSelectedHidden(bool hidden);
    void followDefaultTimes(const task &last);

    TaskList allOrFound;
    TaskList shownTasks;
    TaskList setAsideTasks;
    qint64 selectedIndex = -1;
    qint64 changes = 0;
    qint64 loads = 0;
    bool searching = false;
    std::optional<EarlierTasks> earlier; ///< while the list is read anew
    QString searchedText;
    std::optional<SortDescriptor> sortOrder;
    TaskHistory taskHistory;
};
