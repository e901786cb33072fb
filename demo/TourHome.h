#pragma once

#include <QString>
#include <QTemporaryDir>

class QDate;

/// A home folder of the tour's own, so that nobody's files and settings are touched or looked at.
///
/// Must be there before the application object: from then on the environment leads here.
class TourHome
{
public:
    TourHome();

    /// Copies the sample to where the program looks for its task list.
    /// \param today  stands where the sample says @TODAY@
    void placeTaskList(const QString &samplePath, QDate today) const;
    QString taskListPath() const;

    /// Sends what the program writes to standard output to a file in this home.
    /// \return a descriptor of what was standard output before, for the tour's own lines
    int divertStandardOutput() const;

    /// Leaves the folder behind when the tour ends.
    /// \return its path
    QString keep();

private:
    QTemporaryDir folder;
};
