#include "audio/AudioInput.h"

#include <QPointer>
#include <algorithm>

#include "audio/AudioLog.h"
#include "common/NaturalOrder.h"

namespace ostrel {

AudioInput::AudioInput(std::unique_ptr<AudioCaptureBackend> backend, QObject* parent)
    : QObject(parent),
      backend_(std::move(backend)),
      pipeline_(std::make_shared<MeasurementPipeline>())
{
    restartTimer_.setSingleShot(true);
    restartTimer_.setInterval(defaultRestartDelayMs);
    connect(&restartTimer_, &QTimer::timeout, this, [this] {
        if (wantsToRun_) restart();
    });
    connect(backend_.get(), &AudioCaptureBackend::configurationChanged, this,
        &AudioInput::onConfigurationChanged);
}

AudioInput::~AudioInput()
{
    stopEngine();
}

void AudioInput::sortByName(std::vector<AudioInputDevice>& devices)
{
    std::stable_sort(
        devices.begin(), devices.end(), [](const AudioInputDevice& a, const AudioInputDevice& b) {
            return NaturalOrder::compare(a.name, b.name) < 0;
        });
}

void AudioInput::refreshDevices()
{
    auto devices = backend_->inputDevices();
    sortByName(devices);
    if (devices == devices_) return;
    devices_ = std::move(devices);
    emit devicesChanged();
}

std::optional<AudioInputDevice> AudioInput::resolvedDevice(const QString& uid) const
{
    if (uid.isEmpty()) {
        if (const auto defaultUID = backend_->defaultInputDeviceUID()) {
            for (const auto& device : devices_)
                if (device.uid == *defaultUID) return device;
        }
        if (!devices_.empty()) return devices_.front();
        return std::nullopt;
    }
    for (const auto& device : devices_)
        if (device.uid == uid) return device;
    return std::nullopt;
}

void AudioInput::start(const QString& deviceUID, qint64 channel)
{
    requestedUID_ = deviceUID;
    requestedChannel_ = channel;
    wantsToRun_ = true;
    refreshDevices();
    if (!listening_) {
        connect(backend_.get(), &AudioCaptureBackend::devicesChanged, this,
            &AudioInput::onDevicesChanged);
        listening_ = true;
    }
    if (!backend_->requestPermission()) {
        qCInfo(ostrelAudio, "Microphone access denied");
        setStatus(Status::permissionDenied);
        return;
    }
    restart();
}

void AudioInput::stop()
{
    // A pending restart stays scheduled and finds wantsToRun_ false.
    wantsToRun_ = false;
    stopEngine();
    setStatus(Status::stopped);
}

void AudioInput::select(const QString& deviceUID, qint64 channel)
{
    if (deviceUID == requestedUID_ && channel == requestedChannel_) return;
    requestedUID_ = deviceUID;
    requestedChannel_ = channel;
    if (wantsToRun_ && status_ != Status::permissionDenied) restart();
}

void AudioInput::setSampleRate(double rate)
{
    if (!activeDevice_ || activeDevice_->nominalSampleRate == rate) return;
    // The rate belongs to the device, not to the input: another interface keeps its own. A rate
    // the device refuses changes nothing and says nothing; the running capture goes on.
    if (!backend_->setNominalSampleRate(*activeDevice_, rate)) return;
    restart();
}

// Does not cancel a pending debounced restart: only a new hardware event moves that.
void AudioInput::restart()
{
    ++restartCount_;
    stopEngine();
    refreshDevices();

    const auto device = resolvedDevice(requestedUID_);
    if (!device) {
        setActiveDevice(std::nullopt);
        setStatus(Status::deviceUnavailable);
        return;
    }
    // Only a missing device clears activeDevice: one that fails to start stays the chosen one.
    const auto format = backend_->inputFormat(*device);
    if (!format || format->channelCount < 1 || !(format->sampleRate > 0.0)) {
        setStatus(Status::deviceUnavailable);
        return;
    }

    // A channel that no longer exists falls back to the last one that does.
    const qint64 channel
        = std::min<qint64>(format->channelCount - 1, std::max<qint64>(requestedChannel_, 0));
    qCInfo(ostrelAudio, "Starting %s: %u ch @ %f Hz, interleaved: %s", qUtf8Printable(device->name),
        static_cast<unsigned>(format->channelCount), format->sampleRate,
        format->interleaved ? "true" : "false");
    pipeline_->prepare(format->sampleRate);

    QPointer<AudioInput> self(this);
    auto tap = MeasurementPipeline::makeTapProvider(
        pipeline_, static_cast<int>(channel),
        static_cast<std::size_t>(std::max(format->largestBlock, 0)),
        [self](MeasurementInterval interval) {
            // The owner may be gone by the time the main thread gets here.
            if (self && self->onInterval) self->onInterval(interval);
        },
        [self](std::function<void()> task) {
            if (self) QMetaObject::invokeMethod(self.data(), std::move(task), Qt::QueuedConnection);
        });

    if (const auto error = backend_->start(*device, *format, std::move(tap))) {
        qCWarning(ostrelAudio, "engine.start failed: %s", qUtf8Printable(*error));
        setStatus(Status::failed);
        return;
    }
    engineRunning_ = true;
    measuredChannel_ = channel;
    setActiveDevice(device);
    if (channelCount_ != format->channelCount) {
        channelCount_ = format->channelCount;
        emit channelCountChanged();
    }
    if (sampleRate_ != format->sampleRate) {
        sampleRate_ = format->sampleRate;
        emit sampleRateChanged();
    }
    setStatus(Status::running);
}

void AudioInput::stopEngine()
{
    if (!engineRunning_) return;
    backend_->stop();
    engineRunning_ = false;
}

void AudioInput::scheduleRestart()
{
    // A burst of hardware events collapses into one restart after the last of them.
    restartTimer_.start();
}

void AudioInput::onDevicesChanged()
{
    refreshDevices();
    if (!wantsToRun_ || status_ == Status::permissionDenied) return;
    const auto resolved = resolvedDevice(requestedUID_);
    const bool bothAbsent = !resolved && !activeDevice_;
    const bool same = resolved && activeDevice_ && resolved->uid == activeDevice_->uid;
    if ((bothAbsent || same) && status_ == Status::running) return;
    scheduleRestart();
}

void AudioInput::onConfigurationChanged()
{
    if (!engineRunning_) return;
    // Such notifications are frequent and mostly harmless: same format, still running.
    const auto format = backend_->runningFormat();
    if (backend_->isRunning() && format && format->sampleRate == sampleRate_
        && format->channelCount == channelCount_)
        return;
    qCInfo(ostrelAudio, "Audio configuration changed; restarting");
    scheduleRestart();
}

void AudioInput::setStatus(Status status)
{
    if (status == status_) return;
    status_ = status;
    emit statusChanged();
}

void AudioInput::setActiveDevice(std::optional<AudioInputDevice> device)
{
    if (device == activeDevice_) return;
    activeDevice_ = std::move(device);
    emit activeDeviceChanged();
}

} // namespace ostrel
