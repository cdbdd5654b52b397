#include "views/crew/LostConnectionModel.h"

namespace ostrel {

LostConnectionModel::LostConnectionModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

void LostConnectionModel::setScale(double value)
{
    if (value == scale_) return;
    scale_ = value;
    emit scaleChanged();
}

bool LostConnectionModel::isSearching(
    const std::optional<QString>& primaryName, const QStringList& available)
{
    return !primaryName && available.isEmpty();
}

QString LostConnectionModel::primaryName(
    const std::optional<QString>& primaryName, const QString& preferred)
{
    if (primaryName) return *primaryName;
    if (!preferred.isEmpty()) return preferred;
    return QStringLiteral("the primary");
}

QString LostConnectionModel::title(bool searching, const QString& name)
{
    if (searching) return QStringLiteral("Looking for the primary computer\u2026");
    return QStringLiteral("Lost connection to ") + name;
}

QString LostConnectionModel::body(bool searching)
{
    if (searching) {
        return QStringLiteral("Make sure Ostrel Live is running on the FOH computer with Crew set "
                              "to Primary, on the same network.");
    }
    return QStringLiteral("These readings aren't live. Ostrel Live will reconnect automatically.");
}

QString LostConnectionModel::symbol() const
{
    return isSearching_ ? QStringLiteral("antenna.radiowaves.left.and.right")
                        : QStringLiteral("wifi.exclamationmark");
}

void LostConnectionModel::attach()
{
    watch(crew_);
    watch(settings_);
    const auto update = [this] { refresh(); };
    if (crew_) {
        track(connect(crew_, &CrewLink::primaryNameChanged, this, update));
        track(connect(crew_, &CrewLink::availablePrimariesChanged, this, update));
    }
    if (settings_) track(connect(settings_, &CrewSettings::primaryChanged, this, update));
}

void LostConnectionModel::refresh()
{
    const std::optional<QString> current = crew_ ? crew_->primaryName() : std::nullopt;
    const bool searching
        = isSearching(current, crew_ ? crew_->availablePrimaries() : QStringList());
    const QString newTitle
        = title(searching, primaryName(current, settings_ ? settings_->primary() : QString()));
    if (searching == isSearching_ && newTitle == title_) return;
    isSearching_ = searching;
    title_ = newTitle;
    emit textChanged();
}

} // namespace ostrel
