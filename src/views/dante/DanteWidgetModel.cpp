#include "views/dante/DanteWidgetModel.h"

#include <QVariantMap>
#include <algorithm>

#include "views/components/Theme.h"

namespace ostrel {

DanteWidgetModel::DanteWidgetModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

void DanteWidgetModel::setScale(double value)
{
    if (value == scale_) return;
    scale_ = value;
    emit scaleChanged();
    emit layoutChanged();
}

int DanteWidgetModel::gridColumns() const
{
    const auto fitting = static_cast<int>(
        (maximumWidth() - 2.0 * padding() + gridSpacing()) / (gridItemWidth() + gridSpacing()));
    const auto wanted = static_cast<int>((listed_.size() + 3) / 4);
    return std::max(1, std::min(wanted, fitting));
}

double DanteWidgetModel::gridWidth() const
{
    const int columns = gridColumns();
    return columns * gridItemWidth() + (columns - 1) * gridSpacing();
}

int DanteWidgetModel::countColorRole() const
{
    return static_cast<int>(hasOffline_ ? Theme::Role::orange : Theme::Role::primary);
}

void DanteWidgetModel::attach()
{
    watch(dante_);
    if (dante_)
        track(connect(dante_, &DanteMonitor::rosterChanged, this, &DanteWidgetModel::refresh));
}

void DanteWidgetModel::refresh()
{
    const std::vector<DanteDevice> devices
        = dante_ ? dante_->devices() : std::vector<DanteDevice> {};
    std::vector<DanteDevice> offline;
    for (const DanteDevice& device : devices)
        if (!device.isOnline) offline.push_back(device);
    const auto total = static_cast<qsizetype>(devices.size());
    const auto online = total - static_cast<qsizetype>(offline.size());

    hasOffline_ = !offline.empty();
    if (hasOffline_) {
        countText_ = QStringLiteral("%1 of %2 online").arg(online).arg(total);
        detailText_ = offline.size() == 1
            ? offline.front().name() + QStringLiteral(" offline")
            : QStringLiteral("%1 devices offline").arg(offline.size());
        accessibleName_ = QStringLiteral("Dante warning, %1 offline, %2 of %3 online")
                              .arg(offline.size())
                              .arg(online)
                              .arg(total);
    } else {
        countText_ = QString::number(online);
        detailText_
            = online == 1 ? QStringLiteral("device online") : QStringLiteral("devices online");
        accessibleName_ = QStringLiteral("Dante, %1 devices online").arg(online);
    }
    listed_.clear();
    // Offline first, so problems are the last to fall off.
    for (qsizetype i = 0; i < std::min<qsizetype>(total, maximumListed); ++i) {
        const DanteDevice& device = devices[static_cast<std::size_t>(i)];
        listed_.append(QVariantMap {{QStringLiteral("name"), device.name()},
            {QStringLiteral("isOnline"), device.isOnline},
            {QStringLiteral("colorRole"),
                static_cast<int>(device.isOnline ? Theme::Role::green : Theme::Role::orange)},
            {QStringLiteral("textColorRole"),
                static_cast<int>(device.isOnline ? Theme::Role::secondary : Theme::Role::orange)}});
    }
    moreText_
        = total > maximumListed ? QStringLiteral("%1 more").arg(total - maximumListed) : QString();
    emit contentChanged();
    emit layoutChanged();
}

} // namespace ostrel
