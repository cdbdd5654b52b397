#include "ostrel-analyze/AnalyzeOptions.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <optional>

namespace ostrel::analyze {

namespace {

std::string quoted(std::string_view text)
{
    return "\"" + std::string(text) + "\"";
}

std::string transformed(std::string_view text, int (*change)(int))
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
        [change](unsigned char c) { return static_cast<char>(change(c)); });
    return result;
}

// from_chars, unlike strtod, ignores the locale: "0,5" is never half a decibel.
std::optional<double> parseNumber(std::string_view text)
{
    // from_chars takes no plus sign; one is allowed, but not in front of another sign.
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('+') || text.starts_with('-')) return std::nullopt;
    }
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<int> parseChannel(std::string_view text)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || value < 0)
        return std::nullopt;
    return value;
}

// Sets the option's field, or says what is wrong with the value.
std::optional<std::string> apply(
    AnalyzeOptions& options, std::string_view name, std::string_view value)
{
    if (name == "--weighting") {
        const auto weighting = frequencyWeightingFromRawValue(transformed(value, ::toupper));
        if (!weighting) return "bad weighting " + quoted(value) + " (use A, C or Z)";
        options.weighting = *weighting;
    } else if (name == "--response") {
        const auto response = timeWeightingFromRawValue(transformed(value, ::tolower));
        if (!response) return "bad response " + quoted(value) + " (use fast or slow)";
        options.response = *response;
    } else if (name == "--offset") {
        const auto offset = parseNumber(value);
        if (!offset) return "bad offset " + quoted(value) + " (a number of dB, e.g. 94.5)";
        options.calibrationOffset = *offset;
    } else if (name == "--channel") {
        const auto channel = parseChannel(value);
        if (!channel) return "bad channel " + quoted(value) + " (channels count from 0)";
        options.channel = *channel;
    } else if (name == "--record") {
        if (value.empty()) return std::string("bad folder \"\" for --record");
        options.recordFolder = std::string(value);
    } else if (name == "--exposure") {
        const auto profile = ExposureProfile::parse(value);
        if (!profile) {
            return "bad exposure profile " + quoted(value)
                + " (use who, swiss, din, uk or custom:MINUTES:LIMIT, minutes from 1 to 60)";
        }
        options.exposure = *profile;
    } else if (name == "--format") {
        if (value == "csv")
            options.format = OutputFormat::csv;
        else if (value == "jsonl")
            options.format = OutputFormat::jsonl;
        else
            return "bad format " + quoted(value) + " (use csv or jsonl)";
    }
    return std::nullopt;
}

bool takesValue(std::string_view name)
{
    return name == "--weighting" || name == "--response" || name == "--offset"
        || name == "--channel" || name == "--format" || name == "--record" || name == "--exposure";
}

// An export names its two paths and nothing else: measuring options would mean nothing to it.
std::optional<ParsedCommandLine> parseExport(std::span<const std::string_view> arguments)
{
    const auto found = std::find_if(arguments.begin(), arguments.end(),
        [](std::string_view a) { return a == "--export-levels" || a == "--export-cues"; });
    if (found == arguments.end()) return std::nullopt;
    const std::string name(*found);
    if (found != arguments.begin() || arguments.size() != 3)
        return OptionError {"use " + name + " CSV DIR, with no other arguments"};
    ExportRequest request;
    request.kind
        = name == "--export-levels" ? ExportRequest::Kind::levels : ExportRequest::Kind::cues;
    request.csvPath = std::string(arguments[1]);
    request.sessionPath = std::string(arguments[2]);
    if (request.csvPath.empty() || request.sessionPath.empty())
        return OptionError {"use " + name + " CSV DIR, with no empty path"};
    return request;
}

} // namespace

