#include "views/mics/MicAlertsModel.h"

#include <QVariantMap>

#include "views/components/Theme.h"
#include "views/components/Unhinged.h"

namespace ostrel {

MicAlertsModel::MicAlertsModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

void MicAlertsModel::setShows(bool value)
{
    if (value == shows_) return;
    shows_ = value;
    emit showsChanged();
    emit rowsChanged();
}

void MicAlertsModel::setScale(double value)
{
    if (value == scale_) return;
    scale_ = value;
    emit scaleChanged();
}

QString MicAlertsModel::symbol(MicIssueKind kind)
{
    switch (kind) {
    case MicIssueKind::dropout:
        return QStringLiteral("mic.slash.fill");
    case MicIssueKind::receiverOffline:
        return QStringLiteral("exclamationmark.triangle.fill");
    case MicIssueKind::lowSignal:
        return QStringLiteral("antenna.radiowaves.left.and.right");
    case MicIssueKind::lowBattery:
        return QStringLiteral("battery.25percent");
    }
    return {};
}

QString MicAlertsModel::text(const MicIssue& issue, bool unhinged)
{
    return issue.name + QStringLiteral(" \u00B7 ")
        + (unhinged ? Unhinged::title(issue.kind) : MicIssueKinds::title(issue.kind));
}

QString MicAlertsModel::accessibleName(const MicIssue& issue)
{
    return issue.name + QStringLiteral(", ") + MicIssueKinds::title(issue.kind);
}

QString MicAlertsModel::announcement(const MicIssue& issue)
{
    if (!MicIssueKinds::isUrgent(issue.kind)) return {};
    return issue.name + u' ' + MicIssueKinds::title(issue.kind);
}

void MicAlertsModel::attach()
{
    watch(mics_);
    watch(display_);
    if (mics_) track(connect(mics_, &MicMonitor::issuesChanged, this, &MicAlertsModel::refresh));
    if (display_) {
        track(connect(
            display_, &DisplaySettings::unhingedModeChanged, this, &MicAlertsModel::refresh));
    }
}

void MicAlertsModel::refresh()
{
    const bool unhinged = display_ && display_->unhingedMode();
    QVariantList rows;
    QStringList ids;
    QStringList announcements;
    if (mics_) {
        for (const MicIssue& issue : mics_->issues()) {
            const bool urgent = MicIssueKinds::isUrgent(issue.kind);
            const Theme::Role role = urgent ? Theme::Role::red : Theme::Role::orange;
            rows.append(QVariantMap {{QStringLiteral("id"), issue.id()},
                {QStringLiteral("text"), text(issue, unhinged)},
                {QStringLiteral("symbol"), symbol(issue.kind)},
                {QStringLiteral("colorRole"), static_cast<int>(role)},
                {QStringLiteral("accessibleName"), accessibleName(issue)}});
            ids.append(issue.id());
            // A recurring issue keeps its id on the list and is not announced again.
            if (!shownIds_.contains(issue.id()) && urgent)
                announcements.append(announcement(issue));
        }
    }
    shownIds_ = ids;
    if (!announcements.isEmpty()) {
        lastAnnouncements_ = announcements;
        for (const QString& line : announcements)
            emit announced(line);
    }
    if (rows == rows_) return;
    rows_ = rows;
    emit rowsChanged();
}

} // namespace ostrel
