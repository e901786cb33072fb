#include "app/WebPage.h"
#include "support/CapturedOutput.h"
#include "support/TestProgram.h"

#include <QDesktopServices>
#include <QDialog>
#include <QSignalSpy>
#include <QWebEngineView>

#include <unistd.h>

using namespace Qt::StringLiterals;

/// The guide in the real web engine.
class GuideTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (::geteuid() == 0)
            qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1"); // which the administrator cannot have
        QVERIFY(!webPage::isInstalled());
        QApplication::addLibraryPath(u"" BINARY_DIR "/bin/" MODULE_PATH ""_s);
        QVERIFY(webPage::isInstalled());
        QDesktopServices::setUrlHandler(u"https"_s, this, "openExternal");
        CapturedOutput output;
        QString problem;
        screen.reset(webPage::makeScreen(nullptr, problem));
        QVERIFY2(screen, qPrintable(problem));
        QVERIFY(output.takeLines().contains(u"loadURL"_s));
        view = screen->findChild<QWebEngineView *>(u"browserView"_s);
        screen->show();
        const QSignalSpy loaded(view, &QWebEngineView::loadFinished);
        QTRY_COMPARE_WITH_TIMEOUT(loaded.size(), 1, 60'000);
    }

    void everyPageAndPictureIsThere()
    {
        const QStringList pages =
            ask(u"[...document.querySelectorAll('nav a')].map(a => a.href)"_s).toStringList();
        QVERIFY(pages.size() >= 9);
        for (const QString &page : pages) {
            const QSignalSpy loaded(view, &QWebEngineView::loadFinished);
            ask(u"location.href = '%1'"_s.arg(page));
            QTRY_COMPARE_WITH_TIMEOUT(loaded.size(), 1, 60'000);
            QVERIFY2(loaded.first().first().toBool(), qPrintable(page));
            QVERIFY2(
                ask(u"document.images.length > 0 && [...document.images].every(i => i.naturalWidth > 100)"_s)
                    .toBool(),
                qPrintable(page));
            QCOMPARE(ask(u"document.documentElement.className"_s).toString(), u"light"_s);
            for (const QString &link :
                 ask(u"[...document.querySelectorAll('a')].map(a => a.getAttribute('href'))"_s)
                     .toStringList())
                QVERIFY2(link.startsWith(u"https://") ||
                             QFile::exists(u"" SOURCE_DIR "/resources/guide/"_s + link),
                         qPrintable(link));
        }
    }

    void externalLinksOpenElsewhere()
    {
        const QSignalSpy loaded(view, &QWebEngineView::loadFinished);
        view->load(QUrl(u"qrc:/guide/index.html"_s));
        QTRY_VERIFY_WITH_TIMEOUT(!loaded.isEmpty(), 60'000);
        ask(u"document.querySelector('a[href^=https]').click()"_s);
        QTRY_COMPARE_WITH_TIMEOUT(external.size(), 1, 60'000);
        QCOMPARE(external.first().scheme(), u"https"_s);
        ask(u"location.href = 'http://127.0.0.1:1/'"_s); // not even by a script
        QCOMPARE(ask(u"location.pathname"_s).toString(), u"/guide/index.html"_s);
        QCOMPARE(view->url(), QUrl(u"qrc:/guide/index.html"_s));
    }

    void cleanupTestCase() { QDesktopServices::unsetUrlHandler(u"https"_s); }

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

    std::unique_ptr<QDialog> screen;
    QWebEngineView *view = nullptr;
    QList<QUrl> external;
};

int main(int argc, char **argv)
{
    return runTests<GuideTest>(argc, argv);
}

#include "GuideTest.moc"
