#pragma once

// The station's watch on exposure: every interval's A-weighted energy and C-weighted peak into
// the exposure meter, under the profile the settings name, and one calm alert each time the
// window's level passes the limit, logged with the cue that was playing. Main thread only.
#include <functional>
#include <optional>
#include <vector>

#include <QObject>
#include <QString>

#include "common/Date.h"
#include "exposure/ExposureMeter.h"
#include "exposure/ExposureSettings.h"
#include "measurement/MeasurementInterval.h"

namespace ostrel {

class ExposureWatch : public QObject {
    Q_OBJECT

public:
    struct Passing {
        Date at;
        double level = 0.0; // the window's level when it passed
        ExposureProfile profile;
        std::optional<QString> cue;
        bool operator==(const Passing&) const = default;
    };

    ExposureWatch(
        ExposureSettings& settings, std::function<Date()> clock, QObject* parent = nullptr);

    // Applies the settings and follows them from then on.
    void start();
    // `cue` is the label of the cue playing now, if any.
    void ingest(const MeasurementInterval& interval, const std::optional<QString>& cue);
    // The start of a show.
    void reset();

    const ExposureMeter& meter() const { return meter_; }
    const ExposureReading& reading() const { return meter_.reading(); }
    const ExposureProfile& profile() const { return meter_.profile(); }
    // Every passing of the limit since the last reset, oldest first.
    const std::vector<Passing>& passings() const { return passings_; }

    // The profile in force changed; the recorder writes it with each frame.
    std::function<void(const ExposureProfile&)> onProfileChanged;

    // "LAeq 15 min passed 100 dB during 12 Thunder", or without a cue "… passed 100 dB".
    static QString passingText(const Passing& passing);
    // "LAeq 15 min", or "LEX,8h" for a daily exposure.
    static QString windowName(const ExposureProfile& profile);

signals:
    void readingChanged();
    void profileChanged();
    void limitPassed(const ostrel::ExposureWatch::Passing& passing);

private:
    void applySettings();

    ExposureSettings& settings_;
    std::function<Date()> clock_;
    ExposureMeter meter_;
    std::vector<Passing> passings_;
    bool isFollowing_ = false;
};

} // namespace ostrel
