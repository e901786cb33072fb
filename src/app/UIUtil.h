#pragma once

#include "platform/Calendar.h"
#include "platform/SoundPlayer.h"

#include <QPointer>
#include <QString>

class TimePicker;

/// What the screens share: the notification sound, the yes/no question, the first-line cut and small
/// operations on days and times of day. Days are those of the user's time zone.
class UIUtil
{
public:
    /// Fills `player` from the bundle's `ding.mp3`, in the background. Without such a file, or when it cannot
    /// be played, `player` stays as it was.
    void prepareSound() const;

    /// Asks with a modal alert; true when the answer is "Yes".
    /// \param details  what may be too long for a small screen; shown on demand, where it can be scrolled
    bool askYesNo(const QString &question, const QString &informativeText, const QString &details = {}) const;

    /// The text before its first line feed followed by "...", or the whole text when it has none. A carriage
    /// return and line feed together are no line feed.
    QString truncateAtLineBreak(const QString &text) const;

    /// Hour (0–23) and minute (0–59) that the picker shows.
    int getHour(const TimePicker &picker) const;
    int getMinute(const TimePicker &picker) const;
    /// Makes the picker show the time of day.
    void setTime(TimePicker &picker, qint64 hour, qint64 minute) const;

    /// 1 when a's day is before b's, 0 when it is the same, −1 when it is after.
    int compareDays(Instant a, Instant b, const Calendar &calendar = {}) const;
    bool isSameDayOrEarlier(Instant a, Instant b, const Calendar &calendar = {}) const;

    /// The 12-hour text of a time of day, such as 05:00PM for hour 17 and minute 0.
    QString formatTime(qint64 hour, qint64 minute) const;
};

/// The instance that every screen uses.
UIUtil &util();

/// The notification sound; null until `prepareSound` has found one that can be played. Belongs to the
/// application.
extern QPointer<SoundPlayer> player;
