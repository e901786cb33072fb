#pragma once

#include <QString>

/// The preference keys of the message gateway's account and of the schedule messages. A missing key reads as
/// empty text, false or 0.
namespace messagingKey {
using namespace Qt::StringLiterals;
inline const QString accountId = u"twilioSID"_s;                  ///< text; also part of the request's path
inline const QString secret = u"twillioSecret"_s;                 ///< text; the password of the request
inline const QString sendingPhoneNo = u"twillioSendingPhoneNo"_s; ///< text; the sender
inline const QString notifications = u"twillioNotifications"_s; ///< boolean; whether messages are sent at all
inline const QString messageTitle = u"twillioMessageTitle"_s;   ///< text; first line of every header message
inline const QString testPhoneNo = u"twillioTestPhoneNo"_s;     ///< text; receives every message instead
inline const QString overwrite = u"twillioOverwrite"_s;         ///< boolean; whether the test number does
inline const QString messageFooter = u"twillioMessageFooter"_s; ///< text; the last message, none when empty
inline const QString delay = u"twillioDelay"_s; ///< integer, milliseconds; pause after every request's start
} // namespace messagingKey
