#pragma once

#include "gateway/MessageFeed.h"

#include <QAbstractTableModel>

#include <memory>

/// What becomes of the messages of a run: a row each, in the order in which they were composed.
class RunReport : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Person, Number, Task, State };

    explicit RunReport(QObject *parent = nullptr);
    ~RunReport() override;

    /// Through which the report learns of them, from any thread.
    const std::shared_ptr<MessageFeed> &feed() const { return messageFeed; }
    /// How far something is that is done with the messages, or what came of it.
    void tell(const QString &sentence);
    void tellDelivery(const QString &sentence, bool isDone);
    const QString &news() const { return lastNews; }
    /// Whether the gateway is being asked for the delivery of the messages.
    bool isBeingAsked() const { return isAsking; }
    /// Whether nothing more will become of the messages by itself.
    bool isComplete() const;
    /// Shows only what somebody has to look after, or all.
    void showProblemsOnly(bool isOn);
    const SentMessage &message(int row) const { return messages[shown[size_t(row)]]; }
    const std::vector<SentMessage> &allMessages() const { return messages; }
    /// In one sentence how many were accepted, refused ...; empty where there are none.
    QString summary() const;
    /// The rows that are shown, as comma-separated values. Source of the form: RFC 4180, with a header line.
    QByteArray csv() const;
    /// The text of a row's columns, with tabulators between.
    QString plainText(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    void changed();

private:
    void take(const std::vector<SentMessage> &news);
    void takeOne(const SentMessage &news);
    void show(size_t place);
    QString cellText(const SentMessage &message, int column) const;

    std::vector<SentMessage> messages; ///< by their place in the run
    std::vector<size_t> shown;         ///< their places, ascending
    bool areProblemsOnly = false;
    QString lastNews;
    bool isAsking = false;
    std::shared_ptr<MessageFeed> messageFeed;
};
