#pragma once

// What a primary publishes besides its levels, twice a second.
#include <cstdint>
#include <optional>
#include <vector>

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include "dante/DanteDevice.h"
#include "dante/DanteEvent.h"
#include "measurement/LevelStatistics.h"
#include "mics/MicIssue.h"
#include "qlab/QLabClientState.h"
#include "qlab/QLabCue.h"

namespace ostrel {

struct MirrorState {
    QString station;
    QString meterSetting;
    bool isCalibrated = false;
    LevelStatistics statistics;
    QLabClientState qlabState = QLabClientState::off;
    std::optional<QString> workspace;
    std::vector<QLabCue> cues;
    std::int64_t timecodeFallbackRate = 0;
    bool showsDante = false;
    std::vector<DanteDevice> danteDevices;
    std::vector<DanteEvent> danteEvents;
    bool showsMics = false;
    std::vector<MicIssue> micIssues;
    QStringList micNames;

    // Every key required on decoding except "workspace", left out when absent.
    QJsonObject toJson() const;
    static std::optional<MirrorState> fromJson(const QJsonObject& object);

    bool operator==(const MirrorState&) const = default;
};

} // namespace ostrel
