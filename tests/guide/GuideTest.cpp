#include "guide/ViewControllerEnhancement.h"
#include "mainwindow/GuideProgram.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "support/CapturedOutput.h"
#include "support/Dialogs.h"
#include "support/TestProgram.h"
#include "widgets/Palettes.h"

#include <QApplication>
#include <QDesktopServices>
#include <QKeySequenceEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTcpServer>

#include <unistd.h>

using namespace Qt::StringLiterals;

/// The guide in the real web engine, and the program that shows it.
class GuideTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (::geteuid() == 0)
            qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1"); // which the administrator cannot have
        QDesktopServices::setUrlHandler(u"http"_s, this, "openExternal");
        screen = std::make_unique<ViewControllerEnhancement>();
        view = screen->findChild<QWebEngineView *>(u"browserView"_s);
        screen->show();
        const QSignalSpy loaded(view, &QWebEngineView::loadFinished);
        QTRY_VERIFY_WITH_TIMEOUT(!loaded.isEmpty() && view->url() == guide, 60'000);
    }

    void everyPageAndPictureIsThere()
    {
        QApplication::setPalette(palettes::dark()); // in which the pages are to be shown as well
        const QStringList pages =
            ask(u"[...document.querySelectorAll('nav a')].map(a => a.href)"_s).toStringList();
        QCOMPARE(pages.size(), QDir(u"" SOURCE_DIR "/resources/guide"_s).entryList({u"*.html"_s}).size());
        for (const QString &page : pages) {
            const QSignalSpy loaded(view, &QWebEngineView::loadFinished);
            ask(u"location.href = '%1'"_s.arg(page));
            QTRY_VERIFY_WITH_TIMEOUT(!loaded.isEmpty() && view->url() == QUrl(page), 60'000);
            QVERIFY2(loaded.last().first().toBool(), qPrintable(page));
            QVERIFY2(
                ask(u"document.images.length > 0 && [...document.images].every(i => i.naturalWidth > 100)"_s)
                    .toBool(),
                qPrintable(page));
            QCOMPARE(ask(u"document.documentElement.className"_s).toString(), u"dark"_s);
            for (const QString &link :
                 ask(u"[...document.querySelectorAll('a')].map(a => a.href)"_s).toStringList())
                QVERIFY2(link.startsWith(u"https://") || pages.contains(link), qPrintable(link));
        }
        QApplication::setPalette(palettes::light());
        QTRY_COMPARE(ask(u"document.documentElement.className"_s).toString(), u"light"_s);
        QVERIFY(screen->windowTitle().startsWith(u"Guide – "_s));
        QTest::mouseClick(view->focusProxy(), Qt::RightButton, {}, {50, 50});
        ask(u"1"_s); // after the engine has dealt with the click
        QVERIFY(view->findChildren<QMenu *>().isEmpty());
    }

    void externalLinksOpenElsewhere()
    {
        QTcpServer elsewhere;
        QVERIFY(elsewhere.listen(QHostAddress::LocalHost));
        const QSignalSpy connected(&elsewhere, &QTcpServer::newConnection);
        const QString address = u"http://127.0.0.1:%1/"_s.arg(elsewhere.serverPort());
        for (const QString &target : {u""_s, u"_blank"_s}) {
            ask(u"{ const a = document.createElement('a'); a.href = '%1'; a.target = '%2';"
                "  document.body.append(a); a.click() }"_s.arg(address, target));
            QTRY_COMPARE_WITH_TIMEOUT(external.size(), 1, 60'000);
            QCOMPARE(external.takeFirst(), QUrl(address));
        }
        ask(u"location.href = '%1'"_s.arg(address)); // nor is it loaded by a script
        const QSignalSpy loaded(view, &QWebEngineView::loadFinished);
        view->load(guide); // after it has dealt with all of that
        QTRY_VERIFY_WITH_TIMEOUT(!loaded.isEmpty() && view->url() == guide, 60'000);
        QVERIFY(connected.isEmpty());
    }

    void oneProgramIsToldEverything()
    {
        QVERIFY(!GuideProgram::isInstalled());
        placeProgram("#!/bin/sh\necho key Ctrl+Q; exec cat");
        QVERIFY(GuideProgram::isInstalled());
        CapturedOutput output;
        QKeySequenceEdit window; // takes the keys that it is sent
        GuideProgram program(notices, &window);
        program.bringToFront();
        program.bringToFront();
        Preferences::standard().setGlobalText(u"AppleInterfaceStyle"_s, u"Dark"_s);
        notices.post(notice::appearanceChanged);
        QStringList lines;
        QTRY_COMPARE((lines += output.takeLines()).join(u' '), u"light raise light raise dark"_s);
        QCOMPARE(window.keySequence(), QKeySequence(Qt::CTRL | Qt::Key_Q));
    }

    void userLearnsWhyItIsNotShown()
    {
        const std::map<QByteArray, QString> problems = {
            {"#!/bin/sh\nprintf 'a\n[1:x.cc(9)] No sandbox.\n' >&2; exit 3",
             u"status 3. F1 tries again.\n\nNo sandbox."_s},
            {"#!/bin/sh\nkill -SEGV $$", u"has crashed."_s},
            {"#!/nonexistent", u"could not be started."_s}};
        for (const auto &[script, problem] : problems) {
            placeProgram(script);
            const AlertAnswer alert(u"OK"_s);
            GuideProgram program(notices, nullptr);
            program.bringToFront();
            QTRY_VERIFY(alert.wasShown());
            QVERIFY2(alert.informativeText.contains(problem), qPrintable(alert.informativeText));
        }
    }

public slots:
    void openExternal(const QUrl &url) { external.append(url); }

private:
    /// What the expression gives in the page.
    QVariant ask(const QString &expression) const
    {
        std::optional<QVariant> answer;
        view->page()->runJavaScript(expression, [&answer](const QVariant &value) { answer = value; });
        return QTest::qWaitFor([&answer] { return answer.has_value(); }, 60'000) ? *answer : QVariant();
    }

    /// Has this file found in place of the real program.
    void placeProgram(const QByteArray &content)
    {
        const QString path = folder.filePath(u"quorvane-guide"_s);
        writeTo(path, content);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner);
        QApplication::addLibraryPath(folder.path());
    }

    const QTemporaryDir folder;
    NotificationCenter notices;
    std::unique_ptr<ViewControllerEnhancement> screen;
    QWebEngineView *view = nullptr;
    QList<QUrl> external;
    const QUrl guide{u"qrc:/guide/index.html"_s};
};

static const TestClass<GuideTest> registered;
#include "GuideTest.moc"
