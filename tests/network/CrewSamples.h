#pragma once

// Crew values with every field set, for round trips.
#include "common/ReferenceDate.h"
#include "network/ChatMessage.h"
#include "network/MirrorState.h"

namespace ostrel::testsupport {

inline Date crewDate(double secondsSince2001)
{
    return *ReferenceDate::date(secondsSince2001);
}

inline ChatMessage sampleChat(const QString& sender = "Stalls", double at = 700'000'000.25)
{
    ChatMessage message;
    message.id = QUuid::createUuid();
    message.sender = sender;
    message.text = "Mic dead: Lead Vocal";
    message.date = crewDate(at);
    message.isUrgent = true;
    message.alert = QuickAlert::micDead;
    message.cue = "12 Storm";
    message.acknowledgedBy = {"FOH", "Backstage"};
    return message;
}

inline MirrorState sampleState()
{
    MirrorState state;
    state.station = "FOH";
    state.meterSetting = "A-weighted, Fast";
    state.isCalibrated = true;
    state.statistics.energy = 1.5e12;
    state.statistics.sampleCount = 48000;
    state.statistics.duration = 1.0;
    state.statistics.peakPower = 2.5e9;
    state.statistics.maxLevel = 96.5;
    state.qlabState = QLabClientState::connected;
    state.workspace = "Macbeth";
    QLabCue cue;
    cue.id = "A1B2";
    cue.number = "12";
    cue.name = "Storm";
    cue.type = "Audio";
    cue.actionElapsed = 3.5;
    cue.duration = 60.0;
    cue.sampledAt = crewDate(700'000'001.0);
    cue.startedAt = crewDate(700'000'000.0);
    state.cues = {cue};
    state.timecodeFallbackRate = 3;
    state.showsDante = true;
    DanteDevice device;
    device.id = "Stage-Box-1";
    device.model = "DX168";
    device.firstSeen = crewDate(699'000'000.0);
    device.lastChange = crewDate(699'000'010.0);
    state.danteDevices = {device};
    state.danteEvents = {DanteEvent {
        QUuid::createUuid(), "Stage-Box-1", DanteEvent::Kind::droppedOut, crewDate(699'500'000.0)}};
    state.showsMics = true;
    state.micIssues
        = {MicIssue {"rx1|1", "Lead Vocal", MicIssueKind::lowBattery, crewDate(699'600'000.0)}};
    state.micNames = {"Lead Vocal", "Ensemble 1"};
    return state;
}

} // namespace ostrel::testsupport
