#include "views/main/settings/AudioPageModel.h"

#include <algorithm>
#include <cmath>

namespace ostrel {

AudioPageModel::AudioPageModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

QString AudioPageModel::rateText(double rate)
{
    const double kilohertz = std::round(rate / 100.0) / 10.0;
    const bool whole = kilohertz == std::floor(kilohertz);
    return QString::number(kilohertz, 'f', whole ? 0 : 1) + QStringLiteral(" kHz");
}

QStringList AudioPageModel::sampleRateOptions() const
{
    QStringList result;
    for (double rate : rates_)
        result << rateText(rate);
    return result;
}

int AudioPageModel::sampleRateIndex() const
{
    if (!audio_) return -1;
    const auto found = std::find(rates_.begin(), rates_.end(), audio_->sampleRate());
    return found == rates_.end() ? -1 : static_cast<int>(found - rates_.begin());
}

void AudioPageModel::setSampleRateIndex(int index)
{
    if (audio_ && index >= 0 && index < static_cast<int>(rates_.size()))
        audio_->setSampleRate(rates_[static_cast<std::size_t>(index)]);
}

QString AudioPageModel::footer() const
{
    if (!sessions_ || sessions_->recordsSessions())
        return QStringLiteral("Audio is analysed in real time. It's recorded only during a "
                              "session, for replay, and stays on this Mac.");
    return QStringLiteral("Audio is analysed in real time and never recorded.");
}

void AudioPageModel::attach()
{
    watch(audio_);
    watch(input_);
    watch(sessions_);
    if (audio_) {
        for (auto signal : {&AudioInput::devicesChanged, &AudioInput::sampleRateChanged,
                 &AudioInput::activeDeviceChanged})
            track(connect(audio_, signal, this, &AudioPageModel::refresh));
    }
    if (input_)
        track(connect(input_, &InputSettings::deviceUIDChanged, this, &AudioPageModel::refresh));
    if (sessions_)
        track(connect(
            sessions_, &SessionSettings::recordsSessionsChanged, this, &AudioPageModel::refresh));
}

void AudioPageModel::refresh()
{
    rates_.clear();
    if (audio_) {
        if (const auto device = audio_->resolvedDevice(input_ ? input_->deviceUID() : QString()))
            rates_ = device->availableSampleRates;
    }
    emit valuesChanged();
}

} // namespace ostrel
