#pragma once

#include <QObject>
#include <QString>
#include <QThread>

#include <memory>

/// Plays one short sound, again and again.
///
/// The multimedia library costs more to load than the whole rest of the program's start; it sits in a module
/// of its own that is loaded in the background. Nothing here waits for the sound system, except for a moment
/// when the program ends.
class SoundPlayer : public QObject
{
    Q_OBJECT

public:
    /// \param filePath  a sound file, in any format the desktop's media back end reads; may be a resource
    explicit SoundPlayer(const QString &filePath);
    ~SoundPlayer() override;

    /// Loads the sound, a moment later; answered by `prepared` or `failed`.
    void prepareToPlay();
    /// Plays the sound from its start; silent until it is prepared.
    void play();

signals:
    void prepared();
    void failed(const QString &reason);

private:
    class Backend;

    std::unique_ptr<QThread> thread;
    Backend *backend; ///< lives on the thread and ends with it
};
