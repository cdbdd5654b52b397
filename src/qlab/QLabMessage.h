#pragma once

// What one message from QLab means to the station: a reply to a request, a cue starting or
// stopping, or a change in a workspace that calls for asking again.
#include <variant>

#include <QString>

#include "qlab/QLabCue.h"
#include "qlab/QLabReply.h"

namespace ostrel {

struct QLabMessage {
    struct Reply {
        QLabReply reply;
        bool operator==(const Reply&) const = default;
    };
    struct CueStarted {
        QLabCue cue;
        bool operator==(const CueStarted&) const = default;
    };
    struct CueStopped {
        QString id;
        bool operator==(const CueStopped&) const = default;
    };
    struct WorkspaceUpdated {
        QString workspaceID;
        bool operator==(const WorkspaceUpdated&) const = default;
    };
    struct CueUpdated {
        QString workspaceID;
        QString cueID;
        bool operator==(const CueUpdated&) const = default;
    };
    struct PlaybackPositionChanged {
        QString workspaceID;
        bool operator==(const PlaybackPositionChanged&) const = default;
    };
    struct Disconnect {
        QString workspaceID;
        bool operator==(const Disconnect&) const = default;
    };

    std::variant<Reply, CueStarted, CueStopped, WorkspaceUpdated, CueUpdated,
        PlaybackPositionChanged, Disconnect>
        value;

    bool operator==(const QLabMessage&) const = default;
};

} // namespace ostrel
