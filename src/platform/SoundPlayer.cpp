#include "platform/SoundPlayer.h"

#include "platform/SoundModule.h"

#include <QPluginLoader>
#include <QTimer>

/// The part of the player that lives on its thread.
class SoundPlayer::Backend : public QObject
{
    Q_OBJECT

public:
    explicit Backend(const QString &filePath)
        : path(filePath)
    {
    }

    void load()
    {
        QPluginLoader loader(QStringLiteral("quorvanesound"));
        if (auto *module = qobject_cast<SoundModule *>(loader.instance()))
            sound = module->load(
                path, [this] { emit prepared(); }, [this](const QString &reason) { emit failed(reason); });
        else
            emit failed(loader.errorString());
    }

    void play()
    {
        if (sound)
            sound->play();
    }

signals:
    void prepared();
    void failed(const QString &reason);

private:
    QString path;
    std::unique_ptr<SoundModule::Sound> sound;
};

SoundPlayer::SoundPlayer(const QString &filePath)
    : thread(std::make_unique<QThread>())
    , backend(new Backend(filePath))
{
    backend->moveToThread(thread.get());
    // At once, on the sound's own thread: a deletion for later is not made any more when the application
    // ends.
    connect(
        thread.get(), &QThread::finished, backend, [target = backend] { delete target; },
        Qt::DirectConnection);
    connect(backend, &Backend::prepared, this, &SoundPlayer::prepared);
    connect(backend, &Backend::failed, this, &SoundPlayer::failed);
    thread->start(QThread::LowPriority);
}

SoundPlayer::~SoundPlayer()
{
    constexpr unsigned long patience = 2000; // milliseconds
    thread->quit();
    if (!thread->wait(patience))
        thread.release()->disconnect(); // a sound system that hangs is left to the end of the process
}

void SoundPlayer::prepareToPlay()
{
    // Loading keeps the disk and a core busy; the first window is painted before that.
    static constexpr std::chrono::seconds startFirst(1);
    // On the sound's own thread, with which the timer ends.
    QMetaObject::invokeMethod(backend,
                              [target = backend] { QTimer::singleShot(startFirst, target, &Backend::load); });
}

void SoundPlayer::play()
{
    QMetaObject::invokeMethod(backend, &Backend::play);
}

#include "SoundPlayer.moc"
