#pragma once

// Sound for the player's tests: remembers what it was asked and reports the position a test
// sets, so no test waits for real sound.
#include <optional>
#include <vector>

#include "replay/ReplayAudio.h"

namespace ostrel::replay_test {

struct FakeSoundState {
    double duration = 0.0;
    bool failsToPlay = false;
    bool isPlaying = false;
    std::optional<double> heard; // what currentSeconds reports while playing
    std::vector<double> playedFrom;
    int stopCount = 0;
    float volume = 1.0F;
};

class FakeReplayAudio : public ReplayAudio {
public:
    explicit FakeReplayAudio(FakeSoundState& state) : state_(state) { }

    double duration() const override { return state_.duration; }
    bool play(double seconds) override
    {
        state_.playedFrom.push_back(seconds);
        if (state_.failsToPlay) return false;
        state_.isPlaying = true;
        return true;
    }
    void stop() override
    {
        ++state_.stopCount;
        state_.isPlaying = false;
    }
    std::optional<double> currentSeconds() const override
    {
        return state_.isPlaying ? state_.heard : std::nullopt;
    }
    float volume() const override { return state_.volume; }
    void setVolume(float volume) override { state_.volume = volume; }

private:
    FakeSoundState& state_;
};

} // namespace ostrel::replay_test
