#pragma once

#include <QtPlugin>

#include <functional>
#include <memory>

class QObject;

/// What the sound module offers once it is loaded.
class SoundModule
{
public:
    /// One loaded sound. Belongs to the thread that made it.
    class Sound
    {
    public:
        virtual ~Sound() = default;
        virtual void play() = 0;
    };

    virtual ~SoundModule() = default;
    /// Starts loading the file. One of the two is called once, later, on the calling thread.
    virtual std::unique_ptr<Sound> load(const QString &filePath, std::function<void()> prepared,
                                        std::function<void(const QString &)> failed) = 0;
};

Q_DECLARE_INTERFACE(SoundModule, "example.quorvane.SoundModule/1")
