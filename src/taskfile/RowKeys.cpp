#include "taskfile/RowKeys.h"

#include "taskfile/TaskRowReader.h"

QString RowKeys::keyFor(QStringView row, const TaskRowReader &reader)
{
    const QUuid ofRow = QUuid::createUuidV5(ofRun, row.toUtf8());
    qint64 &count = rowsAlike[ofRow];
    QString text;
    do {
        QUuid key = QUuid::createUuidV5(ofRow, QByteArray::number(count++));
        key.data3 = (key.data3 & 0x0fff) | 0x4000; // as random as the run's, and marked like any other key
        text = key.toString(QUuid::WithoutBraces).toUpper();
    } while (isTaken(text, reader));
    return text;
}

/// By a row that was filed with the key that it had been given, while the same row came in without one again.
bool RowKeys::isTaken(const QString &key, const TaskRowReader &reader)
{
    if (!filedKeys) {
        filedKeys.emplace();
        for (const QStringView row : allRows.tokenize(separator))
            filedKeys->insert(reader.keyOf(row).toString());
    }
    return filedKeys->contains(key);
}
