#pragma once

#include <QObject>

/// Tells when another day begins for the user: at midnight, after a sleep, when the clock is set, and when
/// the time zone changes. Nothing runs in between.
class DayWatch : public QObject
{
    Q_OBJECT

public:
    explicit DayWatch(QObject *parent = nullptr);
    ~DayWatch() override;

signals:
    void dayMayHaveChanged();

private:
    void waitForMidnight();

    int timer;
};
