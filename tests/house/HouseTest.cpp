#include "model/TaskManager.h"
#include "support/ScratchHome.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

/// How high above the ground each folder of src/ stands: it includes only from storeys further down, and
/// nothing from the guide, which is a program of its own.
static const QHash<QString, int> storeys = {
    {u"program"_s, 7}, {u"mainwindow"_s, 6}, {u"versions"_s, 5}, {u"forms"_s, 5},    {u"messaging"_s, 5},
    {u"gateway"_s, 4}, {u"tools"_s, 4},      {u"cloud"_s, 4},    {u"contacts"_s, 4}, {u"taskfile"_s, 4},
    {u"model"_s, 3},   {u"journal"_s, 3},    {u"app"_s, 2},      {u"guide"_s, 2},    {u"widgets"_s, 1},
    {u"phone"_s, 1},   {u"platform"_s, 0},
};

static bool mayInclude(const QString &folder, const QString &target)
{
    return target == folder || (target != u"guide" && storeys[target] < storeys[folder]);
}

// The list of tasks is changed by its manager's own operations only.
template <auto Getter>
concept ReadOnly = std::is_same_v<decltype((std::declval<TaskManager &>().*Getter)()), const TaskList &>;
static_assert(ReadOnly<&TaskManager::tasks> && ReadOnly<&TaskManager::tasksInView> &&
              ReadOnly<&TaskManager::backupTasks> && ReadOnly<&TaskManager::workingList>);
static_assert(std::is_same_v<decltype(std::declval<TaskManager &>().selected()), qint64>);

class HouseTest : public QObject
{
    Q_OBJECT

private slots:
    void includesRunDownOnly()
    {
        const QRegularExpression include(u"^\\s*#\\s*include\\s+[\"<](?:\\.\\./)*([a-z]+)/"_s,
                                         QRegularExpression::MultilineOption);
        const QDir source(u"" SOURCE_DIR "/src"_s);
        qsizetype includes = 0;
        for (QDirIterator files(source.path(), {u"*.h"_s, u"*.cpp"_s}, QDir::Files,
                                QDirIterator::Subdirectories);
             files.hasNext();) {
            const QString path = source.relativeFilePath(files.next());
            const QString folder = path.section(u'/', 0, 0);
            if (folder == u"main.cpp")
                continue;
            QVERIFY2(storeys.contains(folder), qPrintable(path));
            const QString text = QString::fromUtf8(contentOf(source.filePath(path)));
            for (const QRegularExpressionMatch &match : include.globalMatch(text)) {
                const QString target = match.captured(1);
                QVERIFY2(!storeys.contains(target) || mayInclude(folder, target),
                         qPrintable(path + u": "_s + target));
                ++includes;
            }
        }
        QVERIFY(includes > 200);
        QVERIFY(!mayInclude(u"platform"_s, u"app"_s) && !mayInclude(u"tools"_s, u"contacts"_s));
    }
};

QTEST_GUILESS_MAIN(HouseTest)
#include "HouseTest.moc"
