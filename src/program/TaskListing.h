#pragma once

#include <QString>

/// The task list for scripts and terminals: the tasks of a view on standard output. Only looks at the list's
/// file, and needs no more than a QCoreApplication.
class TaskListing
{
public:
    enum class Form {
        Text, ///< the table's columns but for the key, one task a line, under their titles
        Json, ///< an array (RFC 8259) of objects; days as 2026-03-07, times of day as 08:05
    };

    /// \param documentsFolder  where the list's file is; empty when the desktop names none
    /// \param stateFolder      where an unfinished write is kept
    TaskListing(const QString &documentsFolder, const QString &stateFolder);

    /// Prints the view at this position; what could not be read or written goes to standard error.
    /// \return the exit code: EXIT_FAILURE when anything is missing
    int print(int view, Form form) const;

private:
    QString documents;
    QString state;
};
