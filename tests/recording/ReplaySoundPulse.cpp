// The replay sound through the private PulseAudio server's null sink: it starts where it is
// asked, its clock is what the sink has played, and what it plays measures as recorded.
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <vector>

#include "audio/AudioInput.h"
#include "audio/FFmpegReplayAudio.h"
#include "audio/QtAudioCaptureBackend.h"
#include "measurement/SPLMath.h"
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
    QTemporaryDir folder_;
    QString path_;
};

OSTREL_PULSE_TEST_MAIN(ReplaySoundPulseTest)
#include "ReplaySoundPulse.moc"
