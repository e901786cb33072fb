#include "support/Dialogs.h"
#include "support/TestProgram.h"
#include "widgets/DatePicker.h"
#include "widgets/Screen.h"
#include "widgets/SharingServicePicker.h"
#include "widgets/WheelGuard.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QPushButton>
#include <QTimer>
#include <QUrl>
#include <QUrlQuery>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace {

/// Shares a text by the menu's entry; an alert that tells of a failure is dismissed.
class Sharing
{
public:
    Sharing() { anchor.show(); }

    void by(const QString &entry)
    {
        picker.show(anchor, Qt::LeftEdge, anchor);
        for (QAction *action : anchor.findChild<QMenu *>()->actions())
            if (action->text().remove(u'&').startsWith(entry))
                action->trigger();
    }

    const AlertAnswer failure{u"OK"_s};

private:
    QPushButton anchor;
    SharingServicePicker picker{
        {.title = u"A & B/c"_s, .text = u"line 1\n100 % ü 🌳"_s, .pictureFile = u"a picture.png"_s}};
};

/// Counts how often it came and went.
class Guest : public Screen
{
public:
    int came = 0;
    int went = 0;

protected:
    void viewWillAppear() override { ++came; }
    void viewDidAppear() override { ++came; }
    void viewWillDisappear() override { ++went; }
    void viewDidDisappear() override { ++went; }
};

} // namespace

class WidgetsTest : public QObject
{
    Q_OBJECT

private slots:
    void mailIsHandedToTheMailProgram()
    {
        for (const auto &[program, failure] : std::initializer_list<std::pair<QByteArray, QString>>{
                 {"printf '%s\\n' \"$@\" . > \"${0%/*}/arguments\"", {}},
                 {"echo no method available >&2; exit 3", u"no method available"_s},
                 {"", u"xdg-email"_s}}) { // there is none
            const QTemporaryDir folder;
            const QString path = folder.filePath(u"xdg-email"_s);
            if (!program.isEmpty()) {
                writeTo(path, "#!/bin/sh\n" + program + '\n');
                QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner);
            }
            const QByteArray searched = qgetenv("PATH");
            qputenv("PATH", folder.path().toUtf8());
            Sharing sharing;
            sharing.by(u"Mail"_s);
            qputenv("PATH", searched);
            if (!failure.isEmpty()) {
                QTRY_VERIFY_WITH_TIMEOUT(sharing.failure.wasShown(), 20'000);
                QVERIFY2(sharing.failure.informativeText.contains(failure),
                         qPrintable(sharing.failure.informativeText));
                continue;
            }
            QByteArray written;
            QTRY_VERIFY_WITH_TIMEOUT((written = contentOf(folder.filePath(u"arguments"_s))).endsWith("\n.\n"),
                                     20'000);
            const QByteArrayList arguments = written.split('\n');
            QCOMPARE(arguments.first(2), QByteArrayList({"--attach", "a picture.png"}));
            const QUrl address = QUrl::fromEncoded(arguments[2], QUrl::StrictMode);
            QCOMPARE(address.scheme(), u"mailto"_s);
            const QUrlQuery query(address);
            QCOMPARE(query.queryItemValue(u"subject"_s, QUrl::FullyDecoded), u"A & B/c"_s);
            QCOMPARE(query.queryItemValue(u"body"_s, QUrl::FullyDecoded), u"line 1\r\n100 % ü 🌳"_s);
        }
    }

    void aMinimisedScreenIsStillThere()
    {
        Guest screen;
        screen.show();
        QVERIFY(QTest::qWaitForWindowExposed(&screen, 20'000));
        QHideEvent covered;
        QShowEvent uncovered;
        for (QEvent *event : std::initializer_list<QEvent *>{&covered, &uncovered}) {
            QSpontaneKeyEvent::setSpontaneous(event); // the desktop's
            qApp->notify(&screen, event);
        }
        screen.showMinimized();
        bringToFront(screen);
        QVERIFY(!screen.isMinimized());
        QWidget other;
        other.show();
        QTRY_COMPARE_WITH_TIMEOUT(QApplication::activeWindow(), &other, 20'000);
        bringToFront(screen);
        QTRY_COMPARE_WITH_TIMEOUT(QApplication::activeWindow(), &screen, 20'000);
        QCOMPARE(std::pair(screen.came, screen.went), std::pair(2, 0));
        screen.hide();
        bringToFront(screen);
        QVERIFY(screen.isVisible());
        QCOMPARE(std::pair(screen.came, screen.went), std::pair(4, 2));
    }

    void theWheelChangesNoFieldWithoutTheFocus()
    {
        WheelGuard guard;
        qApp->installEventFilter(&guard);
        QComboBox box;
        box.addItems({u"a"_s, u"b"_s});
        DatePicker picker;
        const Instant before = picker.moment();
        for (QWidget *field : std::initializer_list<QWidget *>{&box, &picker}) {
            QWheelEvent turn({5, 5}, {5, 5}, {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(field, &turn);
        }
        QVERIFY(box.currentIndex() == 0 && picker.moment() == before);
    }

    void aFileThatCannotBeWrittenIsToldOf()
    {
        Sharing sharing;
        QString suggested;
        QTimer::singleShot(0, qApp, [&] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            suggested = QFileInfo(dialog->selectedFiles().value(0)).fileName();
            // Files of the kernel's cannot be made; not even by root.
            dialog->setDirectory(u"/sys"_s);
            dialog->selectFile(u"task"_s); // gets its suffix
            dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Save)->click();
        });
        sharing.by(u"Save"_s);
        QCOMPARE(suggested, u"A & B c.txt"_s);
        QVERIFY2(sharing.failure.informativeText.contains(u"/sys/task.txt"),
                 qPrintable(sharing.failure.informativeText));
    }
};

static const TestClass<WidgetsTest> registered;
#include "WidgetsTest.moc"
