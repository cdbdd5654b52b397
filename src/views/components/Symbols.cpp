#include "views/components/Symbols.h"

#include <QFontDatabase>
#include <array>

namespace ostrel {

namespace {

constexpr std::array<Symbols::Entry, 44> entries {{
    {"sun.min", "brightness_low", "\u2212"},
    {"sun.max", "brightness_high", "+"},
    {"mic.slash", "mic_off", ""},
    {"mic.slash.fill", "mic_off", "\u2716"},
    {"mic.badge.xmark", "mic_off", "\u2716"},
    {"antenna.radiowaves.left.and.right", "settings_input_antenna", "\u224B"},
    {"battery.25percent", "battery_alert", "\u25AD"},
    {"record.circle", "radio_button_checked", "\u25C9"},
    {"exclamationmark.triangle.fill", "warning", "!"},
    {"internaldrive", "storage", "\u25A4"},
    {"list.bullet", "list", "\u2630"},
    {"play.fill", "play_arrow", "\u25B6"},
    {"pause.fill", "pause", "\u2016"},
    {"backward.end.fill", "skip_previous", "\u23EE"},
    {"forward.end.fill", "skip_next", "\u23ED"},
    {"gobackward.10", "replay_10", "\u21BA"},
    {"goforward.10", "forward_10", "\u21BB"},
    {"speaker.fill", "volume_up", "\u266B"},
    {"sidebar.right", "view_sidebar", "\u2759"},
    {"waveform", "graphic_eq", "\u223F"},
    {"chart.bar.fill", "bar_chart", "\u2581"},
    {"waveform.path.ecg", "show_chart", "\u223F"},
    {"square.grid.3x3.fill", "grid_on", "\u25A6"},
    {"mic", "mic", "\u25CF"},
    {"tuningfork", "tune", "\u2442"},
    {"speaker.wave.2", "volume_up", "\u266B"},
    {"checkmark.circle", "check_circle", "\u2713"},
    {"exclamationmark.triangle", "warning", "!"},
    {"checkmark.circle.fill", "check_circle", "\u2713"},
    {"network", "device_hub", ""},
    {"network.slash", "portable_wifi_off", ""},
    {"minus.circle", "remove_circle_outline", "\u2212"},
    {"gauge.with.dots.needle.50percent", "speed", "\u25D4"},
    {"play.rectangle", "slideshow", "\u25B7"},
    {"display", "desktop_windows", "\u25AD"},
    {"tray.full", "inbox", "\u25A4"},
    {"person.2.wave.2", "groups", "\u263A"},
    {"bubble.left.and.bubble.right", "forum", "\u2709"},
    {"paperplane.fill", "send", "\u27A4"},
    {"checkmark", "check", "\u2713"},
    {"wifi.exclamationmark", "wifi_off", "!"},
    {"arrow.triangle.2.circlepath", "sync", "\u21BB"},
    {"waveform.badge.exclamationmark", "hearing", "\u223F"},
    {"hand.raised.fill", "pan_tool", "\u270B"},
}};

bool fontInstalled = false;

} // namespace

std::span<const Symbols::Entry> Symbols::table()
{
    return entries;
}

bool Symbols::installFont(const QString& path)
{
    if (fontInstalled) return true;
    if (QFontDatabase::addApplicationFont(path) >= 0) {
        fontInstalled = true;
    } else {
        // The package may sit elsewhere on another distribution; fontconfig may still know it.
        fontInstalled = QFontDatabase::hasFamily(QString::fromLatin1(family));
    }
    return fontInstalled;
}

bool Symbols::isFontInstalled()
{
    return fontInstalled;
}

QString Symbols::text(const QString& name, bool withFont)
{
    for (const auto& entry : entries) {
        if (name == QLatin1String(entry.name))
            return withFont ? QString::fromLatin1(entry.icon) : QString::fromUtf8(entry.fallback);
    }
    return QString();
}

Symbols::Symbols(QObject* parent) : QObject(parent), hasFont_(fontInstalled) { }

QString Symbols::fontFamily() const
{
    return hasFont_ ? QString::fromLatin1(family) : QString();
}

} // namespace ostrel
