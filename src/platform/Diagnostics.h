#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <QStringView>

#include <charconv>
#include <concepts>
#include <iterator>
#include <optional>
#include <type_traits>

/// Plain lines for whoever watches the program's standard output. Nothing reads them back.
///
/// A line is only copied into memory by the caller; a thread of its own writes it out, so that a slow
/// terminal or pipe never holds up a command. Safe to call from any thread.
namespace diagnostics {

/// Appends one item's text; items that are not listed here may bring an overload of their own, found by their
/// type.
void appendItem(QByteArray &line, QStringView text);
void appendItem(QByteArray &line, const char *text);
/// A text that is UTF-8 already.
void appendItem(QByteArray &line, const QByteArray &utf8);
void appendItem(QByteArray &line, bool value);
void appendItem(QByteArray &line, const QList<QStringView> &texts);
/// A text that may be absent: Optional("text") or nil.
template <std::same_as<QString> Text> // a template, so that plain texts are not converted to it
void appendItem(QByteArray &line, const std::optional<Text> &text)
{
    if (!text) {
        line += "nil";
        return;
    }
    line += "Optional(\"";
    appendItem(line, QStringView(*text));
    line += "\")";
}
template <std::signed_integral Number>
void appendItem(QByteArray &line, Number value)
{
    char digits[20];
    line.append(digits, std::to_chars(digits, std::end(digits), value).ptr - digits);
}

/// The calling thread's scratch text for the line being made.
QByteArray &scratch();
/// Queues the scratch text as one line.
/// \param isPersonal  it is not for the system's journal
void commit(QByteArray &line, bool isPersonal);

/// Whether an item can hold nothing of the user's: words of the program, numbers, answers.
template <typename Item>
constexpr bool isImpersonal = std::is_arithmetic_v<Item> ||
                              (!std::is_class_v<Item> && std::is_convertible_v<const Item &, const char *>);

/// Writes the items as one line, separated by one blank. UTF-8; numbers in decimal, booleans as true and
/// false, lists in brackets.
///
/// Where standard output is the system's journal, which keeps what it gets and which others may read, only
/// lines are written that can hold nothing of the user's.
template <typename First, typename... Rest>
void line(const First &first, const Rest &...rest)
{
    QByteArray &text = scratch();
    appendItem(text, first);
    ((text += ' ', appendItem(text, rest)), ...);
    commit(text, !(isImpersonal<First> && ... && isImpersonal<Rest>));
}

/// While it lives, the lines of its thread are dropped: what is only tried out does not happen.
class Silence
{
public:
    Silence();
    ~Silence();
    Silence(const Silence &) = delete;
    Silence &operator=(const Silence &) = delete;
};

/// Lets the writer start on what is queued, without waiting for it.
void flush();
/// Waits until everything queued so far has been handed to the operating system.
void drain();

} // namespace diagnostics
