#include "contacts/ContactMarks.h"

#include "phone/NumberCheck.h"

#include <QFont>

using namespace Qt::StringLiterals;

ContactMarks::ContactMarks(const QList<Contact> &ofTable, NumberCheck &check)
    : contacts(ofTable)
    , numbers(check)
    , icon(u":/icons/warning.svg"_s)
{
    icon.addFile(u":/icons/warning.svg"_s, {}, QIcon::Selected); // as it is, not in the selection's colour
}

void ContactMarks::forget()
{
    isGrouped = false;
}

/// The last digits of a number. With fewer digits there would be many numbers of one end, which then all have
/// to be read; with more, one that is written without its area code might end otherwise.
static QString endOf(const QString &number)
{
    constexpr int length = 6;
    QString digits;
    for (auto character = number.crbegin(); character != number.crend() && digits.size() < length;
         ++character)
        if (character->isDigit())
            digits += QChar(u'0' + character->digitValue());
    return digits;
}

/// Reading a number takes long enough to be felt with thousands of them: only those are read that may be the
/// same as another.
void ContactMarks::group()
{
    if (isGrouped)
        return;
    isGrouped = true;
    for (Groups *groups : {&ofName, &ofNumberEnd, &ofNumber})
        groups->clear();
    for (int row = 0; row < contacts.size(); ++row) {
        if (const QString name = contacts[row].name().value_or(QString()); !name.isEmpty())
            ofName[matchedName(name)].append(row);
        if (const QString end = endOf(contacts[row].phoneNo().value_or(QString())); !end.isEmpty())
            ofNumberEnd[end].append(row);
    }
    rowsOfDeclined.clear();
    for (const QString &number : std::as_const(declined))
        for (const int row : ofNumberEnd.value(endOf(number)))
            if (numberIdentity(row) == numbers.identity(number))
                rowsOfDeclined.insert(row);
    for (const QList<int> &rows : std::as_const(ofNumberEnd))
        if (rows.size() > 1)
            for (const int row : rows)
                ofNumber[numberIdentity(row)].append(row);
}

void ContactMarks::setDeclined(const QSet<QString> &numbersNow)
{
    declined = numbersNow;
    forget();
}

QStringList ContactMarks::declinedNumbers(int row)
{
    QStringList found;
    for (const QString &number : std::as_const(declined))
        if (numbers.identity(number) == numberIdentity(row))
            found.append(number);
    return found;
}

const QSet<int> &ContactMarks::declinedRows()
{
    group();
    return rowsOfDeclined;
}

QString ContactMarks::numberIdentity(int row) const
{
    return numbers.identity(contacts[row].phoneNo().value_or(QString()));
}

QString ContactMarks::another(const Groups &groups, const QString &key, int row) const
{
    const QList<int> rows = groups.value(key);
    if (rows.size() < 2)
        return {};
    const QString name = contacts[rows[0] == row ? rows[1] : rows[0]].name().value_or(QString());
    return name.isEmpty() ? u"a contact without a name"_s : name.simplified();
}

QString ContactMarks::remark(int row, Contact::Attribute attribute)
{
    group();
    const QString text = contacts[row].value(attribute).value_or(QString());
    if (attribute == Contact::Name) {
        const bool isTwice = !text.isEmpty() && ofName.value(matchedName(text)).size() > 1;
        return isTwice ? u"Another contact has this name, too; each is sent all tasks of that name."_s
                       : QString();
    }
    if (text.isEmpty())
        return u"There is no number to which texts could be sent."_s;
    QStringList sentences{numbers.remark(text).sentence};
    if (rowsOfDeclined.contains(row))
        sentences.prepend(u"Has asked for no more messages."_s);
    if (ofNumberEnd.value(endOf(text)).size() > 1)
        if (const QString other = another(ofNumber, numberIdentity(row), row); !other.isEmpty())
            sentences.append(u"The same number as that of %1."_s.arg(other));
    sentences.removeAll(QString());
    return sentences.join(u' ');
}

QString ContactMarks::correctedNumber(int row) const
{
    const QString number = contacts[row].phoneNo().value_or(QString());
    return number.isEmpty() ? QString() : numbers.remark(number).corrected;
}

QVariant ContactMarks::data(int row, Contact::Attribute attribute, int role)
{
    const bool isMissing =
        attribute == Contact::PhoneNo && contacts[row].phoneNo().value_or(QString()).isEmpty();
    const auto ifRemarkable = [&](const auto &make) {
        const QString words = remark(row, attribute);
        return words.isEmpty() ? QVariant() : QVariant(make(words));
    };
    switch (role) {
    case Qt::DisplayRole:
        return isMissing ? u"no number"_s : QVariant();
    case Qt::FontRole: {
        QFont font;
        font.setItalic(true);
        return isMissing ? QVariant(font) : QVariant();
    }
    case Qt::DecorationRole:
        return ifRemarkable([this](const QString &) { return icon; });
    case Qt::ToolTipRole:
        return ifRemarkable([](const QString &words) { return words; });
    case Qt::AccessibleTextRole:
        return ifRemarkable([&](const QString &words) {
            return isMissing ? words : *contacts[row].value(attribute) + u" – "_s + words;
        });
    default:
        return {};
    }
}
