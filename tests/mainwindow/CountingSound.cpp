#include "platform/SoundModule.h"

#include <QCoreApplication>

/// The sound module of a machine that anybody can listen to: the application's property "plays" counts.
class CountingSound : public QObject, public SoundModule
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "example.quorvane.SoundModule/1")
    Q_INTERFACES(SoundModule)

public:
    std::unique_ptr<Sound> load(const QString &, std::function<void()> prepared,
                                std::function<void(const QString &)>) override
    {
        struct Counted : Sound
        {
            void play() override
            {
                QMetaObject::invokeMethod(
                    qApp, [] { qApp->setProperty("plays", qApp->property("plays").toInt() + 1); });
            }
        };
        QMetaObject::invokeMethod(this, std::move(prepared), Qt::QueuedConnection);
        return std::make_unique<Counted>();
    }
};

#include "CountingSound.moc"
