#include "guide/ViewControllerEnhancement.h"

#include "platform/Diagnostics.h"
#include "platform/Folders.h"
#include "widgets/Alert.h"
#include "widgets/WindowSize.h"

#include <QDesktopServices>
#include <QEvent>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>
#include <QWebEngineHttpRequest>
#include <QWebEngineNewWindowRequest>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>

#include <chrono>

using namespace Qt::StringLiterals;

namespace {

const QUrl startPage(u"qrc:/guide/index.html"_s);

/// Stays within the guide; whatever else is followed or opened goes to the desktop's browser.
class GuidePage : public QWebEnginePage
{
public:
    GuidePage(QWebEngineProfile *profile, QObject *parent)
        : QWebEnginePage(profile, parent)
    {
        connect(this, &QWebEnginePage::newWindowRequested, this,
                [this](const QWebEngineNewWindowRequest &request) {
                    if (isGuide(request.requestedUrl()))
                        load(request.requestedUrl());
                    else
                        openElsewhere(request.requestedUrl());
                });
    }

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool) override
    {
        if (!isGuide(url) && type == NavigationTypeLinkClicked)
            openElsewhere(url);
        return isGuide(url);
    }

private:
    static bool isGuide(const QUrl &url) { return url.scheme() == startPage.scheme(); }

    void openElsewhere(const QUrl &url)
    {
        const auto open = [this, url] {
            if (!QDesktopServices::openUrl(url))
                alertMessage(QWebEngineView::forPage(this),
                             u"No browser could be opened for "_s + url.toDisplayString());
        };
        QMetaObject::invokeMethod(this, open, Qt::QueuedConnection); // not amid the web engine's own work
    }
};

} // namespace

ViewControllerEnhancement::ViewControllerEnhancement()
    : browserView(new QWebEngineView(this))
{
    setObjectName(u"ViewControllerEnhancement"_s);
    setWindowTitle(u"Guide"_s);
    resize(1000, 720);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(browserView);
    for (const QKeySequence &keys : {QKeySequence(QKeySequence::Close), QKeySequence(Qt::Key_Escape)})
        connect(new QShortcut(keys, this), &QShortcut::activated, this, &QDialog::close);
    for (const QKeySequence &keys : {QKeySequence(Qt::CTRL | Qt::Key_Q), QKeySequence(QKeySequence::New)})
        connect(new QShortcut(keys, this), &QShortcut::activated, this, [keys] {
            diagnostics::line("key", keys.toString());
            diagnostics::flush();
        });
    windowSize::keep(*this, folders::state());
    viewDidLoad();
}

void ViewControllerEnhancement::viewDidLoad()
{
    constexpr std::chrono::seconds timeOut(60);
    // Nothing of it is kept on disk.
    auto *profile = new QWebEngineProfile;
    auto *page = new GuidePage(profile, browserView);
    profile->setParent(page); // which it has to outlive
    connect(page, &QWebEnginePage::titleChanged, this,
            [this](const QString &title) { setWindowTitle(u"Guide – "_s + title); });
    browserView->setPage(page);
    browserView->setObjectName(u"browserView"_s);
    browserView->setContextMenuPolicy(Qt::NoContextMenu);
    auto *limit = new QTimer(browserView);
    limit->setSingleShot(true);
    connect(limit, &QTimer::timeout, browserView, &QWebEngineView::stop);
    connect(browserView, &QWebEngineView::loadFinished, limit, &QTimer::stop);
    limit->start(timeOut);
    showAppearance();
    browserView->load(QWebEngineHttpRequest(startPage));
    diagnostics::line("loadURL");
}

void ViewControllerEnhancement::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showAppearance();
}

/// The pages know both appearances and ask the root element which one it is.
void ViewControllerEnhancement::showAppearance()
{
    const QColor ground = palette().color(QPalette::Base);
    const QString mark =
        u"document.documentElement.className = '%1'"_s.arg(ground.lightness() < 128 ? u"dark"_s : u"light"_s);
    QWebEnginePage &page = *browserView->page();
    page.setBackgroundColor(ground);
    page.runJavaScript(mark);
    QWebEngineScript onEveryPage; // as soon as it has a root element, so that it is never painted otherwise
    onEveryPage.setSourceCode(u"new MutationObserver((changes, observer) => {"
                              "  if (document.documentElement) { observer.disconnect(); %1; }"
                              "}).observe(document, {childList: true});"_s.arg(mark));
    onEveryPage.setInjectionPoint(QWebEngineScript::DocumentCreation);
    onEveryPage.setWorldId(QWebEngineScript::MainWorld);
    page.scripts().clear();
    page.scripts().insert(onEveryPage);
}
