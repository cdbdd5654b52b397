#pragma once

// Text from the network as valid UTF-8: a cue name with a broken byte still shows, with the
// broken part replaced, instead of dropping the message that carried it.
#include <cstdint>
#include <span>
#include <string>

namespace ostrel::Utf8Repair {

// Each maximal ill-formed subsequence becomes one U+FFFD, the practice Unicode recommends, so the
// count of replacement marks matches what other decoders show.
std::string repaired(std::span<const std::uint8_t> bytes);

} // namespace ostrel::Utf8Repair
