#include <QDirIterator>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

/// The folders of src/ from the roof to the ground: a folder includes only from folders further down.
static const QStringList storeys = {u"mainwindow"_s, u"forms"_s, u"cloud"_s, u"messaging"_s, u"tools"_s,
                                    u"contacts"_s,   u"model"_s, u"app"_s,   u"platform"_s};

/// The includes of one source text that do not run down the house.
static QStringList risingIncludes(const QString &folder, const QString &source)
{
    static const QRegularExpression include(u"^\\s*#\\s*include\\s+\"([a-z]+)/"_s,
                                            QRegularExpression::MultilineOption);
    QStringList rising;
    for (const QRegularExpressionMatch &match : include.globalMatch(source)) {
        const QString target = match.captured(1);
        if (target != folder && storeys.indexOf(target) <= storeys.indexOf(folder))
            rising.append(target);
    }
    return rising;
}

class HouseTest : public QObject
{
    Q_OBJECT

private slots:
    void risingIncludesAreFound()
    {
        const QString source =
            u"#include \"app/UIUtil.h\"\n #  include \"model/task.h\"\n#include \"platform/Color.h\"\n"_s;
        QCOMPARE(risingIncludes(u"platform"_s, source), QStringList({u"app"_s, u"model"_s}));
        QCOMPARE(risingIncludes(u"model"_s, source), QStringList());
    }

    void includesRunDownOnly()
    {
        qsizetype read = 0;
        for (QDirIterator files(u"" SOURCE_DIR "/src"_s, {u"*.h"_s, u"*.cpp"_s}, QDir::Files,
                                QDirIterator::Subdirectories);
             files.hasNext();) {
            const QString path = files.next();
            const QString folder = path.section(u"/src/"_s, -1).section(u'/', 0, 0);
            if (folder == u"main.cpp")
                continue;
            QVERIFY2(storeys.contains(folder), qPrintable(path));
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QStringList rising = risingIncludes(folder, QString::fromUtf8(file.readAll()));
            QVERIFY2(rising.isEmpty(), qPrintable(path + u" includes from "_s + rising.join(u", "_s)));
            ++read;
        }
        QVERIFY(read > 20);
    }
};

QTEST_GUILESS_MAIN(HouseTest)
#include "HouseTest.moc"
