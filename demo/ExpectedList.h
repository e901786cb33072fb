#pragma once

#include "model/TaskView.h"

#include <QDate>
#include <QStringList>

/// One row of a task list file, as the texts between its separators.
struct ListRow
{
    /// The fields by their position.
    enum Field {
        Date,
        Name,
        Desc,
        Red,
        Green,
        Blue,
        Alpha,
        Due,
        Status,
        StatusName = 10,
        Key = 12,
        Hidden,
        Client = 18,
        TeamMember
    };
    static constexpr qsizetype fullRow = 20;

    QStringList fields;

    QString field(Field position) const { return fields.value(position); }
    bool isHidden() const { return field(Hidden) == QLatin1StringView("true"); }
    bool isOpen() const { return field(Status) == QLatin1StringView("0"); }
};

/// What the task list should hold: the rows of the file as the tour found it, changed in step with the
/// program.
///
/// Reads the file without the program's own reader, so that each can be held against the other.
class ExpectedList
{
public:
    static QList<ListRow> readRows(const QString &filePath);

    ExpectedList(const QString &filePath, QDate today);

    QList<ListRow> rows;

    /// The row of the first task of this name.
    ListRow &row(const QString &name);
    void setHidden(const QString &name, bool hidden);
    void remove(const QString &name);
    /// The sorted names of the tasks that the view should show.
    QStringList namesIn(TaskView view) const { return namesHolding({}, view); }
    /// Those of them that hold the text, whatever its case.
    QStringList namesHolding(const QString &text, TaskView view) const;

private:
    bool isIn(TaskView view, const ListRow &row) const;

    QString today;
};
