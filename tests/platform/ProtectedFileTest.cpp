#include "platform/ProtectedFile.h"
#include "support/ScratchHome.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray oldText = "the old list, which is a good deal longer than the new one";
const QByteArray newText = "the new list";
constexpr int killed = 9;
constexpr int wholeRedoFile = 5; // the steps before the file itself is touched

/// A file with the old text, and what happens to it.
struct Scene
{
    QTemporaryDir folder;
    QString path = folder.filePath(u"documents/list.txt"_s);
    QString state = folder.filePath(u"state"_s);
    QString aside = folder.filePath(u"aside"_s);

    Scene() { writeTo(path, oldText); }

    int write(const QByteArray &text, int step, const QString &how) const
    {
        return QProcess::execute(u"" BINARY_DIR "/bin/interrupted_writer"_s,
                                 {path, state, QString::fromUtf8(text), QString::number(step), how});
    }
    QByteArray afterNextStart() const { return ProtectedFile(path, state).read().value_or("nothing"); }
    QStringList redoFiles() const { return QDir(state).entryList({u"*.redo"_s}); }
    /// Puts a folder in the file's way, or gives it its place back.
    bool block() const { return QFile::rename(path, aside) && QDir().mkpath(path); }
    bool unblock() const { return QDir().rmdir(path) && QFile::rename(aside, path); }
    QString redoPath() const { return state + u'/' + redoFiles().value(0); }
};

} // namespace

class ProtectedFileTest : public QObject
{
    Q_OBJECT

private slots:
    void everyStepReachesTheDisk()
    {
        const Scene scene;
        QProcess writer;
        writer.start(u"" BINARY_DIR "/bin/interrupted_writer"_s,
                     {scene.path, scene.state, u"new"_s, u"-1"_s, u"fail"_s});
        QVERIFY(writer.waitForFinished());
        // The redo file with its header, its name, its folder; then the file itself.
        QCOMPARE(writer.readAllStandardError().simplified(),
                 "write write fsync rename fsync fallocate write ftruncate fsync");
    }

