#pragma once

// A player over frames in memory and fake sound, on a clock the test moves by hand.
#include <functional>
#include <memory>
#include <optional>

#include <gtest/gtest.h>

#include "FakeReplayAudio.h"
#include "ReplaySamples.h"
#include "replay/SessionPlayer.h"

namespace ostrel::replay_test {

class PlayerTest : public ::testing::Test {
protected:
    std::unique_ptr<SessionPlayer> player(std::optional<RecordingFrames> recorded,
        std::optional<double> soundDuration, std::vector<CueRecord> cues = {},
        double graphDuration = 60.0)
    {
        std::unique_ptr<ReplayAudio> audio;
        if (soundDuration) {
            sound.duration = *soundDuration;
            audio = std::make_unique<FakeReplayAudio>(sound);
        }
        SessionPlayer::Options options;
        options.graphDuration = graphDuration;
        options.now = [this] { return clock; };
        options.runsTicker = false;
        options.runInBackground = [this](auto build, auto store) {
            pendingOverview
                = [build = std::move(build), store = std::move(store)] { store(build()); };
        };
        return std::make_unique<SessionPlayer>(
            session(std::move(cues)), std::move(recorded), std::move(audio), options);
    }

    void passes(double seconds) { clock = addingSeconds(clock, seconds); }

    void finishOverview()
    {
        ASSERT_TRUE(pendingOverview);
        auto job = std::move(pendingOverview);
        pendingOverview = nullptr;
        job();
    }

    Date clock = addingSeconds(showStart, 86'400.0);
    FakeSoundState sound;
    std::function<void()> pendingOverview;
};

// The statistics of every frame whose audio time is at or before `seconds`, added up directly.
inline LevelStatistics statisticsUpTo(const RecordingFrames& recorded, double seconds)
{
    LevelStatistics result;
    for (qsizetype index = 0; index < recorded.count(); ++index) {
        if (*recorded.audioTime(index) > seconds) break;
        result.add(recorded.frame(index, false)->interval);
    }
    return result;
}

} // namespace ostrel::replay_test
