// ostrel-tone: writes a test sine as a 32-bit float WAV file, to a file or to standard output,
// so that the analyser and the tests have a known signal without any recorded material.
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <numbers>
#include <string>
#include <vector>

namespace {

int usage(const char* message)
{
    if (message) std::fprintf(stderr, "ostrel-tone: %s\n", message);
    std::fprintf(message ? stderr : stdout,
        "usage: ostrel-tone [--frequency HZ] [--amplitude A] [--seconds S] "
        "[--rate HZ] [--waver DB] [--output FILE]\n"
        "Writes a mono 32-bit float WAV sine (default 1000 Hz, amplitude 0.1, 5 s, "
        "48000 Hz) to FILE or standard output. --waver drops the level by DB every other "
        "half second, as an unsteady calibrator would.\n");
    return message ? 2 : 0;
}

void put32(std::vector<unsigned char>& out, std::uint32_t value)
{
    for (int i = 0; i < 4; ++i)
        out.push_back(static_cast<unsigned char>(value >> (8 * i)));
}

void put16(std::vector<unsigned char>& out, std::uint16_t value)
{
    out.push_back(static_cast<unsigned char>(value));
    out.push_back(static_cast<unsigned char>(value >> 8));
}

bool parseNumber(const char* text, double& value)
{
    char* end = nullptr;
    value = std::strtod(text, &end);
    return end && *end == '\0' && end != text && std::isfinite(value);
}

} // namespace

int main(int argc, char** argv)
{
    double frequency = 1000.0, amplitude = 0.1, seconds = 5.0, rate = 48000.0, waver = 0.0;
    std::string output = "-";
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i];
        if (option == "--help" || option == "-h") return usage(nullptr);
        if (i + 1 >= argc) return usage(("missing value for " + option).c_str());
        const char* value = argv[++i];
        double number = 0.0;
        if (option == "--output") {
            output = value;
            continue;
        }
        if (!parseNumber(value, number))
            return usage(("not a number for " + option + ": " + value).c_str());
        if (option == "--frequency")
            frequency = number;
        else if (option == "--amplitude")
            amplitude = number;
        else if (option == "--seconds")
            seconds = number;
        else if (option == "--rate")
            rate = number;
        else if (option == "--waver")
            waver = number;
        else
            return usage(("unknown option " + option).c_str());
    }
    if (rate < 1000.0 || rate > 768000.0 || seconds < 0.0 || seconds > 36000.0 || waver < 0.0)
        return usage("rate or length out of range");

    const auto frames = static_cast<std::uint32_t>(std::llround(seconds * rate));
    const std::uint32_t dataBytes = frames * 4u;
    std::vector<unsigned char> header;
    header.insert(header.end(), {'R', 'I', 'F', 'F'});
    put32(header, 36u + dataBytes);
    header.insert(header.end(), {'W', 'A', 'V', 'E', 'f', 'm', 't', ' '});
    put32(header, 16);
    put16(header, 3); // IEEE float
    put16(header, 1);
    put32(header, static_cast<std::uint32_t>(rate));
    put32(header, static_cast<std::uint32_t>(rate) * 4u);
    put16(header, 4);
    put16(header, 32);
    header.insert(header.end(), {'d', 'a', 't', 'a'});
    put32(header, dataBytes);

    FILE* file = output == "-" ? stdout : std::fopen(output.c_str(), "wb");
    if (!file) {
        std::fprintf(
            stderr, "ostrel-tone: cannot write \"%s\": %s\n", output.c_str(), std::strerror(errno));
        return 2;
    }
    std::fwrite(header.data(), 1, header.size(), file);
    std::vector<float> block(4800);
    for (std::uint32_t start = 0; start < frames; start += 4800) {
        const std::uint32_t count = std::min<std::uint32_t>(4800, frames - start);
        for (std::uint32_t i = 0; i < count; ++i) {
            const double t = static_cast<double>(start + i) / rate;
            const bool lowered = std::fmod(t, 1.0) >= 0.5;
            const double gain = lowered ? amplitude * std::pow(10.0, -waver / 20.0) : amplitude;
            block[i] = static_cast<float>(gain * std::sin(2.0 * std::numbers::pi * frequency * t));
        }
        // WAV is little-endian, as is every machine this builds for.
        if (std::fwrite(block.data(), sizeof(float), count, file) != count) {
            std::fprintf(stderr, "ostrel-tone: write failed: %s\n", std::strerror(errno));
            return 2;
        }
    }
    if (file != stdout) std::fclose(file);
    return 0;
}
