#include "station/LiveInput.h"

namespace ostrel {

LiveInput::LiveInput(std::unique_ptr<AudioCaptureBackend> backend, InputSettings& settings,
    Clock clock, QObject* parent)
    : QObject(parent), audio_(std::move(backend)), settings_(settings), clock_(std::move(clock))
{
    audio_.onInterval = [this](const MeasurementInterval& interval) {
        if (onInterval) onInterval(interval, clock_());
    };
}

LiveInput::~LiveInput() = default;

void LiveInput::start()
{
    audio_.start(settings_.deviceUID(), settings_.channel());
    if (isFollowing_) return;
    isFollowing_ = true;
    connect(&settings_, &SettingsGroup::changed, this, &LiveInput::applySettings);
}

void LiveInput::stop()
{
    audio_.stop();
}

void LiveInput::configure(const MeasurementSettings& settings)
{
    audio_.pipeline()->configure(settings.weighting(), settings.response(),
        settings.calibrationOffset(), settings.microphoneCorrection());
}

void LiveInput::restart()
{
    audio_.start(settings_.deviceUID(), settings_.channel());
}

void LiveInput::applySettings()
{
    if (isSuspended_) return;
    ++applies_;
    audio_.select(settings_.deviceUID(), settings_.channel());
    emit inputChanged();
}

} // namespace ostrel
