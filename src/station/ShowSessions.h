#pragma once

// The shows of this station: owns the session store, feeds it intervals and running cues, and
// keeps it told of the meter setting, the correction and what a show keeps. The recorder and the
// show flow join here. Main thread only.
#include <vector>

#include <QObject>

#include "measurement/MeasurementSettings.h"
#include "qlab/QLabCue.h"
#include "sessions/SessionSettings.h"
#include "sessions/SessionStore.h"

namespace ostrel {

class ShowSessions : public QObject {
    Q_OBJECT

public:
    ShowSessions(const SessionSettings& settings, const MeasurementSettings& measurement,
        QObject* parent = nullptr);

    // Applies the settings and follows them from then on.
    void start();
    void ingest(const MeasurementInterval& interval, Date at);
    void updateRunningCues(const std::vector<QLabCue>& cues, Date at);

    SessionStore& store() { return store_; }

private:
    void applySettings();
    void applyMeasurementSettings();

    const SessionSettings& settings_;
    const MeasurementSettings& measurement_;
    SessionStore store_;
    bool isFollowing_ = false;
};

} // namespace ostrel
