// The replay sound through the private PulseAudio server's null sink: it starts where it is
// asked, its clock is what the sink has played, and what it plays measures as recorded.
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>
#include <vector>

#include "audio/AudioInput.h"
#include "audio/FFmpegReplayAudio.h"
#include "audio/QtAudioCaptureBackend.h"
#include "measurement/SPLMath.h"
#include "recording/MonitorCapture.h"
#include "recording/RecordingSignals.h"
#include "recording/SessionRecorder.h"
#include "sessions/RecordingFormat.h"
#include "support/PulseTestMain.h"

using namespace ostrel;
using namespace ostrel::recording_test;

class ReplaySoundPulseTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(folder_.isValid());
        auto created = SessionRecorder::create(folder_.path(), sessionStart(), true);
        QVERIFY(std::holds_alternative<std::shared_ptr<SessionRecorder>>(created));
        auto recorder = std::get<std::shared_ptr<SessionRecorder>>(created);
        feed(*recorder, sine(48000 * 4, 48000.0, 440.0, 0.3F), Feed {48000.0});
        recorder->finish();
        path_ = QDir(folder_.path()).filePath(RecordingFormat::audioFileName);

        // Silence with a burst of tone starting on each whole second.
        QVERIFY(burstsFolder_.isValid());
        auto burstsCreated = SessionRecorder::create(burstsFolder_.path(), sessionStart(), true);
        QVERIFY(std::holds_alternative<std::shared_ptr<SessionRecorder>>(burstsCreated));
        auto bursts = std::get<std::shared_ptr<SessionRecorder>>(burstsCreated);
        std::vector<float> signal = silence(48000 * 5);
        const std::vector<float> tone = sine(48000 / 5, 48000.0, 1000.0, burstAmplitude);
        for (int second = 1; second <= burstCount; ++second)
            std::copy(tone.begin(), tone.end(), signal.begin() + second * 48000);
        feed(*bursts, signal, Feed {48000.0});
        bursts->finish();
        burstsPath_ = QDir(burstsFolder_.path()).filePath(RecordingFormat::audioFileName);
    }

    void playsFromThePositionOnTheSinksClock()
    {
        auto opened = FFmpegReplayAudio::open(path_);
        QVERIFY(std::holds_alternative<std::unique_ptr<FFmpegReplayAudio>>(opened));
        auto& sound = std::get<std::unique_ptr<FFmpegReplayAudio>>(opened);
        QVERIFY(sound->play(1.0));
        QTRY_VERIFY_WITH_TIMEOUT(sound->currentSeconds().has_value(), 5000);
        const double first = *sound->currentSeconds();
        QVERIFY2(first >= 1.0 && first < 1.5, qPrintable(QString::number(first)));
        QElapsedTimer wall;
        wall.start();
        QTRY_VERIFY_WITH_TIMEOUT(sound->currentSeconds().value_or(0.0) >= first + 0.3, 5000);
        // What has been played can't run ahead of the time it took to play it.
        QVERIFY2(static_cast<double>(wall.elapsed()) / 1000.0 >= 0.25,
            qPrintable(QString::number(wall.elapsed())));
        sound->stop();
        QVERIFY(!sound->currentSeconds().has_value());
    }

    void theReplayedSoundMeasuresTheRecordedLevelThroughTheServer()
    {
        // The null sink's monitor, measured as the station measures its microphone.
        AudioInput input(std::make_unique<QtAudioCaptureBackend>(100));
        input.pipeline()->configure(FrequencyWeighting::z, TimeWeighting::fast, 0.0, std::nullopt);
        std::vector<MeasurementInterval> intervals;
        input.onInterval
            = [&](const MeasurementInterval& interval) { intervals.push_back(interval); };
        input.start("testmic", 0);
        QCOMPARE(input.status(), AudioInput::Status::running);

        auto opened = FFmpegReplayAudio::open(path_);
        QVERIFY(std::holds_alternative<std::unique_ptr<FFmpegReplayAudio>>(opened));
        auto& sound = std::get<std::unique_ptr<FFmpegReplayAudio>>(opened);
        QVERIFY(sound->play(0.5));
        QTRY_VERIFY_WITH_TIMEOUT(sound->currentSeconds().value_or(0.0) >= 0.8, 5000);
        intervals.clear();
        // Two seconds of the tone, well inside the three and a half that are left.
        QTRY_VERIFY_WITH_TIMEOUT(intervals.size() >= 20, 10000);
        sound->stop();
        input.stop();

        const double recorded = SPLMath::decibels(0.3 * 0.3 / 2.0);
        for (std::size_t i = 5; i < 20; ++i) {
            QVERIFY2(std::fabs(intervals[i].leq() - recorded) < 0.5,
                qPrintable(QStringLiteral("interval %1 reads %2 dB, recorded %3 dB")
                               .arg(i)
                               .arg(intervals[i].leq())
                               .arg(recorded)));
        }
    }

    void theSoundIsHeardWhenTheClockThatPicksTheFramesSaysSo()
    {
        using Clock = std::chrono::steady_clock;
        MonitorCapture capture("testsink.monitor", 48000);
        const std::string problem = capture.start();
        QVERIFY2(problem.empty(), problem.c_str());
        QTRY_VERIFY_WITH_TIMEOUT(capture.settled(), 10000);

        auto opened = FFmpegReplayAudio::open(burstsPath_);
        QVERIFY(std::holds_alternative<std::unique_ptr<FFmpegReplayAudio>>(opened));
        auto& sound = std::get<std::unique_ptr<FFmpegReplayAudio>>(opened);
        QVERIFY(sound->play(0.5));
        // Where the clock stood, and when: the frame shown at each moment is the clock's.
        struct Reading {
            Clock::time_point at;
            double position;
        };
        std::vector<Reading> readings;
        readings.reserve(8000);
        QElapsedTimer wall;
        wall.start();
        while (wall.elapsed() < 4000) {
            QCoreApplication::processEvents();
            const auto now = Clock::now();
            if (const auto position = sound->currentSeconds()) readings.push_back({now, *position});
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        sound->stop();
        capture.stop();
        QVERIFY(readings.size() > 1000);
        // When the clock said `position`: the median over the readings around it.
        const auto shownAt = [&](double position) {
            std::vector<Clock::duration> times;
            for (const Reading& reading : readings) {
                if (std::fabs(reading.position - position) > 0.25) continue;
                times.push_back(reading.at.time_since_epoch()
                    + std::chrono::duration_cast<Clock::duration>(
                        std::chrono::duration<double>(position - reading.position)));
            }
            const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
            std::nth_element(times.begin(), middle, times.end());
            return Clock::time_point(*middle);
        };

        // Each burst's first loud sample, as the monitor heard it.
        const std::vector<float>& heard = capture.samples();
        std::size_t index = 0;
        for (int second = 1; second <= burstCount; ++second) {
            while (index < heard.size() && std::fabs(heard[index]) < burstAmplitude / 2.0F)
                ++index;
            QVERIFY2(
                index < heard.size(), qPrintable(QStringLiteral("burst %1 not heard").arg(second)));
            const auto heardAt = capture.capturedAt(static_cast<std::int64_t>(index));
            const double early = std::chrono::duration<double, std::milli>(
                shownAt(static_cast<double>(second)) - heardAt)
                                     .count();
            qInfo("burst at %d s: heard %.2f ms before its frames were shown", second, early);
            QVERIFY2(std::fabs(early) < 5.0,
                qPrintable(QStringLiteral("burst %1 heard %2 ms before its frames")
                               .arg(second)
                               .arg(early)));
            index += 48000 / 2; // past this burst
        }
    }

    void volumeIsKeptAcrossStarts()
    {
        auto opened = FFmpegReplayAudio::open(path_);
        QVERIFY(std::holds_alternative<std::unique_ptr<FFmpegReplayAudio>>(opened));
        auto& sound = std::get<std::unique_ptr<FFmpegReplayAudio>>(opened);
        sound->setVolume(0.5F);
        QVERIFY(sound->play(0.0));
        QCOMPARE(sound->volume(), 0.5F);
        sound->stop();
    }

    void positionPastTheEndPlaysNothing()
    {
        auto opened = FFmpegReplayAudio::open(path_);
        QVERIFY(std::holds_alternative<std::unique_ptr<FFmpegReplayAudio>>(opened));
        auto& sound = std::get<std::unique_ptr<FFmpegReplayAudio>>(opened);
        QVERIFY(sound->play(sound->duration() + 1.0));
        QVERIFY(!sound->currentSeconds().has_value());
    }

private:
    static constexpr int burstCount = 3;
    static constexpr float burstAmplitude = 0.3F;
    QTemporaryDir folder_;
    QString path_;
    QTemporaryDir burstsFolder_;
    QString burstsPath_;
};

OSTREL_PULSE_TEST_MAIN(ReplaySoundPulseTest)
#include "ReplaySoundPulse.moc"
