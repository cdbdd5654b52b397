#pragma once

// The input picker: "System Default" or one of the audio input's devices, and one of its
// channels. A choice is written to the input settings at once, and the station follows them.
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include "audio/AudioInput.h"
#include "measurement/InputSettings.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class InputPickerModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::AudioInput* audio READ audio WRITE setAudio NOTIFY audioChanged)
    Q_PROPERTY(ostrel::InputSettings* input READ input WRITE setInput NOTIFY inputChanged)
    Q_PROPERTY(QString inputTitle READ inputTitle CONSTANT)
    Q_PROPERTY(QString channelTitle READ channelTitle CONSTANT)
    Q_PROPERTY(QStringList deviceTitles READ deviceTitles NOTIFY choicesChanged)
    Q_PROPERTY(int deviceIndex READ deviceIndex WRITE setDeviceIndex NOTIFY choicesChanged)
    Q_PROPERTY(QStringList channelTitles READ channelTitles NOTIFY choicesChanged)
    Q_PROPERTY(int channelIndex READ channelIndex WRITE setChannelIndex NOTIFY choicesChanged)
    Q_PROPERTY(bool choosesChannel READ choosesChannel NOTIFY choicesChanged)

public:
    AudioInput* audio() const { return audio_.data(); }
    void setAudio(AudioInput* value) { setSource(audio_, value, &InputPickerModel::audioChanged); }
    InputSettings* input() const { return input_.data(); }
    void setInput(InputSettings* value)
    {
        setSource(input_, value, &InputPickerModel::inputChanged);
    }

    explicit InputPickerModel(QObject* parent = nullptr);

    QString inputTitle() const { return QStringLiteral("Input"); }
    QString channelTitle() const { return QStringLiteral("Channel"); }
    // "System Default", the devices by name, and "Unavailable Device" while the stored device
    // is missing, so that the choice stays visible.
    QStringList deviceTitles() const { return deviceTitles_; }
    int deviceIndex() const { return deviceIndex_; }
    void setDeviceIndex(int index);
    // "Channel 1" and on, for the device the choice resolves to.
    QStringList channelTitles() const { return channelTitles_; }
    int channelIndex() const { return channelIndex_; }
    void setChannelIndex(int index);
    bool choosesChannel() const { return channelTitles_.size() > 1; }
    Q_INVOKABLE void refreshDevices();

signals:
    void audioChanged();
    void inputChanged();
    void choicesChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<AudioInput> audio_;
    QPointer<InputSettings> input_;
    QStringList deviceTitles_;
    QStringList deviceUIDs_;
    int deviceIndex_ = 0;
    QStringList channelTitles_;
    int channelIndex_ = 0;
};

} // namespace ostrel
