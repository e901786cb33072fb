#pragma once

#include "versions/VersionFile.h"

#include <QTreeWidget>

/// Lists versions under the days on which they were kept, the newest first, each with its time and what it
/// changed.
class VersionTree : public QTreeWidget
{
    Q_OBJECT

public:
    explicit VersionTree(QWidget *parent = nullptr);

    /// Shows these. The one that the user has chosen stays chosen, or else the newest is.
    /// \param versions  the oldest first
    void show(const QList<Version> &versions);
    /// The version that is chosen; nothing when there is none.
    std::optional<Version> chosen() const;

signals:
    void choiceChanged();

private:
    void appendDay(QDate day);
    QTreeWidgetItem *appendVersion(const Version &version);

    QHash<qint64, Version> byNumber;
    bool isChosenByUser = false;
};
