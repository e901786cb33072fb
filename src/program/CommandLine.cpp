#include "program/CommandLine.h"

#include "model/TaskView.h"

#include <QCommandLineParser>
#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct Action
{
    QString name; ///< in the desktop entry, and as an option
    QString description;
    QString command;
};

const QList<Action> &actions()
{
    static const QList<Action> all = {
        {u"new-task"_s, u"Open the form of a new task."_s, u"actionAdd"_s},
        {u"messages"_s, u"Open the schedule messages."_s, u"actionMessages"_s},
        {u"notes"_s, u"Open the notes."_s, u"actionNotes"_s},
    };
    return all;
}

const QString listOption = u"list"_s;
const QString jsonOption = u"json"_s;
const QString helpOption = u"help"_s;
const QString versionOption = u"version"_s;

/// What Qt takes for itself, of QApplication and of QGuiApplication.
void addOptionsOfQt(QCommandLineParser &parser)
{
    const auto add = [&parser](const QString &name, const QString &value) {
        QCommandLineOption option(name, {}, value);
        option.setFlags(QCommandLineOption::HiddenFromHelp);
        parser.addOption(option);
    };
    for (const QString &name : {u"platform"_s, u"platformpluginpath"_s, u"platformtheme"_s, u"plugin"_s,
                                u"qwindowgeometry"_s, u"qwindowicon"_s, u"qwindowtitle"_s, u"session"_s,
                                u"display"_s, u"geometry"_s, u"style"_s, u"stylesheet"_s})
        add(name, u"value"_s);
    for (const QString &name : {u"reverse"_s, u"widgetcount"_s, u"nograb"_s, u"dograb"_s, u"sync"_s})
        add(name, {});
}

void addOptions(QCommandLineParser &parser)
{
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions); // as Qt's own are written
    parser.setApplicationDescription(u"Plans, orders and ticks off the tasks of a small business."_s);
    for (const Action &action : actions())
        parser.addOption({action.name, action.description});
    const QString views = taskViewTitles().join(u", "_s);
    parser.addOption(
        {listOption, u"List the tasks of a view, without a window, and end. VIEW is one of: %1."_s.arg(views),
         u"VIEW"_s});
    parser.addOption({jsonOption, u"With --list: as JSON instead of text."_s});
    parser.addOption({{u"h"_s, helpOption}, u"Show this help and end."_s});
    parser.addOption({{u"v"_s, versionOption}, u"Show the program's version and end."_s});
    addOptionsOfQt(parser);
}

QString helpOf(const QCommandLineParser &parser)
{
    return parser.helpText().replace(u"<executable_name>"_s, u"quorvane"_s); // no application object, no name
}

/// A view's title as it is compared: in any case, of one word or of several.
QString plain(const QString &title)
{
    QString letters = title.toLower();
    return letters.removeIf([](QChar character) { return u" -_"_s.contains(character); });
}

} // namespace

CommandLine::CommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (parser.parse(arguments))
        read(parser);
    else
        refuse(parser.errorText());
}

QString CommandLine::commandOf(const QString &action)
{
    const auto known = std::ranges::find(actions(), action, &Action::name);
    return known == actions().end() ? QString() : known->command;
}

void CommandLine::read(const QCommandLineParser &parser)
{
    QStringList wanted;
    for (const Action &known : actions())
        if (parser.isSet(known.name))
            wanted << known.name;
    const QStringList positional = parser.positionalArguments();
    if (parser.isSet(helpOption) || parser.isSet(versionOption)) {
        purpose = Purpose::Answer;
        answer = parser.isSet(helpOption) ? helpOf(parser) : u"quorvane " QUORVANE_VERSION "\n"_s;
    } else if (!positional.isEmpty())
        refuse(u"Unexpected argument '%1'."_s.arg(positional.constFirst()));
    else if (wanted.size() + qsizetype(parser.isSet(listOption)) > 1)
        refuse(u"--new-task, --messages, --notes and --list exclude each other."_s);
    else if (parser.isSet(listOption))
        readListing(parser);
    else if (parser.isSet(jsonOption))
        refuse(u"--json goes with --list."_s);
    else
        action = wanted.value(0);
}

void CommandLine::readListing(const QCommandLineParser &parser)
{
    const QString title = parser.value(listOption);
    const auto known = std::ranges::find(taskViewTitles(), plain(title), &plain);
    if (known == taskViewTitles().end()) {
        refuse(u"There is no view '%1'. The views are: %2."_s.arg(title, taskViewTitles().join(u", "_s)));
        return;
    }
    purpose = Purpose::Listing;
    view = int(known - taskViewTitles().begin());
    isJson = parser.isSet(jsonOption);
}

void CommandLine::refuse(const QString &why)
{
    purpose = Purpose::Unknown;
    answer = why + u" See quorvane --help."_s;
}
