#pragma once

#include <QString>

/// How a text travels over the mobile network: in which alphabet, and in how many parts.
///
/// Source: 3GPP TS 23.038, the GSM 7-bit default alphabet with its extension table and UCS-2; TS 23.040, the
/// header by which a long message is put together again.
struct MessageParts
{
    explicit MessageParts(QStringView text);

    bool isUcs2 = false;
    /// The first character that the 7-bit alphabet lacks; empty when there is none.
    QString unusual = {};
    qint64 units = 0; ///< septets, or UTF-16 units in UCS-2
    qint64 parts = 1; ///< each is charged as one message; an empty text is one, too
};
