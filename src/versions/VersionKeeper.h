#pragma once

#include "versions/VersionAge.h"

/// Keeps versions of the list in their folder, and removes those that are not to be kept any longer. May wait
/// for the disk.
class VersionKeeper
{
public:
    explicit VersionKeeper(const QString &folder);

    enum class Outcome { Kept, Same, Failed };

    /// Keeps the text, unless it is that of the newest version, and removes what is not to be kept any
    /// longer. Failed when it could not be written, with the reason in errno; then nothing has changed.
    Outcome keep(const QByteArray &text, const ClockReading &now);
    /// Has one version tell what it changed against the one that is before it now, if the one that was has
    /// been removed. False when there is no such version.
    bool updateSummary();
    /// Looks into the folder again, from which somebody else has removed versions.
    void lookAgain();

private:
    void thinOut();
    std::optional<QByteArray> textOf(const Version &version) const;

    QString folder;
    QList<Version> versions;              ///< the oldest first
    qint64 lastNumber = 0;                ///< that was ever given
    std::optional<QByteArray> newestText; ///< once it is known
    VersionClock clock;
    qsizetype checked = 0; ///< versions of which the summaries are up to date
};
