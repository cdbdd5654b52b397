// The replay sound through the private PulseAudio server's null sink: it starts where it is
// asked, and its clock is what the sink has played.
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include "audio/FFmpegReplayAudio.h"
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
