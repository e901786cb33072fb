#include "platform/SoundModule.h"

#include <QAudioOutput>
#include <QFile>
#include <QMediaPlayer>
#include <QObject>

namespace {

/// One sound on Qt's media player.
class MediaSound : public QObject, public SoundModule::Sound
{
public:
    MediaSound(const QString &filePath, std::function<void()> prepared,
               std::function<void(const QString &)> failed)
        : file(filePath)
    {
        player.setAudioOutput(&output);
        connect(&player, &QMediaPlayer::mediaStatusChanged, this,
                [this, prepared = std::move(prepared)](QMediaPlayer::MediaStatus status) {
                    if (status == QMediaPlayer::LoadedMedia && !std::exchange(answered, true))
                        prepared();
                });
        connect(&player, &QMediaPlayer::errorOccurred, this,
                [this, failed = std::move(failed)](QMediaPlayer::Error, const QString &reason) {
                    if (!std::exchange(answered, true))
                        failed(reason);
                });
        file.open(QIODevice::ReadOnly);
        player.setSourceDevice(&file, QUrl::fromLocalFile(filePath));
    }

    void play() override
    {
        player.setPosition(0);
        player.play();
    }

private:
    QFile file;
    QAudioOutput output;
    QMediaPlayer player;
    bool answered = false;
};

class MediaSoundModule : public QObject, public SoundModule
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "example.quorvane.SoundModule/1")
    Q_INTERFACES(SoundModule)

public:
    std::unique_ptr<Sound> load(const QString &filePath, std::function<void()> prepared,
                                std::function<void(const QString &)> failed) override
    {
        return std::make_unique<MediaSound>(filePath, std::move(prepared), std::move(failed));
    }
};

} // namespace

#include "MediaSound.moc"
