#include "views/dante/DanteStatusModel.h"

#include <algorithm>

#include "views/components/Theme.h"

namespace ostrel {

DanteStatusModel::DanteStatusModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

void DanteStatusModel::setShowsDante(bool value)
{
    if (value == showsDante_) return;
    showsDante_ = value;
    emit inputsChanged();
    refresh();
}

void DanteStatusModel::setVisible(bool value)
{
    if (value == isVisible_) return;
    isVisible_ = value;
    emit inputsChanged();
    refresh();
}

void DanteStatusModel::setReducedMotion(bool value)
{
    if (value == reducedMotion_) return;
    reducedMotion_ = value;
    emit reducedMotionChanged();
}

int DanteStatusModel::textColorRole() const
{
    return isWarning_ ? warningColorRole() : static_cast<int>(Theme::Role::secondary);
}

int DanteStatusModel::warningColorRole() const
{
    return static_cast<int>(Theme::Role::orange);
}

int DanteStatusModel::dotColorRole() const
{
    return static_cast<int>(Theme::Role::green);
}

QString DanteStatusModel::offlineText(const std::vector<DanteDevice>& offline)
{
    if (offline.size() == 1) return offline.front().name() + QStringLiteral(" offline");
    return QStringLiteral("%1 Dante devices offline").arg(offline.size());
}

QString DanteStatusModel::onlineText(qsizetype online)
{
    return QString::number(online)
        + (online == 1 ? QStringLiteral(" device") : QStringLiteral(" devices"));
}

QString DanteStatusModel::announcementText(const QString& name)
{
    return QStringLiteral("Dante device ") + name + QStringLiteral(" went offline");
}

void DanteStatusModel::attach()
{
    watch(dante_);
    offline_.clear();
    if (!dante_) return;
    for (const DanteDevice& device : dante_->offlineDevices())
        offline_.insert(device.name());
    track(connect(dante_, &DanteMonitor::rosterChanged, this, [this] {
        announceNewlyOffline(dante_->offlineDevices());
        refresh();
    }));
    track(connect(dante_, &DanteMonitor::problemChanged, this, &DanteStatusModel::refresh));
}

void DanteStatusModel::refresh()
{
    bool shows = false;
    bool isWarning = false;
    QString text;
    QString accessibleName;
    if (dante_ && showsDante_) {
        const auto& devices = dante_->devices();
        const std::vector<DanteDevice> offline = dante_->offlineDevices();
        const auto online = static_cast<qsizetype>(devices.size() - offline.size());
        if (dante_->hasProblem()) {
            // Said wherever the widget stands: without a daemon there is no widget.
            shows = true;
            isWarning = true;
            text = dante_->problem();
            accessibleName = text;
        } else if (isVisible_ && !offline.empty()) {
            shows = true;
            isWarning = true;
            text = offlineText(offline);
            accessibleName = QStringLiteral("Dante warning, %1 offline").arg(offline.size());
        } else if (isVisible_ && online > 0) {
            shows = true;
            text = onlineText(online);
            accessibleName = QStringLiteral("Dante, %1 devices online").arg(online);
        }
    }
    if (shows == shows_ && isWarning == isWarning_ && text == text_
        && accessibleName == accessibleName_)
        return;
    shows_ = shows;
    isWarning_ = isWarning;
    text_ = text;
    accessibleName_ = accessibleName;
    emit statusChanged();
}

void DanteStatusModel::announceNewlyOffline(const std::vector<DanteDevice>& offline)
{
    std::set<QString> now;
    for (const DanteDevice& device : offline) {
        now.insert(device.name());
        if (offline_.contains(device.name()) || !showsDante_) continue;
        lastAnnouncement_ = announcementText(device.name());
        emit announced(lastAnnouncement_);
    }
    offline_ = std::move(now);
}

} // namespace ostrel
