#include "views/spectrum/SpectrogramImage.h"

#include <algorithm>
#include <cmath>

namespace ostrel::SpectrogramImage {

namespace {

constexpr std::array<QRgb, 5> darkStops {qRgb(0x0D, 0x36, 0x6B), qRgb(0x1C, 0x5C, 0xAB),
    qRgb(0x39, 0x87, 0xE5), qRgb(0x86, 0xB6, 0xEF), qRgb(0xCD, 0xE2, 0xFB)};

Palette makePalette(bool dark)
{
    std::array<QRgb, 5> stops = darkStops;
    if (!dark) std::reverse(stops.begin(), stops.end());
    Palette result {};
    for (int i = 0; i < 256; ++i) {
        const double value = i / 255.0;
        const double position = value * 4.0;
        const int k = std::min(3, static_cast<int>(position));
        const double t = position - k;
        const auto channel = [&](int (*part)(QRgb)) {
            return part(stops[k]) + t * (part(stops[k + 1]) - part(stops[k]));
        };
        // Premultiplied: the quietest levels let the background through.
        const double fade = std::min(5.0 * value, 1.0);
        result[i] = qRgba(static_cast<int>(channel(qRed) * fade),
            static_cast<int>(channel(qGreen) * fade), static_cast<int>(channel(qBlue) * fade),
            static_cast<int>(fade * 255.0));
    }
    return result;
}

} // namespace

Range range(std::optional<float> maximum)
{
    const double top = maximum ? static_cast<double>(*maximum) : 50.0;
    const double high = std::max(std::ceil((top + 3.0) / 10.0) * 10.0, 50.0);
    return {high - 60.0, high};
}

const Palette& palette(bool dark)
{
    static const Palette darkPalette = makePalette(true);
    static const Palette lightPalette = makePalette(false);
    return dark ? darkPalette : lightPalette;
}

QRgb color(float level, Range range, const Palette& palette)
{
    const double value = static_cast<double>(level);
    if (!(value > range.low)) return 0;
    const double fraction
        = std::min((value - range.low) / std::max(range.high - range.low, 1.0), 1.0);
    return palette[static_cast<std::size_t>(fraction * 255.0)];
}

QImage blank(const SpectrogramHistory& history)
{
    QImage image(static_cast<int>(history.capacity()), static_cast<int>(history.rows()),
        QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void paintColumn(QImage& image, const SpectrogramHistory& history, std::int64_t storedColumn,
    Range range, const Palette& palette)
{
    const std::int64_t rows = history.rows();
    if (storedColumn < 0 || storedColumn >= image.width() || rows != image.height()) return;
    const float* levels = history.values().data() + storedColumn * rows;
    const int x = static_cast<int>(storedColumn);
    for (std::int64_t row = 0; row < rows; ++row) {
        // Row 0 is the lowest band, drawn at the bottom.
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(static_cast<int>(rows - 1 - row)));
        line[x] = color(levels[row], range, palette);
    }
}

QImage make(const SpectrogramHistory& history, bool dark)
{
    const Range shown = range(history.maximum());
    QImage stored = blank(history);
    for (std::int64_t column = 0; column < history.count(); ++column)
        paintColumn(stored, history, history.physical(column), shown, palette(dark));
    QImage ordered(static_cast<int>(std::max<std::int64_t>(history.count(), 1)),
        static_cast<int>(history.rows()), QImage::Format_ARGB32_Premultiplied);
    ordered.fill(Qt::transparent);
    for (std::int64_t column = 0; column < history.count(); ++column) {
        const int from = static_cast<int>(history.physical(column));
        for (int y = 0; y < ordered.height(); ++y)
            ordered.setPixel(static_cast<int>(column), y, stored.pixel(from, y));
    }
    return ordered;
}

} // namespace ostrel::SpectrogramImage
