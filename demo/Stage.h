#pragma once

#include <QDebug>
#include <QDir>
#include <QPixmap>
#include <QTimer>

#include <stdexcept>

/// Ends the tour: the program did not do what it should, or the tour could not do what a user would.
class TourFailure : public std::runtime_error
{
public:
    explicit TourFailure(const QString &reason)
        : std::runtime_error(reason.toStdString())
    {
    }
};

inline void require(bool holds, const QString &what)
{
    if (!holds)
        throw TourFailure(what);
}

/// Where a tour takes place: announces its steps, counts its checks and takes its pictures.
class Stage
{
public:
    /// \param pictureFolder  made when it is not there; an earlier tour's pictures in it are removed
    explicit Stage(const QString &pictureFolder);

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

    /// Takes a picture of the widget; pictures are numbered in the order they are taken.
    void picture(QWidget &widget, const QString &name);
    void keepPicture(const QPixmap &picture, const QString &name);

    /// Says how much has been done.
    void finish();
    /// Says why the tour ends here.
    void fail(const QString &reason);

private:
    QDir pictures;
    QTimer stepLimit;
    QString stepTitle;
    int stepCount = 0;
    int checkCount = 0;
    int pictureCount = 0;
};
