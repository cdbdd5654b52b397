// A station in the middle of a show, for a test to kill: it starts a recorded session in the
// given "Sessions" folder, measures a steady tone for two seconds, says "ready" with the frames
// it has made, then goes on measuring in real time until it is killed.
#include <QCoreApplication>
#include <QSettings>
#include <QThread>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <vector>

#include "app/SilentCaptureBackend.h"
#include "station/AppModel.h"

using namespace ostrel;

namespace {

void playBlock(AppModel& model, std::vector<float>& block, long long& sample)
{
    for (float& value : block) {
        value = 0.1f
            * static_cast<float>(
                std::sin(2.0 * M_PI * 1000.0 * static_cast<double>(sample++) / 48000.0));
    }
    if (auto interval = model.audio().pipeline()->process(block))
        model.ingest(*interval, std::chrono::system_clock::now());
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    if (argc < 3) return 2;
    QSettings store(QString::fromLocal8Bit(argv[2]), QSettings::IniFormat);
    AppModel model(AppModel::Mode::live, std::make_unique<AppSettings>(store),
        std::make_unique<SilentCaptureBackend>(), QLabClient::Timings {},
        QString::fromLocal8Bit(argv[1]));
    model.settings().qlab().setEnabled(false);
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
