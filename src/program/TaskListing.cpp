#include "program/TaskListing.h"

#include "model/TaskColumn.h"
#include "model/TaskManager.h"
#include "platform/Calendar.h"
#include "platform/Diagnostics.h"
#include "platform/FileDescriptor.h"
#include "platform/Preferences.h"
#include "platform/ProtectedFile.h"
#include "taskfile/TaskListFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

int complain(const QString &sentence)
{
    QTextStream(stderr) << u"quorvane: "_s + sentence + u'\n';
    return EXIT_FAILURE;
}

QString systemText()
{
    return QString::fromStdString(std::generic_category().message(errno));
}

/// The cell's text on one line, without what a terminal would obey.
QString cell(const task &entry, const TaskColumnInfo &column)
{
    QString text = column.cellText(entry);
    for (QChar &character : text)
        if (character.category() == QChar::Other_Control)
            character = u' ';
    return text.simplified();
}

QByteArray asText(const TaskList &tasks)
{
    QList<QStringList> columns;
    for (const TaskColumnInfo &column : taskColumns()) {
        if (column.column == TaskColumn::Key)
            continue;
        QStringList cells{column.title};
        for (const SharedTask &entry : tasks)
            cells << cell(*entry, column);
        qsizetype width = 0;
        for (const QString &text : cells)
            width = std::max(width, text.size());
        for (QString &text : cells)
            text = text.leftJustified(width);
        columns << cells;
    }
    QByteArray lines;
    for (qsizetype row = 0; row <= tasks.size(); ++row) {
        QString line;
        for (const QStringList &cells : columns)
            line += cells[row] + u"  "_s;
        lines += line.trimmed().toUtf8() + '\n';
    }
    return lines;
}

QString isoDay(Instant instant)
{
    return Calendar::localTime(instant).date().toString(Qt::ISODate);
}

QByteArray asJson(const TaskList &tasks)
{
    QJsonArray array;
    for (const SharedTask &entry : tasks)
        array.append(QJsonObject{
            {u"key"_s, entry->key},
            {u"startDate"_s, isoDay(entry->date)},
            {u"startTime"_s, clockTime(entry->startHour, entry->startMin)},
            {u"endTime"_s, clockTime(entry->endHour, entry->endMin)},
            {u"task"_s, entry->name},
            {u"description"_s, entry->desc},
            {u"client"_s, entry->client},
            {u"teamMember"_s, entry->teamMember},
            {u"status"_s, entry->statusName},
            {u"priority"_s, entry->priorityName},
            {u"dueDate"_s, isoDay(entry->due)},
            {u"hidden"_s, entry->hidden},
        });
    return QJsonDocument(array).toJson();
}

} // namespace

TaskListing::TaskListing(const QString &documentsFolder, const QString &stateFolder)
    : documents(documentsFolder)
    , state(stateFolder)
{
}

int TaskListing::print(int view, Form form) const
{
    const diagnostics::Silence silence;
    if (documents.isEmpty())
        return complain(u"The desktop names no documents folder, where the task list would be."_s);
    const QString path = TaskListFile::pathIn(documents);
    const std::optional<QByteArray> content = ProtectedFile::peek(path, state);
    if (!content)
        return complain(u"The task list \"%1\" cannot be read: %2."_s.arg(path, systemText()));
    if (!content->isValidUtf8())
        return complain(u"The task list \"%1\" cannot be read: it is not UTF-8 text."_s.arg(path));
    TaskManager manager(Preferences::standard());
    TaskListFile file(manager, {}, {}); // which only takes the text apart
    file.parseFile(QString::fromUtf8(*content));
    manager.buildTasksInView(view);
    const TaskList &tasks = manager.tasksInView();
    if (!writeFully(STDOUT_FILENO, form == Form::Json ? asJson(tasks) : asText(tasks)))
        return errno == EPIPE ? EXIT_FAILURE
                              : complain(u"The tasks could not be written: %1."_s.arg(systemText()));
    if (file.skippedRows() > 0)
        return complain(u"Rows of the task list \"%2\" that cannot be read and are missing here: %1."_s.arg(
            QString::number(file.skippedRows()), path));
    return EXIT_SUCCESS;
}
