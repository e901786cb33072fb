#pragma once

#include "platform/Calendar.h"
#include "platform/Color.h"

#include <QByteArray>
#include <QList>
#include <QSharedData>
#include <QString>

/// One piece of work. A plain value; two tasks are the same task when their keys are equal.
struct task
{
    QString key = {};          ///< random UUID (RFC 4122, version 4) in upper case, 36 characters
    Instant date = {};         ///< start date; only its calendar day is shown and filed
    QString name = {};         ///< short title
    QString desc = {};         ///< free description, may hold line breaks
    QString client = {};       ///< name of the client the task is for
    QString teamMember = {};   ///< name of the team member who does it
    Color color = {};          ///< as held in memory: inverted while the appearance is dark
    Instant due = {};          ///< due date; only its calendar day is shown and filed
    qint64 status = 0;         ///< position in the status list, 0 open, 1 closed, −1 none chosen
    qint64 priority = 0;       ///< position in the priority list, −1 none chosen
    QString statusName = {};   ///< the status as text
    QString priorityName = {}; ///< the priority as text
    bool hidden = false;       ///< left out of most views
    qint64 startHour = 0;      ///< 0…23
    qint64 startMin = 0;       ///< 0…59
    qint64 endHour = 0;        ///< 0…23
    qint64 endMin = 0;         ///< 0…59

    /// Whether both are the same task, whatever else is in them.
    bool operator==(const task &other) const { return key == other.key; }
};

/// Whether all that is in the two tasks is equal, and not only their keys.
bool haveEqualFields(const task &a, const task &b);

/// A random UUID (RFC 4122, version 4) in upper case, as keys and record names are.
QString newKey();

/// A task as the lists hold it. The lists are copied, filtered and sorted all the time and tasks seldom
/// change, so copies share one value until one of them is edited.
class SharedTask
{
public:
    explicit(false) SharedTask(task value)
        : data(new Data(std::move(value)))
    {
    }

    const task &operator*() const { return *data; }
    const task *operator->() const { return data.constData(); }
    /// The value for changing; from then on it is this copy's own.
    task &edit() { return *data; }

private:
    struct Data : QSharedData, task
    {
        explicit Data(task &&value)
            : task(std::move(value))
        {
        }
    };
    QSharedDataPointer<Data> data;
};
Q_DECLARE_TYPEINFO(SharedTask, Q_RELOCATABLE_TYPE);

using TaskList = QList<SharedTask>;

/// A status that the program itself relies on.
namespace taskStatus {
inline constexpr qint64 open = 0;
inline constexpr qint64 closed = 1;
inline const QString closedName = QStringLiteral("Closed");
} // namespace taskStatus

/// In a diagnostic line, a task is written as its key and name.
void appendItem(QByteArray &line, const task &entry);
/// In a diagnostic line, a list of tasks is written as the tasks' keys in brackets.
void appendItem(QByteArray &line, const TaskList &tasks);
