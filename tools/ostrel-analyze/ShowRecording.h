#pragma once

// Records an audio file into a folder as the station records a show, so that a performance
// captured elsewhere can be replayed and exported like one measured live: the session file, the
// sound and the measurement frames, all on the file's own clock.
#include <memory>
#include <string>
#include <variant>

#include "common/Date.h"
#include "measurement/MeasurementInterval.h"
#include "recording/SessionRecorder.h"
#include "sessions/SessionStore.h"

namespace ostrel::analyze {

class ShowRecording {
public:
    // The folder must not hold a recording yet; it is made with its parents. The show is named
    // `name`, starts at `start` and was measured with `meterSetting` ("A / Fast"). Otherwise the
    // reason, in words.
    static std::variant<std::unique_ptr<ShowRecording>, std::string> open(const std::string& folder,
        const std::string& name, const std::string& meterSetting, Date start);

    std::shared_ptr<SessionRecorder> recorder() const { return recorder_; }
    // The date of `audioSeconds` into the file, which stamps frames and the level log.
    Date dateAt(double audioSeconds) const { return addingSeconds(start_, audioSeconds); }
    void add(const MeasurementInterval& interval, double audioSeconds);
    // Closes the files and writes "session.json"; the reason when any part failed.
    std::optional<std::string> finish(double audioSeconds);

private:
    ShowRecording(
        std::shared_ptr<SessionRecorder> recorder, std::unique_ptr<SessionStore> store, Date start);

    std::shared_ptr<SessionRecorder> recorder_;
    std::unique_ptr<SessionStore> store_;
    Date start_;
};

} // namespace ostrel::analyze