ParsedCommandLine parseCommandLine(std::span<const std::string_view> arguments)
{
    if (auto request = parseExport(arguments)) return *request;
    AnalyzeOptions options;
    std::optional<std::string_view> path;
    bool optionsEnded = false;

    const auto addPath = [&](std::string_view argument) -> std::optional<OptionError> {
        if (path) {
            return OptionError {
                "more than one file given: " + quoted(*path) + " and " + quoted(argument)};
        }
        path = argument;
        return std::nullopt;
    };

    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string_view argument = arguments[index];
        // A lone "-" is standard input, not an option.
        if (optionsEnded || argument == "-" || !argument.starts_with('-')) {
            if (auto error = addPath(argument)) return *error;
            continue;
        }
        if (argument == "--") {
            optionsEnded = true;
            continue;
        }
        if (argument == "--help" || argument == "-h") return HelpRequested {};

        const auto equals = argument.find('=');
        const std::string_view name = argument.substr(0, equals);
        if (name == "--summary" || name == "--spectrum") {
            if (equals != std::string_view::npos)
                return OptionError {"option " + std::string(name) + " takes no value"};
            (name == "--summary" ? options.summary : options.spectrum) = true;
            continue;
        }
        if (!takesValue(name)) return OptionError {"unknown option " + quoted(argument)};

        std::string_view value;
        if (equals != std::string_view::npos) {
            value = argument.substr(equals + 1);
        } else if (index + 1 < arguments.size()) {
            // Taken as is, so that a negative offset is not mistaken for an option.
            value = arguments[++index];
        } else {
            return OptionError {"option " + std::string(name) + " needs a value"};
        }
        if (auto error = apply(options, name, value)) return OptionError {*error};
    }

    if (!path) return OptionError {"no file given (see --help)"};
    options.path = std::string(*path);
    return options;
}

std::string_view usageText()
{
    return R"(Usage: ostrel-analyze FILE [options]
       ostrel-analyze --export-levels CSV DIR
       ostrel-analyze --export-cues CSV DIR

Measures an audio file the way the Ostrel Live station measures its input and
writes one row per measurement interval (a tenth of a second) to standard output.
FILE is any audio file FFmpeg can read (WAV, FLAC, AAC, MP3, ...); "-" reads a
WAV stream from standard input.

Options:
  --weighting A|C|Z     frequency weighting (default A)
  --response fast|slow  time weighting of the level detector (default fast)
  --offset DB           calibration offset added to dBFS (default 0)
  --channel N           channel to measure, counted from 0 (default 0)
  --format csv|jsonl    output format (default csv)
  --summary             end with the file's Leq, Peak, Max and duration
  --spectrum            add the spectrum and feedback warnings to every row
  --exposure PROFILE    add exposure against a venue's limit to every row and to
                        the summary: who (LAeq 15 min, 100 dB), swiss (60 min,
                        100 dB), din (30 min, 99 dB), uk (daily exposure LEX,8h
                        against 85 dB) or custom:MINUTES:LIMIT
  --record DIR          record the file into the new folder DIR as the station
                        records a show (session.json, audio.aac and
                        measurements.ostrel) instead of printing rows
  -h, --help            show this help

  --export-levels CSV DIR  write the level log (one row a second) of the show
                           recorded in DIR as CSV; CSV "-" is standard output
  --export-cues CSV DIR    the same for the show's cue log
DIR is a recording folder (with its session.json) or a session's .json file.

Columns: time (s of audio at the interval's end), level, leq, peak, max, rawDBFS,
clipped. With --spectrum they go on with the 31 third-octave levels (third_<Hz>),
the 240 fine band levels (fine_<Hz>), dominant, peakFrequency, peakLevel,
peakProminence, peakHarmonic and feedback (Hz of a feedback warning in force);
JSONL rows carry them as bands, fine, dominant, spectralPeak and feedback.
With --exposure every row adds laeqWindow (the A-weighted level over the profile's
window, whatever --weighting says), lcpeak (the interval's C-weighted peak) and
room (the highest average level the next 5 minutes may have and keep the window
at the limit; empty, or null in JSONL, when the limit is out of reach), and the
summary adds laeqWindowMax, laeqWindowMaxAt (s), minutesOver, lcpeakMax, laeqShow
and dosePercent (of 85 dB(A) for 8 hours).
Samples after the last whole interval are not reported.
Exit status: 0 on success, 2 on any error (one line on standard error).
)";
}

} // namespace ostrel::analyze
