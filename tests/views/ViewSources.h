#pragma once

// What the view models show, without a station: the meter, the display and measurement settings
// over a scratch store, a live input over a scripted capture system and an unconnected QLab
// client. `show` hands a view model exactly the sources it takes.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <chrono>
#include <memory>

#include "FakeCaptureBackend.h"
#include "measurement/InputSettings.h"
#include "measurement/MeasurementSettings.h"
#include "measurement/SPLMath.h"
#include "model/DisplaySettings.h"
#include "model/MeterModel.h"
#include "qlab/client/QLabClient.h"
#include "station/AppModel.h"
#include "station/LiveInput.h"
#include "support/SteadyInterval.h"
#include "views/level/LevelGraphModel.h"
#include "views/level/LevelReadoutModel.h"
#include "views/level/MeterDescriptionModel.h"
#include "views/level/StatisticsFooterModel.h"
#include "views/main/AudioNoticeModel.h"
#include "views/main/BrightnessOverlay.h"
#include "views/main/MonitorModel.h"
#include "views/qlab/QLabStatusModel.h"

namespace ostrel::testsupport {

class ViewSources {
public:
    ViewSources(const QString& path, AppModel::Mode mode, bool withDevice)
        : mode_(mode),
          settings_(path, QSettings::IniFormat),
          store_((settings_.clear(), settings_)),
          display_(store_),
          measurement_(store_),
          input_(store_),
          live_(makeBackend(withDevice), input_, [] { return std::chrono::system_clock::now(); })
    {
    }

    AppModel::Mode mode() const { return mode_; }
    MeterModel& meter() { return meter_; }
    DisplaySettings& display() { return display_; }
    MeasurementSettings& measurement() { return measurement_; }
    LiveInput& input() { return live_; }
    InputSettings& inputSettings() { return input_; }
    AudioInput& audio() { return live_.audio(); }
    QLabClient& qlab() { return qlab_; }
    FakeCaptureBackend& backend() { return *backend_; }

private:
    std::unique_ptr<FakeCaptureBackend> makeBackend(bool withDevice)
    {
        auto fake = std::make_unique<FakeCaptureBackend>();
        if (withDevice) fake->devices = {device("mic", "Measurement Mic", 2)};
        backend_ = fake.get();
        return fake;
    }

    AppModel::Mode mode_;
    QSettings settings_;
    SettingsStore store_;
    DisplaySettings display_;
    MeasurementSettings measurement_;
    InputSettings input_;
    FakeCaptureBackend* backend_ = nullptr;
    LiveInput live_;
    MeterModel meter_;
    QLabClient qlab_;
};

inline void show(LevelReadoutModel& model, ViewSources& sources)
{
    model.setMeter(&sources.meter());
    model.setDisplay(&sources.display());
}

inline void show(LevelGraphModel& model, ViewSources& sources)
{
    model.setMeter(&sources.meter());
}

inline void show(MeterDescriptionModel& model, ViewSources& sources)
{
    model.setMeter(&sources.meter());
    model.setMeasurement(&sources.measurement());
    model.setDisplay(&sources.display());
}

inline void show(StatisticsFooterModel& model, ViewSources& sources)
{
    model.setMeter(&sources.meter());
}

inline void show(AudioNoticeModel& model, ViewSources& sources)
{
    model.setMode(sources.mode());
    model.setInput(&sources.input());
}

inline void show(BrightnessOverlay& model, ViewSources& sources)
{
    model.setDisplay(&sources.display());
}

inline void show(MonitorModel& model, ViewSources& sources)
{
    model.setMode(sources.mode());
    model.setAudio(&sources.audio());
    model.setMeter(&sources.meter());
    model.setDisplay(&sources.display());
}

inline void show(QLabStatusModel& model, ViewSources& sources)
{
    model.setQlab(&sources.qlab());
}

class ViewSourcesFixture : public ::testing::Test {
protected:
    QTemporaryDir folder;
    FakeCaptureBackend* backend = nullptr;
    Date clock = Date {} + std::chrono::hours(24 * 365 * 56);

    std::unique_ptr<ViewSources> make(AppModel::Mode mode, bool withDevice = true)
    {
        auto sources
            = std::make_unique<ViewSources>(folder.filePath("settings.ini"), mode, withDevice);
        backend = &sources->backend();
        return sources;
    }

    // A tenth of a second at `level`; `rawDBFS` decides whether it counts as signal.
    static MeasurementInterval interval(double level, double rawDBFS = -20.0, bool clipped = false)
    {
        return intervalAt(level, rawDBFS, clipped);
    }

    // Feeds `seconds` of intervals at `level` to the meter, ten a second, moving the clock on.
    void feed(ViewSources& sources, double level, double seconds, double rawDBFS = -20.0,
        bool clipped = false)
    {
        const int count = static_cast<int>(seconds * 10.0 + 0.5);
        for (int i = 0; i < count; ++i) {
            clock = addingSeconds(clock, 0.1);
            sources.meter().ingest(interval(level, rawDBFS, clipped), clock);
        }
    }

    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }
};

} // namespace ostrel::testsupport
