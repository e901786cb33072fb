#pragma once

#include <QObject>

class DesktopTest : public QObject
{
    Q_OBJECT

private slots:
    void appearanceFollowsThePortal();
    void noPortalIsLight();
    void secondStartShowsTheFirst();
    void secondStartWithoutBusEnds();
};
