#pragma once

#include "versions/VersionDiff.h"

/// What a version of the list changed against the one before it, in short.
struct VersionSummary
{
    static VersionSummary of(const ListRows &before, const ListRows &after);

    qsizetype tasks = 0; ///< how many the list has
    qsizetype added = 0;
    qsizetype changed = 0;
    qsizetype removed = 0;
    qsizetype moved = 0;
    QStringList names = {}; ///< of the first few tasks of each kind, with the kind's character in front

    /// Such as "2 added: Mow lawn, Trim hedge; 1 removed: Clean pond".
    QString text() const;
};
