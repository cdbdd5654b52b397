#include "views/main/MonitorModel.h"

#include "views/main/AudioNoticeModel.h"

namespace ostrel {

MonitorModel::MonitorModel(QObject* parent) : ViewModel(parent) { }

void MonitorModel::attach(AppModel& model)
{
    const auto update = [this] { refresh(); };
    track(connect(&model.audio(), &AudioInput::statusChanged, this, update));
    track(connect(&model.meter(), &MeterModel::hasSignalChanged, this, update));
    track(connect(&model.settings(), &AppSettings::showModeShowsGraphChanged, this, update));
}

void MonitorModel::refresh()
{
    AppModel* model = appModel();
    const bool readout
        = !model || !AudioNoticeModel::notice(model->mode(), model->audio().status()).has_value();
    const bool noSignal = readout && model && !model->meter().hasSignal();
    const bool graph = !model || model->settings().showModeShowsGraph();

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
