#pragma once

// A station for view model tests: an AppModel over a scripted capture system and preferences in
// a scratch folder, with intervals made to order.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <chrono>
#include <memory>

#include "FakeCaptureBackend.h"
#include "measurement/SPLMath.h"
#include "station/AppModel.h"
#include "support/SteadyInterval.h"

namespace ostrel::testsupport {

class StationFixture : public ::testing::Test {
protected:
    QTemporaryDir folder;
    std::unique_ptr<QSettings> store;
    FakeCaptureBackend* backend = nullptr;
    Date clock = Date {} + std::chrono::hours(24 * 365 * 56);

    std::unique_ptr<AppModel> make(AppModel::Mode mode, bool withDevice = true)
    {
        store = std::make_unique<QSettings>(folder.filePath("settings.ini"), QSettings::IniFormat);
        store->clear();
        auto fake = std::make_unique<FakeCaptureBackend>();
        if (withDevice) fake->devices = {device("mic", "Measurement Mic", 2)};
        backend = fake.get();
        return std::make_unique<AppModel>(
            mode, std::make_unique<AppSettings>(*store), std::move(fake));
    }

    // A tenth of a second at `level`; `rawDBFS` decides whether it counts as signal.
    static MeasurementInterval interval(double level, double rawDBFS = -20.0, bool clipped = false)
    {
        return intervalAt(level, rawDBFS, clipped);
    }

    // Feeds `seconds` of intervals at `level`, ten a second, moving the clock on.
    void feed(
        AppModel& model, double level, double seconds, double rawDBFS = -20.0, bool clipped = false)
    {
        const int count = static_cast<int>(seconds * 10.0 + 0.5);
        for (int i = 0; i < count; ++i) {
            clock = addingSeconds(clock, 0.1);
            model.ingest(interval(level, rawDBFS, clipped), clock);
        }
    }

    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }
};

} // namespace ostrel::testsupport
