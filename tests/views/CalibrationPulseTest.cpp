// End to end: a steady 1 kHz tone standing in for a 94 dB calibrator is played into the private
// PulseAudio server; the calibration assistant walks its pages over a live station listening
// through the real input, and the offset it finds makes the meter read 94.0 dB.
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <memory>

#include "audio/QtAudioCaptureBackend.h"
#include "station/AppModel.h"
#include "support/PulseTestMain.h"
#include "support/TonePlayer.h"
#include "views/calibration/CalibrationAssistantModel.h"

using namespace ostrel;
using Step = CalibrationAssistantModel::Step;

class CalibrationPulseTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir folder;
    testsupport::TonePlayer tone;
    std::unique_ptr<QSettings> store;
    std::unique_ptr<AppModel> model;

    // Plays the tone, lets the input settle on it, then walks the pages and measures.
    bool measure(CalibrationAssistantModel& assistant, double amplitude, double waver)
    {
        const QString problem = tone.start(OSTREL_TONE_TOOL, amplitude, 60, waver);
        if (!problem.isEmpty()) {
            qWarning("%s", qPrintable(problem));
            return false;
        }
        QTest::qWait(1500);
        assistant.open();
        assistant.primary();
        assistant.primary();
        assistant.primary();
        return assistant.step() == Step::measuring;
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(qEnvironmentVariableIsSet("PULSE_SERVER"), "the pulse fixture sets PULSE_SERVER");
        store = std::make_unique<QSettings>(folder.filePath("settings.ini"), QSettings::IniFormat);
        store->setValue("inputDeviceUID", "testmic");
        store->setValue("weighting", "A");
        store->setValue("qlabEnabled", false);
        store->sync();
        model = std::make_unique<AppModel>(AppModel::Mode::live,
            std::make_unique<AppSettings>(*store), std::make_unique<QtAudioCaptureBackend>(),
            QLabClient::Timings {}, folder.filePath("Sessions"));
        QTRY_COMPARE_WITH_TIMEOUT(model->audio().status(), AudioInput::Status::running, 5000);
        QCOMPARE(model->settings().measurement().calibratorReferenceLevel(), 94.0);
    }

    void theOffsetFoundMakesTheMeterRead94()
    {
        CalibrationAssistantModel assistant;
        assistant.setAppModel(model.get());
        QVERIFY(measure(assistant, 0.1, 0.0));
        QTRY_COMPARE_WITH_TIMEOUT(assistant.step(), Step::finished, 10000);
        QVERIFY2(assistant.showsResult(), qPrintable(assistant.text()));
        // A sine of amplitude 0.1 is -23.01 dBFS.
        const double offset = assistant.result()->offset;
        QVERIFY2(std::fabs(offset - 117.01) < 0.1, qPrintable(QString::number(offset)));
        QCOMPARE(model->settings().measurement().calibrationOffset(), 120.0);

        assistant.primary();
        QVERIFY(!assistant.isOpen());
        QVERIFY(model->settings().measurement().isCalibrated());
        QCOMPARE(model->settings().measurement().calibrationOffset(), offset);
        // The new offset reaches the pipeline on the next turn; the Fast detector then settles.
        QTest::qWait(1500);
        QVERIFY(model->meter().level().has_value());
        const double level = *model->meter().level();
        QVERIFY2(std::fabs(level - 94.0) <= 0.1, qPrintable(QString::number(level)));
    }

    void aWaveringToneSaysTheLevelWasntSteady()
    {
        CalibrationAssistantModel assistant;
        assistant.setAppModel(model.get());
        QVERIFY(measure(assistant, 0.1, 6.0));
        QTRY_COMPARE_WITH_TIMEOUT(assistant.step(), Step::finished, 10000);
        QCOMPARE(assistant.title(), QStringLiteral("Calibration Didn't Finish"));
        QCOMPARE(assistant.text(),
            QStringLiteral("The level wasn't steady. Make sure the room is quiet and the "
                           "calibrator isn't moving."));
        assistant.cancel();
    }

    void aTooQuietToneSaysTheCalibratorWasntHeard()
    {
        CalibrationAssistantModel assistant;
        assistant.setAppModel(model.get());
        // About -100 dBFS, below what any calibrator gives.
        QVERIFY(measure(assistant, 0.00001, 0.0));
        QTRY_COMPARE_WITH_TIMEOUT(assistant.step(), Step::finished, 10000);
        QCOMPARE(assistant.primaryTitle(), QStringLiteral("Try Again"));
        QCOMPARE(assistant.text(),
            QStringLiteral("Ostrel Live couldn't hear the calibrator. Check that it's switched "
                           "on and the microphone is fully inserted."));
        assistant.cancel();
    }

    void cleanupTestCase()
    {
        tone.stop();
        model.reset();
    }
};

OSTREL_PULSE_TEST_MAIN(CalibrationPulseTest)
#include "CalibrationPulseTest.moc"
