#pragma once

// What the main screen shows where, beyond the scale: the readout or the audio notice, the
// no-signal line, the graph row, and the captions of the screen's own sections.
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "audio/AudioInput.h"
#include "model/DisplaySettings.h"
#include "model/MeterModel.h"
#include "station/AppModel.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class MonitorModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::AppModel::Mode mode READ mode WRITE setMode NOTIFY modeChanged)
    Q_PROPERTY(ostrel::AudioInput* audio READ audio WRITE setAudio NOTIFY audioChanged)
    Q_PROPERTY(ostrel::MeterModel* meter READ meter WRITE setMeter NOTIFY meterChanged)
    Q_PROPERTY(ostrel::DisplaySettings* display READ display WRITE setDisplay NOTIFY displayChanged)
    Q_PROPERTY(bool showsReadout READ showsReadout NOTIFY showsReadoutChanged)
    Q_PROPERTY(bool showsNoSignalText READ showsNoSignalText NOTIFY showsNoSignalTextChanged)
    Q_PROPERTY(bool showsGraph READ showsGraph NOTIFY showsGraphChanged)
    Q_PROPERTY(QString noSignalText READ noSignalText CONSTANT)
    Q_PROPERTY(QString currentCueCaption READ currentCueCaption CONSTANT)
    Q_PROPERTY(QString levelCaption READ levelCaption CONSTANT)
    Q_PROPERTY(QString spectrumCaption READ spectrumCaption CONSTANT)

public:
    // Demo and inert stations never show the audio notice.
    AppModel::Mode mode() const { return mode_; }
    void setMode(AppModel::Mode value);
    AudioInput* audio() const { return audio_.data(); }
    void setAudio(AudioInput* value) { setSource(audio_, value, &MonitorModel::audioChanged); }
    MeterModel* meter() const { return meter_.data(); }
    void setMeter(MeterModel* value) { setSource(meter_, value, &MonitorModel::meterChanged); }
    DisplaySettings* display() const { return display_.data(); }
    void setDisplay(DisplaySettings* value)
    {
        setSource(display_, value, &MonitorModel::displayChanged);
    }

    explicit MonitorModel(QObject* parent = nullptr);

    // The audio notice takes the readout's place.
    bool showsReadout() const { return showsReadout_; }
    bool showsNoSignalText() const { return showsNoSignalText_; }
    bool showsGraph() const { return showsGraph_; }
    QString noSignalText() const { return QStringLiteral("No audio signal detected."); }
    QString currentCueCaption() const { return QStringLiteral("CURRENT CUE"); }
    QString levelCaption() const { return QStringLiteral("LEVEL"); }
    QString spectrumCaption() const { return QStringLiteral("SPECTRUM"); }

signals:
    void modeChanged();
    void audioChanged();
    void meterChanged();
    void displayChanged();
    void showsReadoutChanged();
    void showsNoSignalTextChanged();
    void showsGraphChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    AppModel::Mode mode_ = AppModel::Mode::live;
    QPointer<AudioInput> audio_;
    QPointer<MeterModel> meter_;
    QPointer<DisplaySettings> display_;
    bool showsReadout_ = true;
    bool showsNoSignalText_ = false;
    bool showsGraph_ = true;
};

} // namespace ostrel
