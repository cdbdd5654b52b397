#pragma once

// Turns the running-cue lists QLab reports into one record per run of a cue, and adds every
// measurement interval to each record that is open, so each cue gets the sound of the whole
// room while it ran.
#include <vector>

#include <QString>

#include "common/Date.h"
#include "measurement/MeasurementInterval.h"
#include "qlab/QLabCue.h"
#include "sessions/CueRecord.h"

namespace ostrel {

struct CueTracker {
    struct Changes {
        std::vector<CueRecord> started;
        std::vector<CueRecord> stopped;
        bool isEmpty() const { return started.empty() && stopped.empty(); }
    };

    // Open records, one per QLab cue ID, in ascending `start`; equal starts stay in the order
    // they opened.
    std::vector<CueRecord> active;
    std::vector<CueRecord> history; // closed records, oldest first
    int historyLimit = 2000;
    QString meterSetting; // copied into new records

    // Matches by QLab's unique ID alone: a cue that leaves the list and comes back gets a
    // second record; a new number or name is taken over while running, a new type is not.
    Changes update(const std::vector<QLabCue>& running, Date at);
    void record(const MeasurementInterval& interval);
    // Copies of the open records ended at `endingAt`, for a session that finishes while cues
    // still run; the tracker keeps them open.
    std::vector<CueRecord> activeSnapshot(Date endingAt) const;
    // The open record of a QLab cue, or null.
    const CueRecord* activeRecord(const QString& cueID) const;
};

} // namespace ostrel
