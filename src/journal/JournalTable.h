#pragma once

#include "journal/JournalStore.h"

#include <QAbstractTableModel>
#include <QCache>
#include <QIcon>

class MessageJournal;

/// The messages of the journal that are looked for, the newest first. What stands in a row is read when it is
/// shown.
class JournalTable : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Moment, Person, Number, Message, State, ColumnCount };

    /// \param journal  knows what is under way; has to outlive the table
    explicit JournalTable(const MessageJournal &journal);

    /// Shows what is found, as it is in the file now.
    void show(const JournalSearch &search);
    /// Why the file cannot be read, in plain words; empty when it can.
    const QString &problem() const { return readProblem; }

    /// The message in the row; one without an identifier when it is no longer in the file.
    SentMessage message(int row) const;
    qint64 identifier(int row) const { return identifiers[size_t(row)]; }
    /// The row of the message; −1 when it is not in the table.
    int rowOf(qint64 identifier) const;
    JournalStore &store() { return journalStore; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

signals:
    /// A row that was to be shown cannot be read.
    void unreadable(const QString &problem) const;

private:
    using Page = QHash<qint64, SentMessage>;
    const Page &page(int row) const;

    const MessageJournal &journal;
    mutable JournalStore journalStore;
    std::vector<qint64> identifiers;
    mutable QCache<int, Page> pages;
    QString readProblem;
    QIcon icon;
};

/// Such as "5/12/26, 2:03 PM", in the user's time zone.
QString momentText(const SentMessage &message);
/// What has become of the message in the journal.
QString journalStateText(const SentMessage &message);
