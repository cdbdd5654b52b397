#pragma once

// Every preference of the station, as one settings group per subsystem over one store. Groups of
// subsystems join here as they land; each declares its own keys and defaults.
#include <chrono>

#include <QObject>
#include <QSettings>

#include "dante/DanteSettings.h"
#include "measurement/InputSettings.h"
#include "measurement/MeasurementSettings.h"
#include "mics/MicMonitoringSettings.h"
#include "model/DisplaySettings.h"
#include "network/CrewSettings.h"
#include "qlab/QLabSettings.h"
#include "sessions/SessionSettings.h"
#include "settings/SettingsStore.h"
#include "updates/UpdateSettings.h"

namespace ostrel {

class AppSettings : public QObject {
    Q_OBJECT
    Q_PROPERTY(ostrel::MeasurementSettings* measurement READ measurementGroup CONSTANT)
    Q_PROPERTY(ostrel::InputSettings* input READ inputGroup CONSTANT)
    Q_PROPERTY(ostrel::DisplaySettings* display READ displayGroup CONSTANT)
    Q_PROPERTY(ostrel::QLabSettings* qlab READ qlabGroup CONSTANT)
    Q_PROPERTY(ostrel::SessionSettings* sessions READ sessionsGroup CONSTANT)
    Q_PROPERTY(ostrel::DanteSettings* dante READ danteGroup CONSTANT)
    Q_PROPERTY(ostrel::UpdateSettings* updates READ updatesGroup CONSTANT)
    Q_PROPERTY(ostrel::MicMonitoringSettings* mics READ micsGroup CONSTANT)
    Q_PROPERTY(ostrel::CrewSettings* crew READ crewGroup CONSTANT)

public:
    // Reads every key once; writes nothing until a value is assigned.
    explicit AppSettings(QSettings& settings,
        std::chrono::milliseconds syncDelay = SettingsStore::defaultSyncDelay,
        QObject* parent = nullptr);

    MeasurementSettings& measurement() { return measurement_; }
    InputSettings& input() { return input_; }
    DisplaySettings& display() { return display_; }
    QLabSettings& qlab() { return qlab_; }
    SessionSettings& sessions() { return sessions_; }
    DanteSettings& dante() { return dante_; }
    UpdateSettings& updates() { return updates_; }
    MicMonitoringSettings& mics() { return mics_; }
    CrewSettings& crew() { return crew_; }
    SettingsStore& store() { return store_; }

private:
    MeasurementSettings* measurementGroup() { return &measurement_; }
    InputSettings* inputGroup() { return &input_; }
    DisplaySettings* displayGroup() { return &display_; }
    QLabSettings* qlabGroup() { return &qlab_; }
    SessionSettings* sessionsGroup() { return &sessions_; }
    DanteSettings* danteGroup() { return &dante_; }
    UpdateSettings* updatesGroup() { return &updates_; }
    MicMonitoringSettings* micsGroup() { return &mics_; }
    CrewSettings* crewGroup() { return &crew_; }

    // Declared first: the groups write into it, and it flushes last.
    SettingsStore store_;
    MeasurementSettings measurement_;
    InputSettings input_;
    DisplaySettings display_;
    QLabSettings qlab_;
    SessionSettings sessions_;
    DanteSettings dante_;
    UpdateSettings updates_;
    MicMonitoringSettings mics_;
    CrewSettings crew_;
};

} // namespace ostrel
