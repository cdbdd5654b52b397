// A station in the middle of a show, for the show flow's tests.
//   show_writer SESSIONS SETTINGS          starts a recorded session in the SESSIONS folder,
//       measures a steady tone for two seconds, says "ready" with the frames it has made, then
//       goes on measuring in real time until it is killed.
//   show_writer SESSIONS SETTINGS BYTES    no file may grow past BYTES, as on a disk that fills
//       up: plays ten seconds of a show with one cue as fast as it can, ends the session and
//       says the summary's warning and how many cues and levels it kept.
#include <QCoreApplication>
#include <QSettings>
#include <QThread>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <vector>

#include <sys/resource.h>

#include "app/SilentCaptureBackend.h"
#include "station/AppModel.h"

using namespace ostrel;

namespace {

// Dates follow the clock unless `start` is given; then they follow the sound from there.
void playBlock(AppModel& model, std::vector<float>& block, long long& sample,
    std::optional<Date> start = std::nullopt)
{
    for (float& value : block) {
        value = 0.1f
            * static_cast<float>(
                std::sin(2.0 * M_PI * 1000.0 * static_cast<double>(sample++) / 48000.0));
    }
    if (auto interval = model.audio().pipeline()->process(block))
        model.ingest(*interval,
            start ? addingSeconds(*start, static_cast<double>(sample) / 48000.0)
                  : std::chrono::system_clock::now());
}

int playUntilTheDiskIsFull(AppModel& model)
{
    const Date start = std::chrono::system_clock::now();
    model.shows().startSession(QStringLiteral("Full Disk"), start);
    QLabCue cue;
    cue.id = QStringLiteral("cue-overture");
    cue.number = QStringLiteral("1");
    cue.name = QStringLiteral("Overture");
    cue.type = QStringLiteral("Audio");
    model.qlab().simulate(QLabClientState::connected, QStringLiteral("Show"), {cue});
    std::vector<float> block(960);
    long long sample = 0;
    for (int blocks = 0; blocks < 500; ++blocks)
        playBlock(model, block, sample, start);
    model.endSession();
    const auto summary = model.presentedSummary();
    std::printf("warning=%s\n", qUtf8Printable(model.recordingWarning().value_or(QString())));
    std::printf("cues=%zu levels=%zu\n", summary ? summary->cues.size() : 0,
        summary ? summary->levels.size() : 0);
    std::fflush(stdout);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    if (argc < 3) return 2;
    if (argc > 3) {
        // A write past the limit then fails with EFBIG instead of ending the process.
        std::signal(SIGXFSZ, SIG_IGN);
        const auto bytes = static_cast<rlim_t>(std::atoll(argv[3]));
        const rlimit size {bytes, bytes};
        if (setrlimit(RLIMIT_FSIZE, &size) != 0) return 3;
    }
    QSettings store(QString::fromLocal8Bit(argv[2]), QSettings::IniFormat);
    AppModel model(AppModel::Mode::live, std::make_unique<AppSettings>(store),
        std::make_unique<SilentCaptureBackend>(), QLabClient::Timings {},
        QString::fromLocal8Bit(argv[1]));
    model.settings().qlab().setEnabled(false);
    if (argc > 3) return playUntilTheDiskIsFull(model);
    model.startSession(QStringLiteral("Killed Show"));

    std::vector<float> block(960);
    long long sample = 0;
    int blocks = 0;
    for (; blocks < 100; ++blocks)
        playBlock(model, block, sample);
    // Every frame so far has reached the disk: a kill from here on may cut only later ones.
    if (!model.shows().recorder()) return 3;
    model.shows().recorder()->waitUntilWritten();
    std::printf("ready %d\n", blocks / 5);
    std::fflush(stdout);
    for (;;) {
        playBlock(model, block, sample);
        QThread::msleep(20);
    }
}
