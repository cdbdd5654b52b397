#pragma once

// How the spectrogram turns levels into pixels: the level range drawn, a palette of 256
// premultiplied colours for each colour scheme, and the columns of the bitmap. Low frequencies
// at the bottom; a level not above the range's floor stays transparent.
#include <array>
#include <cstdint>
#include <optional>

#include <QImage>
#include <QRgb>

#include "model/SpectrogramHistory.h"

namespace ostrel::SpectrogramImage {

struct Range {
    double low = 0.0;
    double high = 60.0;
    bool operator==(const Range&) const = default;
};

using Palette = std::array<QRgb, 256>;

// 3 dB of headroom over the maximum, rounded up to 10 dB, never under 50; 60 dB tall. An empty
// ring counts as a maximum of 50.
Range range(std::optional<float> maximum);
// Built once per scheme: five stops, the lowest fifth fading in.
const Palette& palette(bool dark);
QRgb color(float level, Range range, const Palette& palette);
// A bitmap of the ring's stored layout: one pixel per stored column and band.
QImage blank(const SpectrogramHistory& history);
void paintColumn(QImage& image, const SpectrogramHistory& history, std::int64_t storedColumn,
    Range range, const Palette& palette);
// The whole ring in logical order, oldest column at the left.
QImage make(const SpectrogramHistory& history, bool dark);

} // namespace ostrel::SpectrogramImage
