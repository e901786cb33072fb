#pragma once

#include <QDate>
#include <QString>

#include <optional>

/// What has become of a message. The numbers stand in the journal.
enum class MessageState {
    Waiting = 0,    ///< for its turn
    HandedOver = 1, ///< to the gateway, which has not answered
    Accepted = 2,
    Refused = 3,
    NoAnswer = 4,  ///< will come; the message may have arrived
    NotSent = 5,   ///< and will not be
    Delivered = 6, ///< to the phone, as the gateway says
    Undelivered = 7
};

/// A text message to one person, and what has become of it.
struct SentMessage
{
    qint64 id = 0;     ///< in the journal; 0 before the message waits for its turn
    qint64 moment = 0; ///< when it was handed over, in milliseconds since 1970 in UTC
    qint64 run = 0;    ///< the same for all messages of a run, and for those sent again
    bool isTeamMember = false;
    QString person = {};
    QString phoneNo = {}; ///< the person's own
    QString number =
        {}; ///< to which it goes: the person's own, or the one that receives all messages instead
    bool isTest = false;  ///< that other one
    QString taskKey = {}; ///< empty for what comes before and after the tasks
    QString taskName = {};
    QDate taskDay = {};
    QDate firstDay = {}; ///< of the schedule
    QDate lastDay = {};
    QString text = {};
    QString account = {}; ///< identifier of the account on which it went
    MessageState state = MessageState::Waiting;
    QString identifier = {}; ///< by which the gateway knows it
    int code = 0;            ///< of the gateway's refusal or of a failed delivery; 0 for none
    QString reason = {};     ///< in plain words, of what went wrong
    qsizetype place = 0;     ///< in its run, counted from 0

    /// Whether somebody has to look after it.
    bool isProblem() const;
};

/// What has become of the message, in plain words.
QString stateText(const SentMessage &message);
