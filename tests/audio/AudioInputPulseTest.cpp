// The real audio input against a private PulseAudio server: a tone played into a null sink is
// measured through Qt Multimedia, and the capture source is pulled out and plugged in again.
#include <QProcess>

#include "support/TonePlayer.h"
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "support/PulseTestMain.h"
#include <cmath>

#include "audio/AudioInput.h"
#include "audio/QtAudioCaptureBackend.h"
#include "measurement/SPLMath.h"

using namespace ostrel;

class AudioInputPulseTest : public QObject {
    Q_OBJECT

private:
    testsupport::TonePlayer tone;
    static constexpr int pollMs = 100;
    static constexpr int delayMs = 100;

    static void runServerScript(const char* command)
    {
        QProcess script;
        script.start(OSTREL_PULSE_SCRIPT, {command, OSTREL_PULSE_DIR});
        QVERIFY(script.waitForFinished(20000));
        QCOMPARE(script.exitCode(), 0);
    }

    std::unique_ptr<AudioInput> makeInput()
    {
        auto input = std::make_unique<AudioInput>(std::make_unique<QtAudioCaptureBackend>(pollMs));
        input->setRestartDelay(delayMs);
        input->pipeline()->configure(FrequencyWeighting::z, TimeWeighting::fast, 0.0, std::nullopt);
        return input;
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(qEnvironmentVariableIsSet("PULSE_SERVER"), "the pulse fixture sets PULSE_SERVER");
        // A 1 kHz tone of amplitude 0.1 (-20 dBFS peak), played for longer than the tests run.
        const QString problem = tone.start(OSTREL_TONE_TOOL, 0.1, 120);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }

    void aToneThroughTheRealInputMeasuresItsLevel()
    {
        auto input = makeInput();
        std::vector<MeasurementInterval> intervals;
        input->onInterval
            = [&](const MeasurementInterval& interval) { intervals.push_back(interval); };
        input->start("testmic", 0);
        QCOMPARE(input->status(), AudioInput::Status::running);
        QCOMPARE(input->activeDevice()->name, QString("TestMic"));
        QCOMPARE(input->sampleRate(), 48000.0);
        // Two seconds of intervals: the first second settles the Fast detector.
        QTRY_VERIFY_WITH_TIMEOUT(intervals.size() >= 20, 10000);
        const double expected = SPLMath::decibels(0.1 * 0.1 / 2.0);
        int measured = 0;
        for (std::size_t i = 10; i < intervals.size(); ++i) {
            QVERIFY2(std::fabs(intervals[i].leq() - expected) < 0.1,
                qPrintable(QString("interval %1 reads %2").arg(i).arg(intervals[i].leq())));
            QVERIFY(std::fabs(intervals[i].level - expected) < 0.1);
            ++measured;
        }
        QVERIFY(measured >= 10);
        QVERIFY(intervals.back().spectrum.has_value());
    }

    void aChosenRateOpensTheRealDeviceAtItAndARefusedOneChangesNothing()
    {
        auto input = makeInput();
        std::vector<MeasurementInterval> intervals;
        input->onInterval
            = [&](const MeasurementInterval& interval) { intervals.push_back(interval); };
        input->start("testmic", 0);
        QCOMPARE(input->sampleRate(), 48000.0);

        const int restartsBefore = input->restartCount();
        input->setSampleRate(12345.0); // not a rate the device offers
        QCOMPARE(input->restartCount(), restartsBefore);
        QCOMPARE(input->status(), AudioInput::Status::running);

        input->setSampleRate(96000.0);
        QCOMPARE(input->status(), AudioInput::Status::running);
        QCOMPARE(input->sampleRate(), 96000.0);
        QCOMPARE(input->activeDevice()->nominalSampleRate, 96000.0);
        intervals.clear();
        QTRY_VERIFY_WITH_TIMEOUT(intervals.size() >= 3, 5000);
        QCOMPARE(intervals.back().sampleRate, 96000.0);
        // A tenth of a second of whole blocks.
        QVERIFY(intervals.back().sampleCount >= 9600 && intervals.back().sampleCount < 19200);
    }

    void anUnpluggedSourceIsUnavailableAndComesBackOnItsOwn()
    {
        auto input = makeInput();
        int received = 0;
        input->onInterval = [&](const MeasurementInterval&) { ++received; };
        input->start("testmic", 1);
        QCOMPARE(input->status(), AudioInput::Status::running);
        QCOMPARE(input->measuredChannel(), 1);
        QTRY_VERIFY_WITH_TIMEOUT(received > 0, 5000);

        runServerScript("unplug");
        QTRY_COMPARE_WITH_TIMEOUT(input->status(), AudioInput::Status::deviceUnavailable, 5000);
        QVERIFY(!input->activeDevice());

        const int restartsBefore = input->restartCount();
        runServerScript("plug");
        QTRY_COMPARE_WITH_TIMEOUT(input->status(), AudioInput::Status::running, 5000);
        QCOMPARE(input->measuredChannel(), 1);
        QCOMPARE(input->activeDevice()->uid, QString("testmic"));
        QCOMPARE(input->restartCount(), restartsBefore + 1);
        received = 0;
        QTRY_VERIFY_WITH_TIMEOUT(received > 0, 5000);
    }
};

OSTREL_PULSE_TEST_MAIN(AudioInputPulseTest)
#include "AudioInputPulseTest.moc"
