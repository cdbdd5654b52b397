#include "audio/QtAudioCaptureBackend.h"

#include <QAudioFormat>
#include <algorithm>

#include "audio/AudioCaptureWorker.h"

namespace ostrel {

namespace {
constexpr double candidateRates[] = {44100.0, 48000.0, 88200.0, 96000.0, 176400.0, 192000.0};
}

QtAudioCaptureBackend::QtAudioCaptureBackend(int pollMilliseconds, QObject* parent)
    : AudioCaptureBackend(parent)
{
    audioThread_.setObjectName(QStringLiteral("Ostrel audio"));
    worker_ = new AudioCaptureWorker;
    worker_->moveToThread(&audioThread_);
    connect(&audioThread_, &QThread::finished, worker_, &QObject::deleteLater);
    connect(worker_, &AudioCaptureWorker::failed, this, &AudioCaptureBackend::configurationChanged,
        Qt::QueuedConnection);
    audioThread_.start(QThread::TimeCriticalPriority);

    lastSnapshot_ = snapshot();
    // Newer Qt reports changes itself; 6.4 on PulseAudio and PipeWire does not, hence the poll.
    connect(&mediaDevices_, &QMediaDevices::audioInputsChanged, this, &QtAudioCaptureBackend::poll);
    connect(&pollTimer_, &QTimer::timeout, this, &QtAudioCaptureBackend::poll);
    pollTimer_.start(pollMilliseconds);
}

QtAudioCaptureBackend::~QtAudioCaptureBackend()
{
    stop();
    audioThread_.quit();
    audioThread_.wait();
}

std::vector<double> QtAudioCaptureBackend::offeredRates(int minimum, int maximum)
{
    std::vector<double> rates;
    for (double rate : candidateRates)
        if (rate >= minimum && rate <= maximum) rates.push_back(rate);
    return rates;
}

AudioInputDevice QtAudioCaptureBackend::describe(const QAudioDevice& device)
{
    const QAudioFormat preferred = device.preferredFormat();
    AudioInputDevice described;
    described.uid = QString::fromUtf8(device.id());
    described.name = device.description();
    described.inputChannels = preferred.channelCount();
    described.nominalSampleRate = preferred.sampleRate();
    described.availableSampleRates
        = offeredRates(device.minimumSampleRate(), device.maximumSampleRate());
    return described;
}

std::vector<AudioInputDevice> QtAudioCaptureBackend::inputDevices()
{
    std::vector<AudioInputDevice> devices;
    for (const auto& device : QMediaDevices::audioInputs()) {
        auto described = describe(device);
        described.nominalSampleRate = rateOf(device);
        if (described.inputChannels > 0) devices.push_back(std::move(described));
    }
    return devices;
}

std::optional<QString> QtAudioCaptureBackend::defaultInputDeviceUID()
{
    // Compare ids: isDefault() is not reliable on PulseAudio.
    const QAudioDevice device = QMediaDevices::defaultAudioInput();
    if (device.isNull()) return std::nullopt;
    return QString::fromUtf8(device.id());
}

bool QtAudioCaptureBackend::requestPermission()
{
    // Linux desktops grant capture to every program.
    return true;
}

std::optional<QAudioDevice> QtAudioCaptureBackend::find(const QString& uid) const
{
    for (const auto& device : QMediaDevices::audioInputs())
        if (QString::fromUtf8(device.id()) == uid) return device;
    return std::nullopt;
}

double QtAudioCaptureBackend::rateOf(const QAudioDevice& device) const
{
    const auto chosen = chosenRates_.find(QString::fromUtf8(device.id()));
    return chosen != chosenRates_.end() ? chosen->second : device.preferredFormat().sampleRate();
}

namespace {

QAudioFormat floatFormat(int channelCount, double sampleRate)
{
    QAudioFormat format;
    format.setChannelCount(channelCount);
    format.setSampleRate(static_cast<int>(sampleRate));
    format.setSampleFormat(QAudioFormat::Float);
    return format;
}

} // namespace

std::optional<AudioCaptureBackend::Format> QtAudioCaptureBackend::inputFormat(
    const AudioInputDevice& device)
{
    const auto found = find(device.uid);
    if (!found) return std::nullopt;
    // The device's own channel count: a mono request would be downmixed by the server, and
    // PipeWire's downmix reads 3 dB high.
    Format format;
    format.channelCount = found->preferredFormat().channelCount();
    format.sampleRate = rateOf(*found);
    format.interleaved = true;
    const QAudioFormat wanted = floatFormat(format.channelCount, format.sampleRate);
    if (!found->isFormatSupported(wanted)) return std::nullopt;
    format.largestBlock = AudioCaptureWorker::largestBlock(wanted);
    return format;
}

bool QtAudioCaptureBackend::setNominalSampleRate(const AudioInputDevice& device, double rate)
{
    const auto found = find(device.uid);
    if (!found) return false;
    const auto offered = offeredRates(found->minimumSampleRate(), found->maximumSampleRate());
    if (std::find(offered.begin(), offered.end(), rate) == offered.end()) return false;
    if (!found->isFormatSupported(floatFormat(found->preferredFormat().channelCount(), rate)))
        return false;
    chosenRates_[QString::fromUtf8(found->id())] = rate;
    return true;
}

std::optional<QString> QtAudioCaptureBackend::start(
    const AudioInputDevice& device, const Format& format, MeasurementPipeline::TapProvider tap)
{
    const auto found = find(device.uid);
    if (!found) return QStringLiteral("the device %1 is gone").arg(device.name);
    const QAudioFormat wanted = floatFormat(format.channelCount, format.sampleRate);
    std::optional<QString> error;
    QMetaObject::invokeMethod(
        worker_, [&] { error = worker_->start(*found, wanted, std::move(tap)); },
        Qt::BlockingQueuedConnection);
    return error;
}

void QtAudioCaptureBackend::stop()
{
    if (!audioThread_.isRunning()) return;
    QMetaObject::invokeMethod(
        worker_, [this] { worker_->stop(); }, Qt::BlockingQueuedConnection);
}

bool QtAudioCaptureBackend::isRunning() const
{
    bool running = false;
    QMetaObject::invokeMethod(
        worker_, [&] { running = worker_->isRunning(); }, Qt::BlockingQueuedConnection);
    return running;
}

std::optional<AudioCaptureBackend::Format> QtAudioCaptureBackend::runningFormat() const
{
    std::optional<QAudioFormat> format;
    QMetaObject::invokeMethod(
        worker_, [&] { format = worker_->format(); }, Qt::BlockingQueuedConnection);
    if (!format) return std::nullopt;
    return Format {format->channelCount(), static_cast<double>(format->sampleRate()), true};
}

QStringList QtAudioCaptureBackend::snapshot() const
{
    QStringList ids;
    for (const auto& device : QMediaDevices::audioInputs())
        ids << QString::fromUtf8(device.id());
    ids << QStringLiteral("default:") + QString::fromUtf8(QMediaDevices::defaultAudioInput().id());
    return ids;
}

void QtAudioCaptureBackend::poll()
{
    const QStringList current = snapshot();
    if (current == lastSnapshot_) return;
    lastSnapshot_ = current;
    emit devicesChanged();
}

} // namespace ostrel
