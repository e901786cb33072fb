#include "model/TaskManager.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

/// The storeys of src/ from the roof to the ground: a folder includes only from storeys further down, except
/// that the screens that list contacts use their neighbour, and that the guide is a program of its own.
static const QList<QStringList> storeys = {
    {u"program"_s},
    {u"mainwindow"_s},
    {u"forms"_s, u"messaging"_s, u"tools"_s, u"cloud"_s, u"contacts"_s, u"taskfile"_s},
    {u"model"_s},
    {u"app"_s, u"guide"_s},
    {u"widgets"_s},
    {u"platform"_s},
};

static qsizetype storeyOf(const QString &folder)
{
    qsizetype storey = storeys.size() - 1;
    while (storey >= 0 && !storeys[storey].contains(folder))
        --storey;
    return storey;
}

static bool mayInclude(const QString &folder, const QString &target)
{
    const bool usesContacts = target == u"contacts" && (folder == u"forms" || folder == u"messaging");
    return target == folder || usesContacts || (target != u"guide" && storeyOf(target) > storeyOf(folder));
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
            QVERIFY2(storeyOf(folder) >= 0, qPrintable(path));
            QFile file(source.filePath(path));
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QString text = QString::fromUtf8(file.readAll());
            for (const QRegularExpressionMatch &match : include.globalMatch(text)) {
                const QString target = match.captured(1);
                QVERIFY2(storeyOf(target) < 0 || mayInclude(folder, target),
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
