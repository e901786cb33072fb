#include "ProtectedFileTest.h"

#include "platform/ProtectedFile.h"
#include "platform/TextFile.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray oldText = "the old list, which is a good deal longer than the new one";
const QByteArray newText = "the new list";
constexpr int killed = 9;

/// A file with the old text, and what happens to it.
struct Scene
{
    QTemporaryDir folder;
    QString path = folder.filePath(u"documents/list.txt"_s);
    QString state = folder.filePath(u"state"_s);

    Scene() { writeTo(path, oldText); }

    int write(const QByteArray &text, int step, const QString &how) const
    {
        return QProcess::execute(u"" BINARY_DIR "/bin/interrupted_writer"_s,
                                 {path, state, QString::fromUtf8(text), QString::number(step), how});
    }
    QByteArray afterNextStart() const { return ProtectedFile(path, state).read().value_or("nothing"); }
    QStringList redoFiles() const { return QDir(state).entryList({u"*.redo"_s}); }
    QStringList copies() const { return QDir(QFileInfo(path).path()).entryList({u"*.damaged-*"_s}); }
    QString redoPath() const { return state + u'/' + redoFiles().value(0); }
};

/// A scene in which a write was killed when its redo file was whole and the file itself not yet touched.
std::unique_ptr<Scene> sceneWithRedoFile()
{
    for (int step = 0; step < 50; ++step) {
        auto scene = std::make_unique<Scene>();
        if (scene->write(newText, step, u"kill"_s) == killed && !scene->redoFiles().isEmpty())
            return scene;
    }
    qFatal("no step of a write leaves a redo file");
}

} // namespace

void ProtectedFileTest::interruptedWriteLosesNothing_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("the process is killed") << u"kill"_s;
    QTest::newRow("the disk is full") << u"fail"_s;
}

void ProtectedFileTest::interruptedWriteLosesNothing()
{
    QFETCH(const QString, how);
    int steps = 0;
    bool newSeen = false;
    for (int result = -1; result != EXIT_SUCCESS; ++steps) {
        QVERIFY(steps < 50);
        Scene scene;
        result = scene.write(newText, steps, how);
        QVERIFY(result == EXIT_SUCCESS || result == (how == u"kill" ? killed : EXIT_FAILURE));
        const QByteArray text = scene.afterNextStart();
        QVERIFY2(text == newText || (text == oldText && !newSeen), text);
        newSeen = newSeen || text == newText;
        QCOMPARE(contentOf(scene.path), text);
        QCOMPARE(scene.redoFiles(), QStringList());
        if (result == EXIT_SUCCESS)
            QCOMPARE(text, newText);
    }
    QVERIFY(steps > 8); // every step of the write was interrupted once
}

void ProtectedFileTest::laterWriteKeepsTheOnlyGoodCopy()
{
    // The first write dies while the file itself is half overwritten; the second dies while it makes its redo
    // file.
    for (int first = 0; first < 12; ++first) {
        for (int second = 0; second < 4; ++second) {
            Scene scene;
            if (scene.write(newText, first, u"fail"_s) == EXIT_SUCCESS || scene.redoFiles().isEmpty())
                continue;
            const QByteArray redo = contentOf(scene.redoPath());
            scene.write("the third list", second, u"kill"_s);
            const QByteArray text = scene.afterNextStart();
            QVERIFY2(text == newText || text == "the third list", text);
            QVERIFY(redo.endsWith(newText));
        }
    }
}

void ProtectedFileTest::keepsLinksAndMode()
{
    const Scene scene;
    const QString link = scene.folder.filePath(u"link.txt"_s);
    const QString hardLink = scene.folder.filePath(u"hard.txt"_s);
    QVERIFY(QFile::link(scene.path, link));
    QCOMPARE(::link(QFile::encodeName(scene.path).constData(), QFile::encodeName(hardLink).constData()), 0);
    QVERIFY(::chmod(QFile::encodeName(scene.path).constData(), 0640) == 0);

    QVERIFY(ProtectedFile(link, scene.state).write(newText));
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(contentOf(scene.path), newText);
    QCOMPARE(contentOf(hardLink), newText);
    QCOMPARE(QFileInfo(scene.path).permissions() & QFile::Permissions(0x0777),
             QFile::ReadUser | QFile::WriteUser | QFile::ReadGroup);
}

