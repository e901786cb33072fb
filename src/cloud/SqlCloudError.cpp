#include "cloud/SqlCloudError.h"

#include "platform/Diagnostics.h"

#include <QSqlError>

#include <array>

using namespace Qt::StringLiterals;

using Reason = CloudError::Reason;

/// SQLite's result codes as https://www.sqlite.org/rescode.html has them.
static Reason reasonOf(int sqliteCode)
{
    constexpr int primary = 0xff; // the rest of an extended code says more than is told
    switch (sqliteCode & primary) {
    case 5: // busy
    case 6: // locked
        return Reason::Busy;
    case 8: // read only
    case 23:
        return Reason::Refused;
    case 11: // corrupt
    case 26: // not a database
        return Reason::Damaged;
    case 13:
        return Reason::NoSpace;
    case 14: // cannot open
        return Reason::Unreachable;
    case 18: // too big
        return Reason::Unsuitable;
    default:
        return Reason::Other;
    }
}

/// By the first beginning that fits; appendix A of PostgreSQL's manual has them all.
static Reason reasonOf(const QString &sqlState)
{
    static const std::array<std::pair<QString, Reason>, 13> states{{
        {u"08"_s, Reason::Lost},
        {u"22"_s, Reason::Unsuitable},
        {u"25006"_s, Reason::Refused}, // read only
        {u"40"_s, Reason::Busy},       // rolled back in favour of another transaction
        {u"42501"_s, Reason::Refused},
        {u"42P01"_s, Reason::Refused}, // no such table, for this role
        {u"53100"_s, Reason::NoSpace},
        {u"54"_s, Reason::Unsuitable},
        {u"55P03"_s, Reason::Busy}, // the lock was not to be had in time
        {u"57014"_s, Reason::Busy}, // the statement took too long
        {u"57P"_s, Reason::Lost},   // the server is being shut down
        {u"XX001"_s, Reason::Damaged},
        {u"XX002"_s, Reason::Damaged},
    }};
    for (const auto &[beginning, reason] : states)
        if (sqlState.startsWith(beginning))
            return reason;
    return Reason::Other;
}

CloudError sqlCloudError(const QSqlError &error)
{
    constexpr qsizetype sqlStateLength = 5; // SQLite's codes have four digits at most
    diagnostics::line("Cloud database:", error.text());
    const QString code = error.nativeErrorCode();
    const Reason reason = code.isEmpty()                  ? Reason::Lost // there was nobody to answer
                          : code.size() == sqlStateLength ? reasonOf(code)
                                                          : reasonOf(code.toInt());
    return {reason, error.databaseText().section(u'\n', 0, 0)};
}
