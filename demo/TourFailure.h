#pragma once

#include <QString>

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
