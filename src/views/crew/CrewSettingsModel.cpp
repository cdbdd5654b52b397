#include "views/crew/CrewSettingsModel.h"

namespace ostrel {

namespace {

QString fromView(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

CrewSettingsModel::CrewSettingsModel(QObject* parent) : ViewModel(parent) { }

QString CrewSettingsModel::summary(CrewRole role)
{
    QString text = fromView(CrewRoles::summary(role));
    if (role != CrewRole::standalone) {
        text += QStringLiteral(
            " Every computer running Ostrel Live on this network can join and read the chat.");
    }
    return text;
}

QStringList CrewSettingsModel::primaryTitles(const QString& stored, const QStringList& available)
{
    QStringList titles {QStringLiteral("First one found")};
    titles += available;
    if (!stored.isEmpty() && !available.contains(stored))
        titles.append(stored + QStringLiteral(" (not found)"));
    return titles;
}

QStringList CrewSettingsModel::primaryValues(const QString& stored, const QStringList& available)
{
    QStringList values {QString()};
    values += available;
    if (!stored.isEmpty() && !available.contains(stored)) values.append(stored);
    return values;
}

QStringList CrewSettingsModel::roleChoices()
{
    QStringList titles;
    for (const CrewRole role : CrewRoles::all)
        titles.append(fromView(CrewRoles::title(role)));
    return titles;
}

int CrewSettingsModel::roleIndex() const
{
    const CrewRole current = role();
    for (std::size_t index = 0; index < CrewRoles::all.size(); ++index)
        if (CrewRoles::all[index] == current) return static_cast<int>(index);
    return 0;
}

void CrewSettingsModel::setRoleIndex(int index)
{
    if (!settings_ || index < 0 || index >= static_cast<int>(CrewRoles::all.size())) return;
    settings_->setRole(CrewRoles::all[static_cast<std::size_t>(index)]);
}

void CrewSettingsModel::setStationName(const QString& value)
{
    if (settings_) settings_->setStationName(value);
}

QStringList CrewSettingsModel::primaryChoices() const
{
    return primaryTitles(settings_ ? settings_->primary() : QString(), available());
}

int CrewSettingsModel::primaryIndex() const
{
    const QString stored = settings_ ? settings_->primary() : QString();
    return static_cast<int>(primaryValues(stored, available()).indexOf(stored));
}

void CrewSettingsModel::setPrimaryIndex(int index)
{
    if (!settings_) return;
    const QStringList values = primaryValues(settings_->primary(), available());
    if (index < 0 || index >= values.size()) return;
    settings_->setPrimary(values.at(index));
}

void CrewSettingsModel::clearChat()
{
    if (crew_) crew_->clearMessages();
}

void CrewSettingsModel::attach()
{
    watch(crew_);
    watch(settings_);
    const auto update = [this] { emit valuesChanged(); };
    if (crew_) track(connect(crew_, &CrewLink::availablePrimariesChanged, this, update));
    if (settings_) {
        for (auto signal : {&CrewSettings::roleChanged, &CrewSettings::stationNameChanged,
                 &CrewSettings::primaryChanged})
            track(connect(settings_, signal, this, update));
    }
}

void CrewSettingsModel::refresh()
{
    emit valuesChanged();
}

} // namespace ostrel
