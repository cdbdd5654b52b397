#include "views/calibration/InputPickerModel.h"

namespace ostrel {

InputPickerModel::InputPickerModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

void InputPickerModel::setDeviceIndex(int index)
{
    if (!input_ || index < 0 || index >= deviceUIDs_.size()) return;
    input_->setDeviceUID(deviceUIDs_.at(index));
}

void InputPickerModel::setChannelIndex(int index)
{
    if (!input_ || index < 0 || index >= channelTitles_.size()) return;
    input_->setChannel(index);
}

void InputPickerModel::refreshDevices()
{
    if (audio_) audio_->refreshDevices();
}

void InputPickerModel::attach()
{
    const auto update = [this] { refresh(); };
    watch(audio_);
    watch(input_);
    if (audio_) track(connect(audio_, &AudioInput::devicesChanged, this, update));
    if (input_) {
        track(connect(input_, &InputSettings::deviceUIDChanged, this, update));
        track(connect(input_, &InputSettings::channelChanged, this, update));
    }
}

void InputPickerModel::refresh()
{
    const QString uid = input_ ? input_->deviceUID() : QString();
    QStringList titles {QStringLiteral("System Default")};
    QStringList uids {QString()};
    if (audio_) {
        for (const auto& device : audio_->devices()) {
            titles << device.name;
            uids << device.uid;
        }
    }
    if (!uid.isEmpty() && !uids.contains(uid)) {
        titles << QStringLiteral("Unavailable Device");
        uids << uid;
    }
    QStringList channels;
    if (audio_) {
        if (const auto device = audio_->resolvedDevice(uid)) {
            for (qint64 channel = 1; channel <= device->inputChannels; ++channel)
                channels << QStringLiteral("Channel %1").arg(channel);
        }
    }
    const int deviceIndex = static_cast<int>(uids.indexOf(uid));
    const int channelIndex = input_ ? static_cast<int>(input_->channel()) : 0;
    if (titles == deviceTitles_ && uids == deviceUIDs_ && deviceIndex == deviceIndex_
        && channels == channelTitles_ && channelIndex == channelIndex_)
        return;
    deviceTitles_ = titles;
    deviceUIDs_ = uids;
    deviceIndex_ = deviceIndex;
    channelTitles_ = channels;
    channelIndex_ = channelIndex;
    emit choicesChanged();
}

} // namespace ostrel
