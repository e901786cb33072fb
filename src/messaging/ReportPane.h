#pragma once

#include "journal/SentMessage.h"

#include <QWidget>

#include <vector>

class QCheckBox;
class QLabel;
class QPushButton;
class QTableView;
class RunReport;

/// Shows what becomes of the messages of a run, and offers what can be done about them.
class ReportPane : public QWidget
{
    Q_OBJECT

public:
    explicit ReportPane(QWidget *parent = nullptr);

    /// \param report  null for none \return false when it is shown already
    bool show(RunReport *report);
    /// Whether messages may be sent again now.
    void setMaySend(bool isOn);

signals:
    void sendAgainWanted(const std::vector<SentMessage> &messages);
    /// What has become of the messages at the phones is to be asked of the gateway.
    void deliveryWanted();

private:
    void connectActions();
    void update();
    std::vector<int> chosenRows() const;
    std::vector<SentMessage> messagesToSend() const;
    void copy();
    void saveAsCsv();

    RunReport *report = nullptr;
    bool maySend = false;
    QCheckBox *problemsOnly;
    QTableView *table;
    QLabel *state; ///< of the current row, in full
    QLabel *sum;
    QLabel *news;
    QPushButton *copyButton;
    QPushButton *saveButton;
    QPushButton *againButton;
    QPushButton *deliveryButton;
};
