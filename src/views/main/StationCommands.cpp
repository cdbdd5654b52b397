#include "views/main/StationCommands.h"

namespace ostrel {

namespace {
// Steps of a tenth add up to a hair below the bound; that hair is not a step left to take.
constexpr double tolerance = 1e-9;
} // namespace

StationCommands::StationCommands(QObject* parent) : ViewModel(parent) { }

bool StationCommands::canBrighten() const
{
    return appModel_
        && appModel_->settings().display().screenBrightness()
        < DisplaySettings::brightestBrightness - tolerance;
}

bool StationCommands::canDim() const
{
    return appModel_
        && appModel_->settings().display().screenBrightness()
        > DisplaySettings::dimmestBrightness + tolerance;
}

void StationCommands::resetPeakAndLeq()
{
    if (appModel_) appModel_->meter().resetStatistics();
}

void StationCommands::brighter()
{
    if (!appModel_) return;
    DisplaySettings& display = appModel_->settings().display();
    display.setScreenBrightness(display.screenBrightness() + brightnessStep);
}

void StationCommands::dimmer()
{
    if (!appModel_) return;
    DisplaySettings& display = appModel_->settings().display();
    display.setScreenBrightness(display.screenBrightness() - brightnessStep);
}

void StationCommands::checkForUpdates()
{
    if (appModel_) appModel_->updater().checkForUpdates();
}

void StationCommands::attach()
{
    watch(appModel_);
    if (!appModel_) return;
    track(connect(&appModel_->settings().display(), &DisplaySettings::screenBrightnessChanged, this,
        [this] { refresh(); }));
    track(connect(&appModel_->updater(), &AppUpdater::canCheckForUpdatesChanged, this,
        [this] { refresh(); }));
}

void StationCommands::refresh()
{
    emit changed();
}

} // namespace ostrel
