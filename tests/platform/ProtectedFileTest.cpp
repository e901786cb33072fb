#include "platform/ProtectedFile.h"
#include "platform/FileDescriptor.h"
#include "platform/FileWatch.h"
#include "support/FullDisk.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray oldText = "the old list, which is a good deal longer than the new one";
const QByteArray newText = "the new list";
constexpr int killed = 9;
constexpr int wholeRedoFile = 6; // the steps before the file itself is touched

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
        return QProcess::execute(
            u"" BINARY_DIR "/bin/saver"_s,
            {u"text"_s, folder.path(), QString::number(step), how, QString::fromUtf8(text)});
    }
    QByteArray afterNextStart() const { return ProtectedFile(path, state).read().value_or("nothing"); }
    bool isReplayed() const
    {
        return std::ranges::all_of(ProtectedFile::replayAll(state),
                                   [](const auto &file) { return file.problem.isEmpty(); });
    }
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
        writer.start(u"" BINARY_DIR "/bin/saver"_s,
                     {u"text"_s, scene.folder.path(), u"-1"_s, u"full"_s, u"new"_s});
        QVERIFY(writer.waitForFinished());
        // The redo file with its header, its name, its folder; then the file itself.
        QCOMPARE(writer.readAllStandardError().simplified(),
                 "open write write fsync rename fsync open fallocate write ftruncate fsync unlink");
    }

    void laterWriteKeepsTheOnlyGoodCopy()
    {
        // The file itself is half overwritten and cannot be mended; the next write dies while it makes its
        // redo file.
        for (int second = 0; second < 5; ++second) {
            const Scene scene;
            QCOMPARE(scene.write(newText, 8, u"full"_s), EXIT_FAILURE);
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
        QCOMPARE(::link(qPrintable(scene.path), qPrintable(hardLink)), 0);
        QCOMPARE(::chmod(qPrintable(scene.path), 0640), 0);

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
        QCOMPARE(scene.afterNextStart(), "written by somebody else");
        QCOMPARE(copiesIn(scene.folder.filePath(u"documents"_s)), QByteArrayList{newText});
    }

    void allIsReplayedAtTheStart()
    {
        const Scene scene;
        QCOMPARE(scene.write(newText, wholeRedoFile, u"kill"_s), killed);
        const QString halfMade = scene.redoPath() + u".new"_s;
        writeTo(halfMade, "half");
        for (const QString &path : {scene.redoPath(), halfMade}) {
            const FileDescriptor ofAnotherMachine(path, O_RDWR);
            QVERIFY(ofAnotherMachine.lock());
            QVERIFY(scene.isReplayed());
            QCOMPARE(contentOf(scene.path), oldText);
            QVERIFY(!ProtectedFile(scene.path, scene.state).write("while it writes"));
        }
        QVERIFY(scene.isReplayed());
        QCOMPARE(contentOf(scene.path), newText);
        QCOMPARE(QDir(scene.state).entryList(QDir::Files), QStringList());

        // A pipe in the file's place is not waited for, and a link that leads nowhere not followed.
        QCOMPARE(scene.write("not there yet", wholeRedoFile, u"kill"_s), killed);
        QVERIFY(QFile::rename(scene.path, scene.aside));
        const QByteArray name = QFile::encodeName(scene.path);
        QCOMPARE(::mkfifo(name.constData(), 0600), 0);
        QVERIFY(!scene.isReplayed());
        QVERIFY(QFile::remove(scene.path) &&
                QFile::link(scene.folder.filePath(u"gone/list.txt"_s), scene.path));
        QVERIFY(!scene.isReplayed());
        QVERIFY(QFile::remove(scene.path) && QFile::rename(scene.aside, scene.path));
        QCOMPARE(scene.afterNextStart(), "not there yet");
    }

    void whereNoRedoFileCanBeMadeTheFileIsWritten()
    {
        const Scene scene;
        writeTo(scene.state, "in the way of the folder");
        ProtectedFile file(scene.path, scene.state);
        QVERIFY(file.write(newText));
        QCOMPARE(contentOf(scene.path), newText);
        const FullDisk full(100);
        QVERIFY(!file.write(QByteArray(200, 'x')) && !file.errorString().isEmpty());
        QCOMPARE(contentOf(scene.path), newText);
    }

    void changesAreNoticed()
    {
        const Scene scene;
        const QString link = scene.folder.filePath(u"link.txt"_s);
        QVERIFY(QFile::link(scene.path, link));
        const FileWatch watch(link);
        QSignalSpy changed(&watch, &FileWatch::mayHaveChanged);
        for (int round = 0; round < 2; ++round) {
            changed.clear();
            writeTo(scene.path, "in place");
            QTRY_VERIFY(!changed.isEmpty());
            changed.clear();
            writeTo(scene.aside, "replaced");
            QCOMPARE(::rename(qPrintable(scene.aside), qPrintable(scene.path)), 0);
            QTRY_VERIFY(!changed.isEmpty());
        }
        const QString folder = QFileInfo(scene.path).path();
        QVERIFY(QDir().rename(folder, folder + u".old"_s));
        changed.clear();
        writeTo(scene.path, "in a folder of the same name");
        QTRY_VERIFY(!changed.isEmpty());
        changed.clear();
        writeTo(scene.path, "again");
        QTRY_VERIFY(!changed.isEmpty());
    }
};

static const TestClass<ProtectedFileTest> registered;
#include "ProtectedFileTest.moc"
