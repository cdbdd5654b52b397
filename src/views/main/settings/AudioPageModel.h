#pragma once

// The Audio page of the settings beyond the input picker: the sample rates the chosen device
// offers, and the footer that says whether audio is ever recorded.
#include <QPointer>
#include <QStringList>
#include <QtQml/qqmlregistration.h>
#include <vector>

#include "audio/AudioInput.h"
#include "measurement/InputSettings.h"
#include "sessions/SessionSettings.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class AudioPageModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::AudioInput* audio READ audio WRITE setAudio NOTIFY audioChanged)
    Q_PROPERTY(ostrel::InputSettings* input READ input WRITE setInput NOTIFY inputChanged)
    Q_PROPERTY(
        ostrel::SessionSettings* sessions READ sessions WRITE setSessions NOTIFY sessionsChanged)
    Q_PROPERTY(bool offersSampleRates READ offersSampleRates NOTIFY valuesChanged)
    Q_PROPERTY(QStringList sampleRateOptions READ sampleRateOptions NOTIFY valuesChanged)
    Q_PROPERTY(
        int sampleRateIndex READ sampleRateIndex WRITE setSampleRateIndex NOTIFY valuesChanged)
    Q_PROPERTY(QString footer READ footer NOTIFY valuesChanged)

public:
    explicit AudioPageModel(QObject* parent = nullptr);

    AudioInput* audio() const { return audio_.data(); }
    void setAudio(AudioInput* value) { setSource(audio_, value, &AudioPageModel::audioChanged); }
    InputSettings* input() const { return input_.data(); }
    void setInput(InputSettings* value) { setSource(input_, value, &AudioPageModel::inputChanged); }
    SessionSettings* sessions() const { return sessions_.data(); }
    void setSessions(SessionSettings* value)
    {
        setSource(sessions_, value, &AudioPageModel::sessionsChanged);
    }

    // "48 kHz", "44.1 kHz": the rate / 1000 with 0 or 1 decimal places.
    static QString rateText(double rate);
    // Only a device that lists its rates; a vanished device offers none.
    bool offersSampleRates() const { return !rates_.empty(); }
    QStringList sampleRateOptions() const;
    // -1 while the input runs at a rate the list does not hold.
    int sampleRateIndex() const;
    void setSampleRateIndex(int index);
    QString footer() const;

signals:
    void audioChanged();
    void inputChanged();
    void sessionsChanged();
    void valuesChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<AudioInput> audio_;
    QPointer<InputSettings> input_;
    QPointer<SessionSettings> sessions_;
    std::vector<double> rates_;
};

} // namespace ostrel
