#include "journal/JournalRow.h"

#include <QSqlQuery>
#include <QVariant>

using namespace Qt::StringLiterals;

namespace journalRow {

namespace {

enum Column {
    Id,
    Moment,
    Run,
    IsTeamMember,
    Person,
    PhoneNo,
    Number,
    IsTest,
    TaskKey,
    TaskName,
    TaskDay,
    FirstDay,
    LastDay,
    Text,
    Account,
    State,
    Identifier,
    Code,
    Reason
};

} // namespace

QString table()
{
    return u"CREATE TABLE IF NOT EXISTS message (id INTEGER PRIMARY KEY, moment INTEGER NOT NULL, "
           "run INTEGER NOT NULL, team_member INTEGER NOT NULL, person TEXT, phone TEXT, number TEXT, test "
           "INTEGER NOT NULL, task TEXT, task_name TEXT, "
           "task_day TEXT, first_day TEXT, last_day TEXT, text TEXT, account TEXT, state INTEGER NOT NULL, "
           "identifier TEXT, code INTEGER NOT NULL, reason TEXT, searched TEXT)"_s;
}

QVariantList values(const SentMessage &message)
{
    // Case folded here, since SQLite knows the case of ASCII letters alone.
    const QString searched =
        QStringList{message.person, message.number, message.text}.join(u'\n').toCaseFolded();
    return {message.id,
            message.moment,
            message.run,
            message.isTeamMember,
            message.person,
            message.phoneNo,
            message.number,
            message.isTest,
            message.taskKey,
            message.taskName,
            message.taskDay.toString(Qt::ISODate),
            message.firstDay.toString(Qt::ISODate),
            message.lastDay.toString(Qt::ISODate),
            message.text,
            message.account,
            int(message.state),
            message.identifier,
            message.code,
            message.reason,
            searched};
}

SentMessage message(const QSqlQuery &query)
{
    const auto text = [&query](Column column) {
        return query.value(column).toString();
    };
    const auto day = [&text](Column column) {
        return QDate::fromString(text(column), Qt::ISODate);
    };
    return {.id = query.value(Id).toLongLong(),
            .moment = query.value(Moment).toLongLong(),
            .run = query.value(Run).toLongLong(),
            .isTeamMember = query.value(IsTeamMember).toBool(),
            .person = text(Person),
            .phoneNo = text(PhoneNo),
            .number = text(Number),
            .isTest = query.value(IsTest).toBool(),
            .taskKey = text(TaskKey),
            .taskName = text(TaskName),
            .taskDay = day(TaskDay),
            .firstDay = day(FirstDay),
            .lastDay = day(LastDay),
            .text = text(Text),
            .account = text(Account),
            .state = MessageState(qBound(0, query.value(State).toInt(), int(MessageState::Undelivered))),
            .identifier = text(Identifier),
            .code = query.value(Code).toInt(),
            .reason = text(Reason)};
}

} // namespace journalRow
