#include "views/crew/QuickAlertBarModel.h"

#include <QVariantMap>

#include "views/components/Theme.h"

namespace ostrel {

QuickAlertBarModel::QuickAlertBarModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

void QuickAlertBarModel::setMicNames(const QStringList& value)
{
    if (value == micNames_) return;
    micNames_ = value;
    emit micNamesChanged();
    // A mic that has left the list can't be named any more.
    if (!micName_.isEmpty() && !micNames_.contains(micName_)) setMicName(QString());
}

void QuickAlertBarModel::setCueLabel(const QString& value)
{
    if (value == cueLabel_) return;
    cueLabel_ = value;
    emit cueLabelChanged();
}

void QuickAlertBarModel::setMicName(const QString& value)
{
    if (value == micName_) return;
    micName_ = value;
    emit micNameChanged();
}

int QuickAlertBarModel::micIndex() const
{
    if (micName_.isEmpty()) return 0;
    return static_cast<int>(micNames_.indexOf(micName_)) + 1;
}

void QuickAlertBarModel::setMicIndex(int index)
{
    if (index <= 0 || index > micNames_.size()) {
        setMicName(QString());
        return;
    }
    setMicName(micNames_.at(index - 1));
}

QStringList QuickAlertBarModel::micChoices() const
{
    return QStringList {QStringLiteral("No mic")} + micNames_;
}

bool QuickAlertBarModel::isEnabled(CrewLink::StatusKind status)
{
    return status == CrewLink::StatusKind::sharing || status == CrewLink::StatusKind::connected;
}

QString QuickAlertBarModel::help(QuickAlert alert)
{
    if (QuickAlerts::isUrgent(alert))
        return QStringLiteral("Urgent: flashes every screen until acknowledged");
    return QuickAlerts::title(alert);
}

QVariantList QuickAlertBarModel::alerts() const
{
    QVariantList list;
    for (const QuickAlert alert : QuickAlerts::all) {
        const bool urgent = QuickAlerts::isUrgent(alert);
        list.append(QVariantMap {{QStringLiteral("title"), QuickAlerts::title(alert)},
            {QStringLiteral("symbol"), QuickAlerts::systemImage(alert)},
            {QStringLiteral("isUrgent"), urgent},
            {QStringLiteral("colorRole"),
                static_cast<int>(urgent ? Theme::Role::red : Theme::Role::primary)},
            {QStringLiteral("help"), help(alert)}});
    }
    return list;
}

void QuickAlertBarModel::send(int index)
{
    if (!crew_ || !isEnabled_ || index < 0 || index >= static_cast<int>(QuickAlerts::all.size()))
        return;
    const QuickAlert alert = QuickAlerts::all[static_cast<std::size_t>(index)];
    const std::optional<QString> mic
        = micName_.isEmpty() ? std::nullopt : std::optional<QString>(micName_);
    const std::optional<QString> cue
        = cueLabel_.isEmpty() ? std::nullopt : std::optional<QString>(cueLabel_);
    crew_->send(QuickAlerts::text(alert, mic), QuickAlerts::isUrgent(alert), alert, cue);
}

void QuickAlertBarModel::attach()
{
    watch(crew_);
    if (crew_) track(connect(crew_, &CrewLink::statusChanged, this, [this] { refresh(); }));
}

void QuickAlertBarModel::refresh()
{
    const bool enabled = crew_ && isEnabled(crew_->statusKind());
    if (enabled == isEnabled_) return;
    isEnabled_ = enabled;
    emit isEnabledChanged();
}

} // namespace ostrel
