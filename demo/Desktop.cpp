#include "Desktop.h"

#include "Stage.h"
#include "TourFailure.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"

#include <QApplication>
#include <QTest>
#include <QWidget>

using namespace Qt::StringLiterals;

Desktop::Desktop(NotificationCenter &systemNotices)
    : notices(systemNotices)
{
}

void Desktop::switchTo(const QString &appearance, const QWidget &window)
{
    Preferences::standard().setGlobalText(u"AppleInterfaceStyle"_s, appearance);
    notices.post(notice::appearanceChanged);
    const auto paletteHasArrived = [&] {
        return window.palette().color(QPalette::Base) == QApplication::palette().color(QPalette::Base);
    };
    require(QTest::qWaitFor(paletteHasArrived), u"the window does not follow the palette"_s);
}

void Desktop::picturesOf(QWidget &window, Stage &stage, const QString &name)
{
    stage.picture(window, name);
    switchTo(u"Dark"_s, window);
    stage.picture(window, name + u"-dark"_s);
    switchTo(u"Light"_s, window);
}
