#include "platform/SoundPlayer.h"

#include "platform/SoundModule.h"

#include <QPluginLoader>
#include <QTimer>

namespace {

/// The part of the player that lives on its thread.
class Backend : public QObject
{
public:
    explicit Backend(SoundPlayer *soundPlayer)
        : player(soundPlayer)
    {
    }

    void load(const QString &path)
    {
        QPluginLoader loader(QStringLiteral("quorvanesound"));
        auto *module = qobject_cast<SoundModule *>(loader.instance());
        if (!module) {
            emit player->failed(loader.errorString());
            return;
        }
        sound = module->load(
            path, [this] { emit player->prepared(); },
            [this](const QString &reason) { emit player->failed(reason); });
    }

    void play()
    {
        if (sound)
            sound->play();
    }

private:
    SoundPlayer *player;
    std::unique_ptr<SoundModule::Sound> sound;
};

} // namespace

SoundPlayer::SoundPlayer(const QString &filePath)
    : path(filePath)
    , backend(new Backend(this))
{
    backend->moveToThread(&thread);
    connect(&thread, &QThread::finished, backend, &QObject::deleteLater);
    thread.start(QThread::LowPriority);
}

SoundPlayer::~SoundPlayer()
{
    thread.quit();
    thread.wait();
}

void SoundPlayer::prepareToPlay()
{
    // Loading keeps the disk and a core busy; the first window is painted before that.
    constexpr std::chrono::seconds startFirst(1);
    auto *worker = static_cast<Backend *>(backend);
    QTimer::singleShot(startFirst, worker, [worker, file = path] { worker->load(file); });
}

void SoundPlayer::play()
{
    auto *worker = static_cast<Backend *>(backend);
    QMetaObject::invokeMethod(worker, [worker] { worker->play(); });
}
