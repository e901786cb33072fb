#pragma once

#include "model/task.h"
#include "taskfile/RowDates.h"

#include <QHash>
#include <QList>
#include <QStringView>

#include <optional>

/// Reads rows of the task list file, those of earlier versions included: they are told apart by their number
/// of fields.
class TaskRowReader
{
public:
    TaskRowReader(char16_t fieldSeparator, char16_t rowSeparator);

    static constexpr qsizetype fullRow = 20; ///< the number of fields of a row as it is written today

    /// Start and end of a working day.
    struct Times
    {
        qint64 startHour, startMin, endHour, endMin;
    };

    /// The task of one row, its colour as stored.
    /// \param times  of a row that has none
    /// \return nothing when the row cannot be taken; `problem` then says why. A row without a key gives an
    /// empty one.
    std::optional<task> read(QStringView row, const Times &times);

    /// The key that a row gives, as it stands there, without reading the rest; empty for none.
    QStringView keyOf(QStringView row) const;
    /// The fields of the row last read.
    const QList<QStringView> &fields() const { return rowFields; }
    /// Why the row last read could not be taken.
    const char *problem() const { return reason; }
    /// True when the row last read holds more fields than are taken from it.
    bool leavesFieldsOut() const { return rowFields.size() > fullRow; }

private:
    void split(QStringView row);
    bool readDates(task &entry);
    bool readNumbers(task &entry);
    void readTexts(task &entry);
    QString textOf(QStringView field) const;
    QString commonText(QStringView field);

    char16_t fieldSeparator;
    char16_t rowSeparator;
    QList<QStringView> rowFields;
    const char *reason = nullptr;
    RowDates dates;
    /// Texts that many tasks share; each key is a view of its own value.
    QHash<QStringView, QString> commonTexts;
};