void ProtectedFileTest::copiesAsideOnceBeforeOverwriting()
{
    const Scene scene;
    ProtectedFile file(scene.path, scene.state);
    file.keepCopy();
    QVERIFY(scene.copies().isEmpty());
    QVERIFY(file.write(newText));
    QVERIFY(file.write("a third text"));
    QCOMPARE(scene.copies().size(), 1);
    const QString copy = QFileInfo(scene.path).path() + u'/' + scene.copies().constFirst();
    QCOMPARE(contentOf(copy), oldText);
    QVERIFY(QRegularExpression(u"^list\\.txt\\.damaged-\\d{8}-\\d{6}$"_s)
                .match(scene.copies().constFirst())
                .hasMatch());
}

void ProtectedFileTest::refusesToOverwriteWhatCannotBeCopied()
{
    // A folder in the file's place cannot be read, copied or written.
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"list.txt"_s);
    QVERIFY(QDir().mkpath(path));
    ProtectedFile file(path, folder.filePath(u"state"_s));
    QVERIFY(!file.read());
    QVERIFY(!file.write(newText));
    QVERIFY(QFileInfo(path).isDir());
}

void ProtectedFileTest::foreignChangeIsCopiedBeforeReplay()
{
    const auto sceneOwner = sceneWithRedoFile();
    const Scene &scene = *sceneOwner;
    writeTo(scene.path, "written by somebody else");
    QCOMPARE(scene.afterNextStart(), newText);
    QCOMPARE(scene.copies().size(), 1);
    QCOMPARE(contentOf(QFileInfo(scene.path).path() + u'/' + scene.copies().constFirst()),
             "written by somebody else");
}

void ProtectedFileTest::readsFromRedoWhereTheFileCannotBeWritten()
{
    // The folder the file belongs in is a file, so that the text stays in the redo file.
    const QTemporaryDir folder;
    const QString state = folder.filePath(u"state"_s);
    writeTo(folder.filePath(u"documents"_s), "in the way");
    const QString path = folder.filePath(u"documents/list.txt"_s);
    QVERIFY(!ProtectedFile(path, state).write(newText));
    QCOMPARE(ProtectedFile(path, state).read(), newText);
    QVERIFY(QFile::remove(folder.filePath(u"documents"_s)));
    QCOMPARE(ProtectedFile(path, state).read(), newText);
    QCOMPARE(contentOf(path), newText);
}

void ProtectedFileTest::incompleteRedoIsDropped()
{
    const auto sceneOwner = sceneWithRedoFile();
    const Scene &scene = *sceneOwner;
    const QString redoPath = scene.redoPath();
    const QByteArray redo = contentOf(redoPath);
    for (qsizetype length = 0; length < redo.size(); ++length) {
        writeTo(redoPath, redo.first(length));
        QCOMPARE(scene.afterNextStart(), oldText);
    }
    QCOMPARE(scene.redoFiles(), QStringList());
}

void ProtectedFileTest::textMustBeUtf8()
{
    const Scene scene;
    for (const QByteArray &bytes :
         {QByteArray("caf\xe9"), QByteArray("cut short \xc3"), QByteArray("\xed\xa0\x80")}) {
        writeTo(scene.path, bytes);
        TextFile file(scene.path, scene.state);
        QVERIFY(!file.read());
        QVERIFY(file.write("new"));
    }
    QVERIFY(!scene.copies().isEmpty());
    writeTo(scene.path, "Tür 🌱");
    QCOMPARE(TextFile(scene.path, scene.state).read(), u"Tür 🌱"_s);
}
