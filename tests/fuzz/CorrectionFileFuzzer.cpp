// Feeds arbitrary bytes to the microphone correction file's parser. Besides crashes, it stops on
// a correction that breaks what the parser promises: points sorted and distinct, within the
// plausible range, and a response of zero at 1 kHz clamped to twenty decibels either way.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <variant>

#include "measurement/MicrophoneCorrection.h"

using namespace ostrel;

namespace {

void require(bool condition)
{
    if (!condition) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto parsed = MicrophoneCorrection::parsing(text, "fuzzed.txt");
    if (std::holds_alternative<MicrophoneCorrection::ParseError>(parsed)) {
        require(!MicrophoneCorrection::message(std::get<MicrophoneCorrection::ParseError>(parsed))
                     .empty());
        return 0;
    }
    const auto& correction = std::get<MicrophoneCorrection>(parsed);
    const auto& points = correction.points();
    require(points.size() >= 3);
    for (std::size_t i = 0; i < points.size(); ++i) {
        require(points[i].frequency > 0.0 && points[i].frequency < 100000.0);
        require(std::fabs(points[i].response) < 40.0);
        if (i > 0) require(points[i].frequency > points[i - 1].frequency);
    }
    require(std::fabs(correction.response(1000.0)) < 1e-9);
    for (const double f : {0.0, 20.0, 440.0, 1000.0, 12345.0, 1e6}) {
        const double response = correction.response(f);
        require(std::isfinite(response) && response >= -20.0 && response <= 20.0);
        const double gain = correction.powerGain(f);
        require(gain >= 0.01 - 1e-12 && gain <= 100.0 + 1e-9);
    }
    return 0;
}
