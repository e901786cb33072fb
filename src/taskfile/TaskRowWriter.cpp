#include "taskfile/TaskRowWriter.h"

#include <charconv>
#include <cmath>

namespace {

void appendNumber(QByteArray &text, qint64 number)
{
    char digits[20];
    const auto result = std::to_chars(digits, digits + sizeof digits, number);
    text.append(digits, result.ptr - digits);
}

/// The shortest digits that read back the same, with a point or an exponent; the exponent form only below
/// 1e-4 and from 1e16 on. What is no number is written as 0.0, since a row must be readable.
void appendReal(QByteArray &text, double number)
{
    char digits[40];
    const double value = std::isfinite(number) ? number : 0.0;
    const double size = std::abs(value);
    const bool exponent = size != 0.0 && (size < 1e-4 || size >= 1e16);
    const auto result = std::to_chars(digits, digits + sizeof digits, value,
                                      exponent ? std::chars_format::scientific : std::chars_format::fixed);
    const QByteArrayView written(digits, result.ptr);
    text.append(written);
    if (!exponent && !written.contains('.'))
        text.append(".0");
}

} // namespace

TaskRowWriter::TaskRowWriter(char16_t separatorOfFields, char16_t separatorOfRows)
    : fieldSeparator(char(separatorOfFields))
    , rowSeparator(char(separatorOfRows))
    , utf8(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless)
{
}

void TaskRowWriter::append(QByteArray &text, const task &entry, const Color &color)
{
    const auto addText = [&](const QString &field) {
        appendText(text, field);
        text += fieldSeparator;
    };
    const auto addNumber = [&](qint64 number) {
        appendNumber(text, number);
        text += fieldSeparator;
    };
    const auto addDate = [&](Instant instant) {
        text += dates.toText(instant);
        text += fieldSeparator;
    };
    addDate(entry.date);
    addText(entry.name);
    addText(entry.desc);
    for (const double component : {color.red, color.green, color.blue, color.alpha}) {
        appendReal(text, component);
        text += fieldSeparator;
    }
    addDate(entry.due);
    addNumber(entry.status);
    addNumber(entry.priority);
    addText(entry.statusName);
    addText(entry.priorityName);
    addText(entry.key);
    text += entry.hidden ? "true" : "false";
    text += fieldSeparator;
    addNumber(entry.startHour);
    addNumber(entry.startMin);
    addNumber(entry.endHour);
    addNumber(entry.endMin);
    addText(entry.client);
    appendText(text, entry.teamMember);
    text += rowSeparator;
}

void TaskRowWriter::appendText(QByteArray &text, const QString &field)
{
    const qsizetype start = text.size();
    text.resize(start + utf8.requiredSpace(field.size()));
    const char *end = utf8.appendToBuffer(text.data() + start, field);
    text.truncate(end - text.constData());
    // In UTF-8 these four bytes stand for nothing but the characters themselves.
    char *to = text.data() + start;
    for (const char *from = to; from != end; ++from) {
        if (*from == fieldSeparator)
            *to++ = char(rowmark::fieldSeparator);
        else if (*from == rowSeparator)
            *to++ = char(rowmark::rowSeparator);
        else if (*from != char(rowmark::fieldSeparator) && *from != char(rowmark::rowSeparator))
            *to++ = *from;
    }
    text.truncate(to - text.constData());
}