    void interruptedWriteLosesNothing()
    {
        for (const QString &how : {u"kill"_s, u"fail"_s}) { // the process, as on a full disk
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
                QVERIFY(result != EXIT_SUCCESS || text == newText);
            }
        }
    }

    void aReplacedFileIsTheOldOrTheNewOne()
    {
        for (const QString &how : {u"kill"_s, u"fail"_s}) {
            Scene scene;
            scene.state.clear();
            int steps = 0;
            while (scene.write(newText, steps, how) != EXIT_SUCCESS) {
                const QByteArray text = contentOf(scene.path);
                QVERIFY2(text == (steps < 3 ? oldText : newText),
                         text); // written, flushed and named, each once
                QVERIFY(++steps < 5);
            }
            QCOMPARE(contentOf(scene.path), newText);
        }
    }

    void laterWriteKeepsTheOnlyGoodCopy()
    {
        // The file itself is half overwritten and cannot be mended; the next write dies while it makes its
        // redo file.
        for (int second = 0; second < 4; ++second) {
            const Scene scene;
            QCOMPARE(scene.write(newText, 6, u"fail"_s), EXIT_FAILURE);
            const QByteArray redo = contentOf(scene.redoPath());
            QVERIFY(redo.endsWith(newText));
            QVERIFY(scene.block());
            QCOMPARE(scene.write("the third list", second, u"kill"_s), killed);
            QVERIFY(scene.unblock());
            QCOMPARE(scene.afterNextStart(), newText);
        }
    }

    void changesByOthersAreCopiedAside()
    {
        const Scene scene;
        QVERIFY(QFile::remove(scene.path));
        ProtectedFile file(scene.path, scene.state);
        QVERIFY(!file.read());
        writeTo(scene.path, "turned up later"); // a folder that was mounted late
        for (const char *own : {"our own change", "is no reason", "is no reason"})
            QVERIFY(file.write(own));
        QVERIFY(QFile::remove(scene.path));
        writeTo(scene.path, "is no reason"); // as by a program that copies it back and forth
        QVERIFY(file.write("for a copy"));
        writeTo(scene.path, "synchronised from elsewhere");
        QVERIFY(file.write("for a copy"));
        file.keepCopy();
        QVERIFY(file.write("for a copy") && file.write("for a copy"));
        QCOMPARE(copiesIn(scene.folder.filePath(u"documents"_s)),
                 QByteArrayList({"turned up later", "synchronised from elsewhere", "for a copy"}));
        const QStringList names = QFileInfo(scene.path).dir().entryList(QDir::Files);
        QVERIFY(QRegularExpression(u"^list\\.txt\\.damaged-\\d{8}-\\d{6}$"_s).match(names[1]).hasMatch());
    }

    void contentThatReturnsIsNotOvertakenByOneThatFailed()
    {
        const Scene scene;
        ProtectedFile file(scene.path, scene.state);
        QVERIFY(file.write(newText));
        QVERIFY(scene.block());
        QVERIFY(!file.write("only in the redo file") && !file.errorString().isEmpty());
        QVERIFY(scene.unblock());
        QVERIFY(file.write(newText));
        QCOMPARE(scene.afterNextStart(), newText);
    }

    void keepsLinksAndMode()
    {
        const Scene scene;
        const QString link = scene.folder.filePath(u"link.txt"_s);
        const QString hardLink = scene.folder.filePath(u"hard.txt"_s);
        QVERIFY(QFile::link(scene.path, link));
        QCOMPARE(::link(QFile::encodeName(scene.path).constData(), QFile::encodeName(hardLink).constData()),
                 0);
        QVERIFY(::chmod(QFile::encodeName(scene.path).constData(), 0640) == 0);

        QVERIFY(ProtectedFile(link, scene.state).write(newText));
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(contentOf(scene.path), newText);
        QCOMPARE(contentOf(hardLink), newText);
        QCOMPARE(QFileInfo(scene.path).permissions() & QFile::Permissions(0x0777),
                 QFile::ReadUser | QFile::WriteUser | QFile::ReadGroup);
    }

    void refusesToOverwriteWhatCannotBeCopied()
    {
        // There are names of this length for the redo file, but none for the copy.
        const QTemporaryDir folder;
        const QString path = folder.filePath(QString(235, u'n'));
        writeTo(path, oldText);
        ProtectedFile file(path, folder.filePath(u"state"_s));
        QCOMPARE(file.read(), oldText);
        file.keepCopy();
        QVERIFY(!file.write(newText));
        QCOMPARE(contentOf(path), oldText);
        QCOMPARE(file.read(), newText); // from the redo file
    }

    void readsFromRedoWhereTheFileCannotBeWritten()
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

    void onlyAWholeRedoFileIsReplayed()
    {
        const Scene scene;
        QCOMPARE(scene.write(newText, wholeRedoFile, u"kill"_s), killed);
        const QString redoPath = scene.redoPath();
        const QByteArray redo = contentOf(redoPath);
        QVERIFY(redo.endsWith(newText));
        QCOMPARE(QFileInfo(redoPath).permissions() & QFile::Permissions(0x0077), QFile::Permissions());
        for (qsizetype length = 0; length < redo.size(); ++length) {
            QByteArray flipped = redo;
            flipped[length] = char(flipped[length] ^ 1);
            for (const QByteArray &broken : {redo.first(length), flipped}) {
                writeTo(redoPath, broken);
                QCOMPARE(scene.afterNextStart(), oldText);
            }
        }
        QCOMPARE(scene.redoFiles(), QStringList());
        writeTo(redoPath, redo);
        writeTo(scene.path, "written by somebody else");
        QCOMPARE(scene.afterNextStart(), newText);
        QCOMPARE(copiesIn(scene.folder.filePath(u"documents"_s)), QByteArrayList{"written by somebody else"});
    }
};

static const TestClass<ProtectedFileTest> registered;
#include "ProtectedFileTest.moc"
