#include "views/components/ViewModel.h"

namespace ostrel {

ViewModel::ViewModel(QObject* parent) : QObject(parent) { }

ViewModel::~ViewModel()
{
    detach();
}

void ViewModel::setAppModel(AppModel* model)
{
    if (model == model_) return;
    detach();
    model_ = model;
    if (model) {
        track(connect(model, &QObject::destroyed, this, [this] {
            detach();
            refresh();
            emit appModelChanged();
        }));
        attach(*model);
    }
    refresh();
    emit appModelChanged();
}

void ViewModel::attach(AppModel&) { }

void ViewModel::refresh() { }

void ViewModel::detach()
{
    for (const auto& connection : connections_)
        disconnect(connection);
    connections_.clear();
}

} // namespace ostrel
