#pragma once

// The sound of a recorded show as the player drives it: started at a position, stopped, and
// asked where it is. Its clock, when it has one, is the master of replay; the player runs on
// the wall clock where it has none.
#include <optional>

namespace ostrel {

class ReplayAudio {
public:
    virtual ~ReplayAudio() = default;

    // Seconds of sound, without the encoder's priming.
    virtual double duration() const = 0;
    // Restarts the sound at `seconds`; false when it can't be played. A position at or past
    // the end plays nothing and is no failure.
    virtual bool play(double seconds) = 0;
    virtual void stop() = 0;
    // The position of what is heard now; nothing while no sound is being played.
    virtual std::optional<double> currentSeconds() const = 0;
    virtual float volume() const = 0;
    virtual void setVolume(float volume) = 0;
};

} // namespace ostrel
