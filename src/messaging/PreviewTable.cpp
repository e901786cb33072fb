#include "messaging/PreviewTable.h"

#include <QFont>

using namespace Qt::StringLiterals;

void PreviewTable::show(std::vector<SchedulePreview> shown)
{
    beginResetModel();
    previews = std::move(shown);
    rows.clear();
    for (const SchedulePreview &preview : previews)
        for (const PreviewedPerson &person : preview.people()) {
            if (person.messages.empty())
                rows.push_back({&person, nullptr, true});
            for (const PreviewedMessage &each : person.messages)
                rows.push_back({&person, &each, &each == &person.messages.front()});
        }
    endResetModel();
}

const PreviewedMessage *PreviewTable::message(int row) const
{
    return row >= 0 && row < rowCount() ? rows[size_t(row)].message : nullptr;
}

int PreviewTable::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(rows.size());
}

int PreviewTable::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : Parts + 1;
}

QString PreviewTable::cellText(const Row &row, int column) const
{
    switch (column) {
    case Person:
        return row.isFirst ? row.person->name : QString();
    case Number:
        if (!row.isFirst)
            return {};
        return row.person->number.isEmpty() ? u"no number"_s : row.person->number;
    case Message:
        return row.message
                   ? row.message->text.simplified() + (row.message->cutOff.isEmpty() ? u""_s : u" ✂"_s)
                   : u"nothing in these days"_s;
    default:
        return row.message ? QString::number(row.message->parts.parts) : QString();
    }
}

QVariant PreviewTable::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Row &row = rows[size_t(index.row())];
    const bool isRemark =
        index.column() == Message ? !row.message : index.column() == Number && row.person->number.isEmpty();
    if (role == Qt::DisplayRole)
        return cellText(row, index.column());
    if (role == Qt::ToolTipRole && row.message)
        return explanation(*row.message);
    if (role == Qt::FontRole && isRemark) {
        QFont font;
        font.setItalic(true);
        return font;
    }
    return {};
}

QVariant PreviewTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const QStringList titles{u"To"_s, u"Number"_s, u"Message"_s, u"Parts"_s};
    return orientation == Qt::Horizontal && role == Qt::DisplayRole ? titles.value(section) : QVariant();
}

QString explanation(const PreviewedMessage &message)
{
    QString sentence = message.parts.parts == 1 ? u"One part"_s : u"%1 parts"_s.arg(message.parts.parts);
    sentence += message.parts.isUcs2
                    ? u", since \"%1\" is not in the alphabet of text messages"_s.arg(message.parts.unusual)
                    : QString();
    return message.cutOff.isEmpty()
               ? sentence + u'.'
               : sentence + u". What comes after 160 characters is not sent: \"%1\"."_s.arg(
                                message.cutOff.simplified());
}
