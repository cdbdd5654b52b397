#include "station/DanteWatch.h"

#include <array>

namespace ostrel {

DanteWatch::DanteWatch(DanteSettings& settings, QObject* parent)
    : QObject(parent), settings_(settings)
{
}

void DanteWatch::start()
{
    applySettings();
    if (isFollowing_) return;
    isFollowing_ = true;
    connect(&settings_, &SettingsGroup::changed, this, &DanteWatch::applySettings);
}

void DanteWatch::applySettings()
{
    if (isSuspended_) return;
    monitor_.setEnabled(settings_.monitoringEnabled());
}

DanteRoster DanteWatch::sampleRoster(bool withDropout, Date now)
{
    struct Row {
        const char* name;
        const char* model;
        const char* maker;
    };
    static constexpr std::array<Row, 6> rows {{
        {"FOH-Desk", "SQ-7", "Allen & Heath"},
        {"Stage-Box-1", "DX168", "Allen & Heath"},
        {"Stage-Box-2", "DX168", "Allen & Heath"},
        {"QLab-Mac", "DVS", "Audinate"},
        {"Amp-Rack-L", "D80", "d&b audiotechnik"},
        {"Amp-Rack-R", "D80", "d&b audiotechnik"},
    }};
    DanteRoster roster;
    int n = 20;
    for (const Row& row : rows) {
        const QString name = QString::fromUtf8(row.name);
        roster.seen(name,
            {{QStringLiteral("model"), QString::fromUtf8(row.model)},
                {QStringLiteral("mf"), QString::fromUtf8(row.maker)},
                {QStringLiteral("router_vers"), QStringLiteral("4.2.1")}},
            addingSeconds(now, -600.0));
        roster.setAddress(QStringLiteral("192.168.1.") + QString::number(n++), name);
    }
    if (withDropout) roster.lost(QStringLiteral("Stage-Box-2"), addingSeconds(now, -42.0));
    return roster;
}

} // namespace ostrel
