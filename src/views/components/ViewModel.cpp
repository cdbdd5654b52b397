#include "views/components/ViewModel.h"

namespace ostrel {

ViewModel::ViewModel(QObject* parent) : QObject(parent) { }

ViewModel::~ViewModel()
{
    detach();
}

void ViewModel::attach() { }

void ViewModel::refresh() { }

void ViewModel::watch(QObject* source)
{
    // A source that goes reads as none from then on: its pointer is already cleared here.
    if (source) track(connect(source, &QObject::destroyed, this, &ViewModel::reattach));
}

void ViewModel::reattach()
{
    detach();
    attach();
    refresh();
}

void ViewModel::detach()
{
    for (const auto& connection : connections_)
        disconnect(connection);
    connections_.clear();
}

} // namespace ostrel
