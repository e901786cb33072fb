#pragma once

#include "messaging/SchedulePreview.h"

#include <QAbstractTableModel>

/// The messages that would go out, in a row each and in the order in which they go, with the person whom they
/// are for; somebody who gets none has a row that says so.
class PreviewTable : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Person, Number, Message, Parts };

    using QAbstractTableModel::QAbstractTableModel;

    void show(std::vector<SchedulePreview> shown);
    /// The message in this row; null where there is none.
    const PreviewedMessage *message(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Row
    {
        const PreviewedPerson *person;
        const PreviewedMessage *message;
        bool isFirst; ///< of the person
    };
    QString cellText(const Row &row, int column) const;

    std::vector<SchedulePreview> previews;
    std::vector<Row> rows; ///< they point into the previews
};

/// Why the message takes so many parts, in one sentence.
QString explanation(const PreviewedMessage &message);
