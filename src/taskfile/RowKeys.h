#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringView>
#include <QUuid>

#include <optional>

class TaskRowReader;

/// Gives keys to the rows of one reading of the task list file that have none.
class RowKeys
{
public:
    /// \param run   of the program
    /// \param text  all rows; has to outlive this
    RowKeys(const QUuid &run, QStringView text, char16_t rowSeparator)
        : ofRun(run)
        , allRows(text)
        , separator(rowSeparator)
    {
    }

    /// A key that no other row has. As long as the program runs it is the same whenever the row is read
    /// again, for whoever still has to do with that task.
    QString keyFor(QStringView row, const TaskRowReader &reader);

private:
    bool isTaken(const QString &key, const TaskRowReader &reader);

    QUuid ofRun;
    QStringView allRows;
    QChar separator;
    QHash<QUuid, qint64> rowsAlike; ///< how many keys a row has been given, or could not be
    std::optional<QSet<QString>> filedKeys;
};
