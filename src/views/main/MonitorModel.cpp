#include "views/main/MonitorModel.h"

#include "views/main/AudioNoticeModel.h"

namespace ostrel {

MonitorModel::MonitorModel(QObject* parent) : ViewModel(parent) { }

void MonitorModel::attach()
{
    const auto update = [this] { refresh(); };
    watch(audio_);
    watch(meter_);
    watch(display_);
    if (audio_) track(connect(audio_, &AudioInput::statusChanged, this, update));
    if (meter_) track(connect(meter_, &MeterModel::hasSignalChanged, this, update));
    if (display_)
        track(connect(display_, &DisplaySettings::showModeShowsGraphChanged, this, update));
}

void MonitorModel::setMode(AppModel::Mode value)
{
    if (value == mode_) return;
    mode_ = value;
    emit modeChanged();
    refresh();
}

void MonitorModel::refresh()
{
    const bool readout = !audio_ || !AudioNoticeModel::notice(mode_, audio_->status()).has_value();
    const bool noSignal = readout && meter_ && !meter_->hasSignal();
    const bool graph = !display_ || display_->showModeShowsGraph();

    if (readout != showsReadout_) {
        showsReadout_ = readout;
        emit showsReadoutChanged();
    }
    if (noSignal != showsNoSignalText_) {
        showsNoSignalText_ = noSignal;
        emit showsNoSignalTextChanged();
    }
    if (graph != showsGraph_) {
        showsGraph_ = graph;
        emit showsGraphChanged();
    }
}

} // namespace ostrel
