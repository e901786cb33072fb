#pragma once

#include <QDebug>
#include <QDir>
#include <QTimer>

class QWidget;

/// Where a tour takes place: announces its steps, counts its checks and takes its pictures.
class Stage
{
public:
    /// \param pictureFolder     made when it is not there; an earlier tour's pictures in it are removed
    /// \param outputDescriptor  where the tour's own lines go
    Stage(const QString &pictureFolder, int outputDescriptor);

    /// Begins a step: says so, and gives it a limited time.
    void step(const QString &title);

    /// A check that does not hold ends the tour.
    void check(bool holds, const QString &what);
    template <typename Actual, typename Expected>
    void same(const Actual &actual, const Expected &expected, const QString &what)
    {
        QString values;
        QDebug(&values).nospace() << ": " << actual << " instead of " << expected;
        check(actual == expected, what + values);
    }

    /// Says what was found.
    void list(const QString &finding) const { say(QLatin1StringView("     ") + finding); }

    /// Takes a picture of the widget; pictures are numbered in the order they are taken.
    void picture(QWidget &widget, const QString &name);

    /// Says how much has been done.
    void finish();
    /// Says why the tour ends here.
    void fail(const QString &reason);

private:
    void say(const QString &line) const;

    QDir pictures;
    int output;
    QTimer stepLimit;
    QString stepTitle;
    int stepCount = 0;
    int checkCount = 0;
    int pictureCount = 0;
};
