// ostrel-analyze: measures an audio file as the station measures its live input and writes one
// row per measurement interval. See usageText() and docs/ostrel-analyze.md.
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <unistd.h>

#include "audio/AudioFileDecoder.h"
#include "measurement/LevelStatistics.h"
#include "measurement/MeasurementPipeline.h"
#include "ostrel-analyze/AnalyzeOptions.h"
#include "ostrel-analyze/AudioClockFeedback.h"
#include "ostrel-analyze/ProgressLine.h"
#include "ostrel-analyze/RowFormatter.h"
#include "ostrel-analyze/SessionExport.h"
#include "ostrel-analyze/ShowRecording.h"

namespace {

using namespace ostrel;
using namespace ostrel::analyze;

constexpr int failureStatus = 2;

int fail(std::string_view message)
{
    std::cerr << "ostrel-analyze: " << message << '\n';
    return failureStatus;
}

void write(std::string_view text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
}

std::string displayName(const std::string& path)
{
    return path == "-" ? std::string("standard input") : "\"" + path + "\"";
}

int run(const AnalyzeOptions& options)
{
    AudioFileDecoder::quietLibraryLog();
    auto opened = options.path == "-" ? AudioFileDecoder::openStandardInput()
                                      : AudioFileDecoder::open(options.path);
    const std::string name = displayName(options.path);
    if (const auto* error = std::get_if<std::string>(&opened))
        return fail("cannot read " + name + ": " + *error);
    AudioFileDecoder& decoder = *std::get<std::unique_ptr<AudioFileDecoder>>(opened);

    const int channels = decoder.channelCount();
    if (options.channel >= channels) {
        return fail(name + " has " + std::to_string(channels)
            + (channels == 1 ? " channel" : " channels") + ", so there is no channel "
            + std::to_string(options.channel) + " (channels count from 0)");
    }
    // The block a live input delivers, so that intervals close exactly where the station's do.
    const auto blockFrames = static_cast<std::size_t>(decoder.sampleRate() / 10);
    if (blockFrames == 0) return fail(name + " has a sample rate too low to measure");
    const auto sampleRate = static_cast<double>(decoder.sampleRate());

    std::unique_ptr<ShowRecording> recording;
    if (!options.recordFolder.empty()) {
        const std::string show = options.path == "-"
            ? std::string("Standard input")
            : std::filesystem::path(options.path).stem().string();
        const std::string setting
            = std::string(symbol(options.weighting)) + " / " + std::string(title(options.response));
        auto made = ShowRecording::open(
            options.recordFolder, show, setting, std::chrono::system_clock::now());
        if (const auto* error = std::get_if<std::string>(&made)) return fail(*error);
        recording = std::move(std::get<std::unique_ptr<ShowRecording>>(made));
    }
    // Frames are stamped on the file's clock: the end of the block being measured.
    double blockEnd = 0.0;
    MeasurementPipeline::Clock clock;
    if (recording) clock = [&recording, &blockEnd] { return recording->dateAt(blockEnd); };
    MeasurementPipeline pipeline(clock);
    pipeline.configure(
        options.weighting, options.response, options.calibrationOffset, std::nullopt);
    pipeline.prepare(sampleRate);
    if (recording) pipeline.setRecorder(recording->recorder());

    ProgressLine progress(std::cerr, isatty(STDERR_FILENO) == 1, decoder.durationSeconds());
    LevelStatistics statistics;
    std::vector<float> interleaved;
    std::vector<float> block;
    std::int64_t framesProcessed = 0;
    const auto stride = static_cast<std::size_t>(channels);
    const auto channel = static_cast<std::size_t>(options.channel);

    AudioClockFeedback feedback;
    std::optional<ExposureMeter> exposure;
    if (options.exposure) exposure.emplace(*options.exposure);
    if (!recording) write(formatHeader(options.format, options.spectrum, exposure.has_value()));
    for (;;) {
        const std::size_t frames = decoder.read(interleaved, blockFrames);
        if (frames == 0) break;
        block.resize(frames);
        for (std::size_t frame = 0; frame < frames; ++frame)
            block[frame] = interleaved[frame * stride + channel];
        framesProcessed += static_cast<std::int64_t>(frames);
        const double time = static_cast<double>(framesProcessed) / sampleRate;
        blockEnd = time;
        // A short last block leaves a partial interval, which the station would not report.
        if (const auto interval = pipeline.process(block)) {
            statistics.add(*interval);
            if (exposure) {
                exposure->ingest(ExposureSample {interval->exposureEnergy / interval->sampleRate,
                    interval->duration(), interval->exposurePeakPower});
            }
            if (recording) {
                recording->add(*interval, time);
            } else {
                std::optional<SpectrumExtras> extras;
                if (options.spectrum) extras = SpectrumExtras {feedback.update(*interval, time)};
                write(formatRow(options.format, time, *interval, extras,
                    exposure ? &exposure->reading() : nullptr));
            }
        }
        progress.update(time);
        if (frames < blockFrames) break;
    }
    progress.clear();
    if (recording) {
        pipeline.setRecorder(nullptr);
        if (const auto error = recording->finish(blockEnd))
            return fail("recording into \"" + options.recordFolder + "\" failed: " + *error);
    }

    if (!decoder.error().empty()) {
        std::fflush(stdout);
        return fail("cannot decode " + name + ": " + decoder.error());
    }
    if (options.summary)
        write(formatSummary(options.format, statistics, exposure ? &*exposure : nullptr));
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) return fail("cannot write the output");
    if (const auto skipped = decoder.skippedPacketCount(); skipped > 0) {
        std::cerr << "ostrel-analyze: warning: skipped " << skipped << " corrupt packet"
                  << (skipped == 1 ? "" : "s") << " in " << name << '\n';
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    const auto parsed = parseCommandLine(arguments);
    if (std::holds_alternative<HelpRequested>(parsed)) {
        write(usageText());
        return 0;
    }
    if (const auto* error = std::get_if<OptionError>(&parsed)) return fail(error->message);
    if (const auto* request = std::get_if<ExportRequest>(&parsed))
        return exportSession(*request, std::cerr);
    return run(std::get<AnalyzeOptions>(parsed));
}
