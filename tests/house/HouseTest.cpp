#include <QDirIterator>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

/// The storeys of src/ from the roof to the ground: a folder includes only from storeys further down, except
/// that the screens that list contacts use their neighbour.
static const QList<QStringList> storeys = {
    {u"mainwindow"_s}, {u"forms"_s, u"cloud"_s, u"messaging"_s, u"tools"_s, u"contacts"_s},
    {u"model"_s},      {u"app"_s},
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
    return target == folder || usesContacts || storeyOf(target) > storeyOf(folder);
}

/// The includes of one source text that do not run down the house.
static QStringList risingIncludes(const QString &folder, const QString &source)
{
    static const QRegularExpression include(u"^\\s*#\\s*include\\s+[\"<](?:\\.\\./)*([a-z]+)/"_s,
                                            QRegularExpression::MultilineOption);
    QStringList rising;
    for (const QRegularExpressionMatch &match : include.globalMatch(source)) {
        const QString target = match.captured(1);
        if (storeyOf(target) >= 0 && !mayInclude(folder, target))
            rising.append(target);
    }
    return rising;
}

class HouseTest : public QObject
{
    Q_OBJECT

private slots:
    void includesRunDownOnly()
    {
        qsizetype read = 0;
        for (QDirIterator files(u"" SOURCE_DIR "/src"_s, {u"*.h"_s, u"*.cpp"_s}, QDir::Files,
                                QDirIterator::Subdirectories);
             files.hasNext();) {
            const QString path = files.next();
            const QString folder = QDir(u"" SOURCE_DIR "/src"_s).relativeFilePath(path).section(u'/', 0, 0);
            if (folder == u"main.cpp")
                continue;
            QVERIFY2(storeyOf(folder) >= 0, qPrintable(path));
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
