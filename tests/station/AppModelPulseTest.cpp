// End to end: a tone played into a private PulseAudio server reaches the meter of a live central
// model through the real input, calibrated by the offset in its settings.
#include <QProcess>

#include "support/TonePlayer.h"
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include "support/PulseTestMain.h"
#include <cmath>

#include "audio/QtAudioCaptureBackend.h"
#include "station/AppModel.h"

using namespace ostrel;

class AppModelPulseTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir folder;
    testsupport::TonePlayer tone;

private slots:
    void initTestCase()
    {
        QVERIFY2(qEnvironmentVariableIsSet("PULSE_SERVER"), "the pulse fixture sets PULSE_SERVER");
        const QString problem = tone.start(OSTREL_TONE_TOOL, 0.1, 60);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }

    void aToneOfAmplitudeATenthReads96Point99WithOffset120()
    {
        QSettings store(folder.filePath("settings.ini"), QSettings::IniFormat);
        store.setValue("calibrationOffset", 120.0);
        store.setValue("inputDeviceUID", "testmic");
        store.setValue("weighting", "A");
        store.sync();
        AppModel model(AppModel::Mode::live, std::make_unique<AppSettings>(store),
            std::make_unique<QtAudioCaptureBackend>());
        QTRY_COMPARE_WITH_TIMEOUT(model.audio().status(), AudioInput::Status::running, 5000);
        // A second after the first reading the Fast detector has settled on the tone.
        QTRY_VERIFY_WITH_TIMEOUT(model.meter().level().has_value(), 5000);
        QTest::qWait(1000);
        const double level = *model.meter().level();
        QVERIFY2(std::fabs(level - 96.99) <= 0.1, qPrintable(QString::number(level)));
        QVERIFY(model.meter().hasSignal());
    }
};

OSTREL_PULSE_TEST_MAIN(AppModelPulseTest)
#include "AppModelPulseTest.moc"
