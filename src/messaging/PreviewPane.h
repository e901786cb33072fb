#pragma once

#include "messaging/PreviewTable.h"

#include <QWidget>

class QLabel;
class QPlainTextEdit;
class QTableView;

/// Shows what would be sent: the messages, one of them in full, and how many they are.
class PreviewPane : public QWidget
{
    Q_OBJECT

public:
    explicit PreviewPane(QWidget *parent = nullptr);

    /// \param warnings  sentences that are to be seen before anything is sent
    void show(std::vector<SchedulePreview> previews, const QStringList &warnings);

private:
    void showMessage(int row);

    PreviewTable messages;
    QLabel *warning;
    QTableView *table;
    QPlainTextEdit *whole; ///< the message of the current row
    QLabel *remark;
    QLabel *sum;
};
