#include "messaging/RunReport.h"

#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;

RunReport::RunReport(QObject *parent)
    : QAbstractTableModel(parent)
    , messageFeed(std::make_shared<MessageFeed>(*this, [this](const auto &news) { take(news); }))
{
}

RunReport::~RunReport()
{
    messageFeed->detach();
}

void RunReport::take(const std::vector<SentMessage> &news)
{
    for (const SentMessage &message : news)
        takeOne(message);
    emit changed();
}

void RunReport::takeOne(const SentMessage &news)
{
    const auto place = size_t(news.place);
    while (messages.size() <= place) { // they are told of by several threads
        messages.push_back({.place = qsizetype(messages.size())});
        show(messages.size() - 1);
    }
    messages[place] = news;
    const auto row = std::ranges::lower_bound(shown, place);
    if (row == shown.end() || *row != place)
        show(place);
    else
        emit dataChanged(index(int(row - shown.begin()), 0), index(int(row - shown.begin()), State));
}

/// Adds a row for the message, unless it is not one of those that are to be shown.
void RunReport::show(size_t place)
{
    if (areProblemsOnly && !messages[place].isProblem())
        return;
    const auto after = std::ranges::upper_bound(shown, place);
    const int row = int(after - shown.begin());
    beginInsertRows({}, row, row);
    shown.insert(after, place);
    endInsertRows();
}

void RunReport::tell(const QString &sentence)
{
    lastNews = sentence;
    emit changed();
}

void RunReport::tellDelivery(const QString &sentence, bool isDone)
{
    isAsking = !isDone;
    tell(sentence);
}

bool RunReport::isComplete() const
{
    return std::ranges::none_of(messages, [](const SentMessage &message) {
        return message.state == MessageState::Waiting || message.state == MessageState::HandedOver;
    });
}

void RunReport::showProblemsOnly(bool isOn)
{
    beginResetModel();
    areProblemsOnly = isOn;
    shown.clear();
    for (size_t place = 0; place < messages.size(); ++place)
        if (!isOn || messages[place].isProblem())
            shown.push_back(place);
    endResetModel();
}

QString RunReport::summary() const
{
    static const std::vector<std::pair<MessageState, QString>> parts{
        {MessageState::Delivered, u"%1 delivered"_s},
        {MessageState::Accepted, u"%1 accepted"_s},
        {MessageState::Refused, u"%1 refused"_s},
        {MessageState::Undelivered, u"%1 not delivered"_s},
        {MessageState::NoAnswer, u"%1 without an answer"_s},
        {MessageState::NotSent, u"%1 not sent"_s},
        {MessageState::HandedOver, u"%1 not answered yet"_s},
        {MessageState::Waiting, u"%1 waiting"_s}};
    std::map<MessageState, qint64> counts;
    for (const SentMessage &message : messages)
        ++counts[message.state];
    QStringList sentence;
    for (const auto &[state, text] : parts)
        if (const qint64 count = counts[state]; count > 0)
            sentence.append(text.arg(count));
    return sentence.join(u", "_s);
}

QString RunReport::cellText(const SentMessage &message, int column) const
{
    switch (column) {
    case Person:
        return message.person;
    case Number:
        return message.number.isEmpty() ? message.phoneNo : message.number;
    case Task:
        return message.taskName.isEmpty() ? message.text.simplified() : message.taskName;
    default:
        return stateText(message);
    }
}

QString RunReport::plainText(int row) const
{
    QStringList cells;
    for (int column = 0; column < columnCount(); ++column)
        cells.append(cellText(message(row), column).simplified());
    return cells.join(u'\t');
}

static QString quoted(QString cell)
{
    return u'"' + cell.replace(u'"', u"\"\""_s) + u'"';
}

QByteArray RunReport::csv() const
{
    QStringList lines;
    for (int row = -1; row < rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < columnCount(); ++column)
            cells.append(quoted(row < 0 ? headerData(column, Qt::Horizontal, Qt::DisplayRole).toString()
                                        : cellText(message(row), column)));
        lines.append(cells.join(u','));
    }
    return (lines.join(u"\r\n"_s) + u"\r\n"_s).toUtf8();
}

int RunReport::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(shown.size());
}

int RunReport::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : State + 1;
}

QVariant RunReport::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const SentMessage &shownMessage = message(index.row());
    if (role == Qt::DisplayRole)
        return cellText(shownMessage, index.column());
    if (role == Qt::ToolTipRole)
        return index.column() == State ? stateText(shownMessage) : shownMessage.text;
    return {};
}

QVariant RunReport::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const QStringList titles{u"To"_s, u"Number"_s, u"Message"_s, u"State"_s};
    return orientation == Qt::Horizontal && role == Qt::DisplayRole ? titles.value(section) : QVariant();
}
