#include "views/main/SideColumnModel.h"

namespace ostrel {

SideColumnModel::SideColumnModel(QObject* parent) : ViewModel(parent) { }

void SideColumnModel::setShowsDante(bool value)
{
    if (value == showsDante_) return;
    showsDante_ = value;
    emit showsDanteChanged();
    refresh();
}

SideColumnModel::Column SideColumnModel::columnFor(
    bool showsTimecode, bool showsDante, bool hasDanteDevice)
{
    if (showsTimecode) return Column::timecode;
    if (showsDante && hasDanteDevice) return Column::dante;
    return Column::none;
}

void SideColumnModel::attach()
{
    watch(qlab_);
    watch(dante_);
    if (qlab_)
        track(connect(qlab_, &QLabClient::timecodeCueChanged, this, &SideColumnModel::refresh));
    if (dante_)
        track(connect(dante_, &DanteMonitor::rosterChanged, this, &SideColumnModel::refresh));
}

void SideColumnModel::refresh()
{
    const Column column = columnFor(qlab_ && qlab_->timecodeCue().has_value(), showsDante_,
        dante_ && !dante_->devices().empty());
    if (column == column_) return;
    column_ = column;
    emit columnChanged();
}

} // namespace ostrel
