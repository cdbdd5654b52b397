#pragma once

// The byte layout of "exposure.ostrel", kept beside a recording's measurements: a 16-byte
// header, then one fixed-size little-endian frame per interval. Written a frame at a time, so a
// station killed mid-show loses at most the interval it was writing; a last frame cut short is
// not counted.
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include <QByteArray>
#include <QByteArrayView>

#include "exposure/ExposureFrame.h"

namespace ostrel::ExposureFormat {

inline constexpr std::array<char, 8> magic {'O', 'S', 'T', 'L', 'E', 'X', 'P', '1'};
inline constexpr std::uint32_t version = 1;
inline constexpr std::size_t headerSize = 16;
inline constexpr std::size_t frameSize = 64;
inline constexpr char fileName[] = "exposure.ostrel";

namespace Offset {
inline constexpr std::size_t audioTime = 0;
inline constexpr std::size_t duration = 8;
inline constexpr std::size_t energyTime = 16;
inline constexpr std::size_t cPeakPower = 24;
inline constexpr std::size_t windowSeconds = 32;
inline constexpr std::size_t limit = 40;
inline constexpr std::size_t margin = 48;
inline constexpr std::size_t peakLimit = 56; // float32, NaN for none
inline constexpr std::size_t kind = 60; // uint8
inline constexpr std::size_t flags = 61; // uint8: bit 0, daily exposure
} // namespace Offset

QByteArray header();
bool isValidHeader(QByteArrayView bytes);
QByteArray encode(const ExposureFrame& frame);
// Whole frames after a valid header; 0 for a file that isn't one.
std::size_t frameCount(QByteArrayView file);
// Nothing for an index outside the whole frames or a frame that can't be one of ours.
std::optional<ExposureFrame> decode(QByteArrayView file, std::size_t index);

} // namespace ostrel::ExposureFormat
