#pragma once

#include <QFutureWatcher>
#include <QtConcurrent/QtConcurrentRun>

/// Does the work on a thread of the pool and hands its result to the receiver on the receiver's own thread,
/// unless that has gone by then. The work may use only what it holds itself.
template <typename Work, typename Take>
void inBackground(QObject &receiver, Work work, Take take)
{
    using Result = decltype(work());
    auto *watcher = new QFutureWatcher<Result>(&receiver);
    QObject::connect(watcher, &QFutureWatcher<Result>::finished, &receiver, [watcher, take] {
        watcher->deleteLater();
        take(watcher->result());
    });
    watcher->setFuture(QtConcurrent::run(work));
}
