#include "journal/JournalTable.h"

#include "journal/MessageJournal.h"
#include "platform/Calendar.h"

#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int pageSize = 128; // messages
constexpr int keptPages = 16;

} // namespace

QString momentText(const SentMessage &message)
{
    const QDateTime time = Calendar::localTime(Instant(std::chrono::milliseconds(message.moment)));
    return shortDate(time.date()) + u", "_s + QLocale().toString(time.time(), QLocale::ShortFormat);
}

QString journalStateText(const SentMessage &message)
{
    return message.state == MessageState::HandedOver ? u"Being sent"_s : stateText(message);
}

JournalTable::JournalTable(const MessageJournal &messageJournal)
    : journal(messageJournal)
    , journalStore(journal.folder())
    , pages(keptPages)
    , icon(u":/icons/warning.svg"_s)
{
    icon.addFile(u":/icons/warning.svg"_s, {}, QIcon::Selected); // as it is, not in the selection's colour
}

void JournalTable::show(const JournalSearch &search)
{
    std::vector<qint64> found = journalStore.find(search);
    readProblem = journalStore.problem();
    pages.clear();
    if (found == identifiers) {
        if (!found.empty())
            emit dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
        return;
    }
    beginResetModel();
    identifiers = std::move(found);
    endResetModel();
}

/// The messages of the page on which the row is, as far as they are in the file.
const JournalTable::Page &JournalTable::page(int row) const
{
    const int number = row / pageSize;
    if (const Page *kept = pages.object(number))
        return *kept;
    const auto first = identifiers.begin() + qsizetype(number) * pageSize;
    const auto last = identifiers.end() - first > pageSize ? first + pageSize : identifiers.end();
    auto *read = new Page;
    for (SentMessage &message : journalStore.messages({first, last})) {
        // Its answer got lost when the program ended.
        if (message.state == MessageState::HandedOver && !journal.isUnderWay(message.id))
            message.state = MessageState::NoAnswer;
        read->insert(message.id, message);
    }
    if (!journalStore.problem().isEmpty())
        emit unreadable(journalStore.problem());
    pages.insert(number, read); // which owns it from now on
    return *read;
}

SentMessage JournalTable::message(int row) const
{
    return row >= 0 && row < rowCount() ? page(row).value(identifier(row)) : SentMessage();
}

int JournalTable::rowOf(qint64 wanted) const
{
    const auto found = std::ranges::find(identifiers, wanted);
    return found == identifiers.end() ? -1 : int(found - identifiers.begin());
}

int JournalTable::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(identifiers.size());
}

int JournalTable::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

static QString cellText(const SentMessage &message, int column)
{
    switch (column) {
    case JournalTable::Moment:
        return momentText(message);
    case JournalTable::Person:
        return message.person.simplified();
    case JournalTable::Number:
        return message.isTest ? message.number + u" (test)"_s : message.number;
    case JournalTable::Message:
        return (message.taskName.isEmpty() ? message.text : message.taskName).simplified();
    default:
        return journalStateText(message);
    }
}

QVariant JournalTable::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) ||
        (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != Qt::DecorationRole))
        return {};
    const SentMessage shown = message(index.row());
    if (shown.id == 0)
        return role == Qt::DisplayRole && index.column() == Message ? u"no longer in the journal"_s
                                                                    : QVariant();
    if (role == Qt::DecorationRole)
        return index.column() == State && shown.isProblem() ? QVariant(icon) : QVariant();
    return role == Qt::ToolTipRole && index.column() == Message ? shown.text
                                                                : cellText(shown, index.column());
}

QVariant JournalTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const QStringList titles{u"Sent"_s, u"To"_s, u"Number"_s, u"Message"_s, u"What Became of It"_s};
    return orientation == Qt::Horizontal && role == Qt::DisplayRole ? titles.value(section) : QVariant();
}
