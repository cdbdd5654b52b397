#pragma once

// The byte stuffing that frames OSC packets on QLab's TCP stream (RFC 1055): each packet ends in
// END, and END or ESC inside a packet travel as two-byte escapes.
#include <cstdint>
#include <span>
#include <vector>

namespace ostrel::SLIP {

inline constexpr std::uint8_t END = 0xC0;
inline constexpr std::uint8_t ESC = 0xDB;
inline constexpr std::uint8_t ESC_END = 0xDC;
inline constexpr std::uint8_t ESC_ESC = 0xDD;

// One frame: the escaped payload and a single trailing END, with no leading END.
std::vector<std::uint8_t> encode(std::span<const std::uint8_t> payload);

} // namespace ostrel::SLIP
