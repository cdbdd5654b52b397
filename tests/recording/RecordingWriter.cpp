// Records into a folder as a station would, for tests that must kill the recording process or
// limit its file sizes, and for measuring what recording costs.
//
//   recording_writer crash FOLDER RATE          records a tone until killed; prints each second
//   recording_writer limit FOLDER BYTES quiet-dense|busy-sparse SECONDS
//                                               records under a file-size limit; prints outcome
//   recording_writer measure FOLDER RATE SECONDS
//                                               records a busy signal; prints CPU and file sizes
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include <QDir>
#include <QFileInfo>

#include <sys/resource.h>

#include "recording/RecordingSignals.h"
#include "sessions/RecordingFormat.h"

using namespace ostrel;
using namespace ostrel::recording_test;

namespace {

std::shared_ptr<SessionRecorder> createOrExit(const QString& folder)
{
    auto created = SessionRecorder::create(folder, sessionStart(), true);
    if (const QString* failure = std::get_if<QString>(&created)) {
        std::fprintf(stderr, "can't record: %s\n", qUtf8Printable(*failure));
        std::exit(2);
    }
    return std::get<std::shared_ptr<SessionRecorder>>(created);
}

double seconds(clockid_t clock)
{
    timespec now {};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

int crash(const QString& folder, double rate)
{
    auto recorder = createOrExit(folder);
    const auto perSecond = static_cast<std::size_t>(rate);
    const std::vector<float> tone = sine(perSecond, rate, 500.0, 0.3f);
    for (std::int64_t second = 0;; ++second) {
        feed(*recorder, tone,
            Feed {rate, 1, second * static_cast<std::int64_t>(perSecond), perSecond / 50});
        recorder->waitUntilWritten();
        std::printf("%lld\n", static_cast<long long>(second + 1));
        std::fflush(stdout);
    }
}

// The recorder's log lines go to standard output, where the test reads them before the outcome.
void printLogLine(QtMsgType, const QMessageLogContext& context, const QString& message)
{
    std::printf("log %s: %s\n", context.category, qUtf8Printable(message));
    std::fflush(stdout);
}

int limit(const QString& folder, long long bytes, const std::string& mode, int duration)
{
    qInstallMessageHandler(&printLogLine);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit size {static_cast<rlim_t>(bytes), static_cast<rlim_t>(bytes)};
    if (setrlimit(RLIMIT_FSIZE, &size) != 0) return 3;
    auto recorder = createOrExit(folder);
    const double rate = 48000.0;
    const auto count = static_cast<std::size_t>(rate) * static_cast<std::size_t>(duration);
    const bool quiet = mode == "quiet-dense";
    const std::vector<float> signal = quiet ? silence(count) : busySignal(count, rate);
    const int intervals = feed(*recorder, signal, Feed {rate, quiet ? 1 : 10, 0, 960});
    const SessionRecorder::Outcome outcome = recorder->finish();
    std::printf("audioFailed=%d measurementsFailed=%d audioSeconds=%.6f intervals=%d\n",
        outcome.audioFailed ? 1 : 0, outcome.measurementsFailed ? 1 : 0,
        recorder->state().audioSeconds, intervals);
    return 0;
}

int measure(const QString& folder, double rate, int duration)
{
    const auto perSecond = static_cast<std::size_t>(rate);
    const std::vector<float> signal
        = busySignal(perSecond * static_cast<std::size_t>(duration), rate);
    const double wallStart = seconds(CLOCK_MONOTONIC);
    const double cpuStart = seconds(CLOCK_PROCESS_CPUTIME_ID);
    auto recorder = createOrExit(folder);
    for (int second = 0; second < duration; ++second) {
        const std::span<const float> part(
            signal.data() + static_cast<std::size_t>(second) * perSecond, perSecond);
        feed(*recorder, part,
            Feed {rate, 1, second * static_cast<std::int64_t>(perSecond), perSecond / 50});
        recorder->waitUntilWritten();
    }
    const std::optional<int> delay = recorder->state().encoderDelay;
    recorder->finish();
    const double wall = seconds(CLOCK_MONOTONIC) - wallStart;
    const double cpu = seconds(CLOCK_PROCESS_CPUTIME_ID) - cpuStart;
    const qint64 audioBytes
        = QFileInfo(QDir(folder).filePath(RecordingFormat::audioFileName)).size();
    const qint64 frameBytes
        = QFileInfo(QDir(folder).filePath(RecordingFormat::framesFileName)).size();
    const double perHour = 3600.0 / duration;
    std::printf("audio %d s at %.0f Hz: wall %.3f s (%.4f of real time), cpu %.3f s (%.4f of real "
                "time)\n",
        duration, rate, wall, wall / duration, cpu, cpu / duration);
    std::printf("encoder delay %d samples\n", delay.value_or(-1));
    std::printf("bytes: audio %lld, measurements %lld; per hour: audio %.0f, measurements %.0f, "
                "total %.0f\n",
        static_cast<long long>(audioBytes), static_cast<long long>(frameBytes),
        static_cast<double>(audioBytes) * perHour, static_cast<double>(frameBytes) * perHour,
        static_cast<double>(audioBytes + frameBytes) * perHour);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode == "crash" && argc == 4)
        return crash(QString::fromLocal8Bit(argv[2]), std::atof(argv[3]));
    if (mode == "limit" && argc == 6) {
        return limit(
            QString::fromLocal8Bit(argv[2]), std::atoll(argv[3]), argv[4], std::atoi(argv[5]));
    }
    if (mode == "measure" && argc == 5) {
        return measure(QString::fromLocal8Bit(argv[2]), std::atof(argv[3]), std::atoi(argv[4]));
    }
    std::fprintf(stderr, "usage: recording_writer crash|limit|measure ...\n");
    return 64;
}
