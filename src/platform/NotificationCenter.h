#pragma once

#include <QObject>
#include <QString>

#include <utility>

/// Passes named notices to whoever observes them, synchronously, on the posting thread (the main thread).
class NotificationCenter : public QObject
{
    Q_OBJECT

public:
    /// Calls `handler()` at every notice of this name, as long as `observer` lives.
    template <typename Handler>
    void observe(const QString &name, QObject *observer, Handler handler)
    {
        connect(this, &NotificationCenter::posted, observer,
                [name, handler = std::move(handler)](const QString &notice) {
                    if (notice == name)
                        handler();
                });
    }

    void post(const QString &name) { emit posted(name); }

signals:
    void posted(const QString &name);
};

/// The notices of the program, by name.
namespace notice {
using namespace Qt::StringLiterals;
/// The task list changed; on the application's own centre.
inline const QString reload = u"reload"_s;
/// There is a new status text; on the application's own centre.
inline const QString update = u"update"_s;
/// The desktop switched between light and dark; on the system-wide centre.
inline const QString appearanceChanged = u"AppleInterfaceThemeChangedNotification"_s;
} // namespace notice
