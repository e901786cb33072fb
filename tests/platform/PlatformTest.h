#pragma once

#include <QObject>

class PlatformTest : public QObject
{
    Q_OBJECT

private slots:
    void diagnosticLines();
    void diagnosticsFromManyThreads();
    void preferencesFallBackOnGlobalSettings();
    void noticesReachLivingObserversAtOnce();
    void daysOfTheUsersTimeZone();
};
