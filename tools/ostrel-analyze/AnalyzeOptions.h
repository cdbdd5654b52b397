#pragma once

// The command line of ostrel-analyze, read without side effects so that every case can be tested
// without running the tool.
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "exposure/ExposureProfile.h"
#include "measurement/FrequencyWeighting.h"
#include "measurement/TimeWeighting.h"

namespace ostrel::analyze {

enum class OutputFormat { csv, jsonl };

struct AnalyzeOptions {
    std::string path; // "-" for standard input
    FrequencyWeighting weighting = FrequencyWeighting::a;
    TimeWeighting response = TimeWeighting::fast;
    double calibrationOffset = 0.0;
    int channel = 0; // zero-based, as the meter numbers channels
    OutputFormat format = OutputFormat::csv;
    bool summary = false;
    bool spectrum = false;
    // When set: the file is recorded into this folder as a show ("session.json", "audio.aac",
    // "measurements.ostrel") instead of printing rows.
    std::string recordFolder;
    // With --exposure: each row and the summary also say how the file stands against it.
    std::optional<ExposureProfile> exposure;

    bool operator==(const AnalyzeOptions&) const = default;
};

struct HelpRequested {
    bool operator==(const HelpRequested&) const = default;
};

// One line, without the program name in front.
struct OptionError {
    std::string message;
    bool operator==(const OptionError&) const = default;
};

// `--export-levels CSV DIR` or `--export-cues CSV DIR`: a recorded show's level log or cue log
// as CSV. DIR is a recording folder (its "session.json") or a session file; CSV "-" is standard
// output.
struct ExportRequest {
    enum class Kind { levels, cues };
    Kind kind = Kind::levels;
    std::string csvPath;
    std::string sessionPath;
    bool operator==(const ExportRequest&) const = default;
};

using ParsedCommandLine = std::variant<AnalyzeOptions, HelpRequested, OptionError, ExportRequest>;

// The arguments after the program name.
ParsedCommandLine parseCommandLine(std::span<const std::string_view> arguments);

std::string_view usageText();

} // namespace ostrel::analyze
