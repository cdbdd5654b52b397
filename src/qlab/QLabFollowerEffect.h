#pragma once

// One thing the QLab follower asks its driver to do: send a request, open or drop the line, set
// or stop a timer, or tell the station that something it shows has changed. The driver carries
// them out in the order given.
#include <variant>
#include <vector>

#include <QString>
#include <QtGlobal>

#include "qlab/OSCMessage.h"
#include "qlab/QLabCue.h"

namespace ostrel {

struct QLabFollowerEffect {
    // Dropped by the driver when no connection is up.
    struct Send {
        OSCMessage message;
        bool operator==(const Send&) const = default;
    };
    struct OpenConnection {
        QString host;
        quint16 port = 0;
        bool operator==(const OpenConnection&) const = default;
    };
    // Stops every timer too, the reconnect included.
    struct CloseConnection {
        bool operator==(const CloseConnection&) const = default;
    };
    // Replaces any reconnect already waiting.
    struct ScheduleReconnect {
        int delayMs = 0;
        bool operator==(const ScheduleReconnect&) const = default;
    };
    // Replaces any refresh already waiting, so a burst of updates asks once.
    struct ScheduleRefresh {
        int delayMs = 0;
        bool operator==(const ScheduleRefresh&) const = default;
    };
    struct StartPolling {
        bool operator==(const StartPolling&) const = default;
    };
    struct StopPolling {
        bool operator==(const StopPolling&) const = default;
    };
    // Restarts the heartbeat when it already runs.
    struct StartHeartbeat {
        bool operator==(const StartHeartbeat&) const = default;
    };
    struct StateChanged {
        bool operator==(const StateChanged&) const = default;
    };
    struct WorkspaceNameChanged {
        bool operator==(const WorkspaceNameChanged&) const = default;
    };
    struct TimecodeCueChanged {
        bool operator==(const TimecodeCueChanged&) const = default;
    };
    // Carries the list as it was then: one input may publish twice, as when a loss empties the
    // list before new cues come in.
    struct RunningCuesChanged {
        std::vector<QLabCue> cues;
        bool operator==(const RunningCuesChanged&) const = default;
    };

    std::variant<Send, OpenConnection, CloseConnection, ScheduleReconnect, ScheduleRefresh,
        StartPolling, StopPolling, StartHeartbeat, StateChanged, WorkspaceNameChanged,
        TimecodeCueChanged, RunningCuesChanged>
        value;

    bool operator==(const QLabFollowerEffect&) const = default;
};

} // namespace ostrel
