// The panes the main screen fills and the sheets it raises, drawn off screen: the spectrum in
// its three styles, the cue views in every form at three sizes, the calibration assistant and
// the input picker. The pictures stay in the build tree for a look.
#include <chrono>

#include "ScreenShots.h"
#include "app/SampleContent.h"
#include "support/SteadyInterval.h"
#include "views/calibration/CalibrationAssistantModel.h"
#include "views/components/Symbols.h"
#include "views/qlab/CurrentCueModel.h"

using namespace ostrel;
using namespace ostrel::screens;

namespace {

// Pixels of `area` whose colour differs from the pane's own background by more than a shade.
int colouredPixels(const QImage& image, QRect area, QColor background)
{
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            if (std::abs(colour.blue() - background.blue()) > 40
                && colour.blue() > colour.red() + 30)
                ++count;
        }
    }
    return count;
}

QLabCue cue(const QString& number, const QString& name, std::optional<double> duration = {})
{
    QLabCue result;
    result.id = number + name;
    result.number = number;
    result.name = name;
    result.type = QStringLiteral("Audio");
    result.startedAt = std::chrono::system_clock::now();
    result.sampledAt = result.startedAt;
    result.actionElapsed = 12.0;
    result.duration = duration;
    return result;
}

QLabCue timecodeCue()
{
    QLabCue result = cue(QString(), QString());
    result.id = QStringLiteral("tc");
    result.type = QStringLiteral("Timecode");
    result.timecodeStart = QStringLiteral("01:00:00:00");
    result.timecodeRateIndex = 1;
    result.timecodeOutputType = 1;
    return result;
}

QUrl cueFrame()
{
    return QUrl::fromLocalFile(QStringLiteral(OSTREL_TEST_QML_DIR "/CueViewFrame.qml"));
}

} // namespace

class PaneScreenTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // The style was set by the first screen tests, before any QML was loaded.
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        Symbols::installFont();
    }

    void eachSpectrumStyleDrawsInThePane_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<QString>("shown");
        QTest::newRow("bars") << int(SpectrumStyle::bars) << "spectrumChart";
        QTest::newRow("line") << int(SpectrumStyle::line) << "spectrumChart";
        QTest::newRow("spectrogram") << int(SpectrumStyle::spectrogram) << "spectrogramView";
    }

    void eachSpectrumStyleDrawsInThePane()
    {
        QFETCH(int, style);
        QFETCH(QString, shown);
        Station station(AppModel::Mode::inert, AppearanceMode::dark);
        station.model->settings().display().setSpectrumStyle(static_cast<SpectrumStyle>(style));
        SampleContent::feed(*station.model, std::chrono::system_clock::now());
        Screen screen(*station.model);
        const QImage image = render(screen, QSize(560, 720));
        QVERIFY(save(image, QStringLiteral("spectrum-%1.png").arg(QTest::currentDataTag())));

        QQuickItem* pane = screen.item(qPrintable(shown));
        QVERIFY(pane && pane->isVisible());
        const QRect area = screen.rectOf("spectrumView");
        QVERIFY(!area.isEmpty());
        const QColor background = image.pixelColor(area.right(), area.top());
        QVERIFY2(colouredPixels(image, area, background) > area.width() * area.height() / 20,
            "the spectrum is not drawn");
        QVERIFY(!screen.item("spectrumWaiting")->isVisible()
            || !screen.item("spectrumChart")->isVisible());
        QCOMPARE(screen.item("dominantFrequency")->property("text").toString().isEmpty(), false);
        QVERIFY(screen.item("dominantFrequency")->property("text").toString() != "None");
    }

    void theSpectrumPaneWaitsForAudio()
    {
        Station station(AppModel::Mode::inert, AppearanceMode::light);
        Screen screen(*station.model);
        render(screen, QSize(560, 720));
        QVERIFY(screen.item("spectrumWaiting")->isVisible());
        QCOMPARE(screen.item("spectrumWaiting")->property("text").toString(),
            QString::fromUtf8("Waiting for audio…"));
        QCOMPARE(screen.item("dominantFrequency")->property("text").toString(), "None");
        station.model->settings().display().setSpectrumStyle(SpectrumStyle::spectrogram);
        render(screen, QSize(560, 720));
        QVERIFY(screen.item("spectrogramWaiting")->isVisible());
    }

    void theFeedbackWarningStandsUnderTheReadout()
    {
        Station station(AppModel::Mode::inert, AppearanceMode::dark);
        SampleContent::feed(*station.model, std::chrono::system_clock::now());
        auto at = std::chrono::system_clock::now();
        for (int i = 0; i < 20; ++i) {
            at += std::chrono::milliseconds(100);
            MeasurementInterval interval = testsupport::intervalAt(92.0);
            Spectrum spectrum;
            spectrum.bandLevels.fill(50.0);
            spectrum.fineBandLevels.fill(50.0);
            spectrum.peak = SpectralPeak {2500.0, 80.0 + 0.3 * i, 35.0, -40.0};
            interval.spectrum = spectrum;
            station.model->ingest(interval, at);
        }
        QVERIFY(station.model->meter().feedbackWarning().has_value());
        Screen screen(*station.model);
        const QImage image = render(screen, QSize(560, 720));
        QVERIFY(save(image, QStringLiteral("main-screen-feedback.png")));
        QQuickItem* text = screen.item("feedbackText");
        QVERIFY(text && text->isVisible());
        QCOMPARE(
            text->property("text").toString(), QString::fromUtf8("Possible feedback · 2.50 kHz"));
        const QRect area = screen.rectOf("feedbackWarning");
        QVERIFY(area.top() > screen.rectOf("levelReadout").bottom() - 2);
        QVERIFY(contrastingPixels(image, area) > 50 || area.height() > 10);
    }

    void theCueViewsDrawEveryForm_data()
    {
        QTest::addColumn<bool>("showMode");
        QTest::addColumn<QString>("form");
        QTest::addColumn<QSize>("size");
        for (const bool showMode : {false, true}) {
            for (const char* form : {"one", "several", "timecode", "none", "off", "connecting",
                     "noWorkspace", "passcode", "disconnected"}) {
                for (const QSize size : {QSize(480, 300), QSize(960, 600), QSize(1680, 1050)}) {
                    const QString tag = QStringLiteral("%1-%2-%3x%4")
                                            .arg(showMode ? "show" : "regular", form)
                                            .arg(size.width())
                                            .arg(size.height());
                    QTest::newRow(qPrintable(tag)) << showMode << QString::fromLatin1(form) << size;
                }
            }
        }
    }

    void theCueViewsDrawEveryForm()
    {
        QFETCH(bool, showMode);
        QFETCH(QString, form);
        QFETCH(QSize, size);
        Station station(AppModel::Mode::inert, AppearanceMode::dark);
        QLabClient& qlab = station.model->qlab();
        const QString workspace = QStringLiteral("Evening Show");
        QString expected;
        if (form == "one") {
            qlab.simulate(QLabClientState::connected, workspace, {cue("14", "Overture", 95.0)});
            expected = "Overture";
        } else if (form == "several") {
            qlab.simulate(QLabClientState::connected, workspace,
                {cue("14", "Overture", 95.0), cue("", "House out"), cue("12", "Preshow")});
            expected = "Overture";
        } else if (form == "timecode") {
            qlab.simulate(
                QLabClientState::connected, workspace, {cue("21", "Storm", 40.0), timecodeCue()});
            expected = "Storm";
        } else if (form == "none") {
            qlab.simulate(QLabClientState::connected, workspace, {});
            expected = "No cue playing";
        } else {
            const auto state = form == "off" ? QLabClientState::off
                : form == "connecting"       ? QLabClientState::connecting
                : form == "noWorkspace"      ? QLabClientState::noWorkspace
                : form == "passcode"         ? QLabClientState::passcodeRequired
                                             : QLabClientState::disconnected;
            qlab.simulate(state, std::nullopt, {});
            expected = CurrentCueModel::unavailableText(state);
        }
        Screen screen(*station.model, cueFrame(), {{"showMode", showMode}});
        QCOMPARE(screen.view.status(), QQuickView::Ready);
        const QImage image = render(screen, size);
        QCOMPARE(image.size(), size);
        QVERIFY(save(image, QStringLiteral("cue-%1.png").arg(QTest::currentDataTag())));

        // The words are there, visible, and drawn inside the window.
        QStringList shown;
        for (QQuickItem* child : screen.item("currentCue")->findChildren<QQuickItem*>()) {
            if (child->isVisible() && child->property("text").isValid()
                && !child->property("text").toString().isEmpty())
                shown << child->property("text").toString();
        }
        QVERIFY2(shown.contains(expected), qPrintable(shown.join(" | ")));
        if (form == "several")
            QVERIFY(shown.contains(showMode
                    ? QStringLiteral("2 more playing")
                    : QStringLiteral("Also playing: House out and 12 Preshow")));
        const QRect area = screen.rectOf("currentCue");
        QVERIFY(!area.isEmpty());
        QVERIFY2(contrastingPixels(image, area) > 50, "the cue view is not drawn");
        QCOMPARE(screen.item("timecodeReadout")->isVisible(), form == "timecode");
        if (form == "timecode") {
            QVERIFY(screen.item("timecodeValue")->property("text").toString().startsWith("01:00:"));
            QCOMPARE(screen.item("timecodeDetails")->property("text").toString(),
                QString::fromUtf8("25 fps · LTC"));
            QVERIFY(contrastingPixels(image, screen.rectOf("timecodeReadout")) > 50);
        }
    }

    void theMainScreenShowsTheCurrentCueAndTheTimecode()
    {
        Station station(AppModel::Mode::inert, AppearanceMode::dark);
        SampleContent::feed(*station.model, std::chrono::system_clock::now());
        station.model->qlab().simulate(QLabClientState::connected, QStringLiteral("Evening Show"),
            {cue("14", "Overture", 95.0), cue("", "House out"), timecodeCue()});
        Screen screen(*station.model);
        const QImage image = render(screen, QSize(560, 720));
        QVERIFY(save(image, QStringLiteral("main-screen-cue.png")));
        QVERIFY(screen.item("timecodeReadout")->isVisible());
        const QRect cueArea = screen.rectOf("currentCue");
        const QRect timecodeArea = screen.rectOf("timecodeReadout");
        QVERIFY(!cueArea.isEmpty() && !timecodeArea.isEmpty());
        QVERIFY(timecodeArea.left() >= cueArea.right());
        QVERIFY(cueArea.bottom() < screen.rectOf("levelReadout").top());
    }

    void uncalibratedOpensTheAssistantWhichPausesFeedbackDetection()
    {
        Station station(AppModel::Mode::inert, AppearanceMode::dark);
        station.model->settings().measurement().resetCalibration();
        SampleContent::feed(*station.model, std::chrono::system_clock::now());
        Screen screen(*station.model);
        render(screen, QSize(560, 720));
        QQuickItem* uncalibrated = screen.item("uncalibratedLabel");
        QVERIFY(uncalibrated && uncalibrated->isVisible());
        QObject* sheet = screen.object("calibrationAssistant");
        QVERIFY(sheet);
        QVERIFY(!sheet->property("visible").toBool());

        const QPoint centre
            = uncalibrated
                  ->mapToScene(QPointF(uncalibrated->width() / 2, uncalibrated->height() / 2))
                  .toPoint();
        QTest::mouseClick(&screen.view, Qt::LeftButton, {}, centre);
        QTRY_VERIFY(sheet->property("visible").toBool());
        QVERIFY(station.model->meter().suspendsFeedbackDetection());
        QVERIFY(save(render(screen, QSize(560, 720)), QStringLiteral("calibration-connect.png")));

        QMetaObject::invokeMethod(sheet, "reject");
        QTRY_VERIFY(!sheet->property("visible").toBool());
        QVERIFY(!station.model->meter().suspendsFeedbackDetection());
    }

    void aTypedReferenceLevelIsTakenByCalibrate()
    {
        Station station(AppModel::Mode::inert, AppearanceMode::dark);
        Screen screen(*station.model);
        render(screen, QSize(560, 720));
        QObject* sheet = screen.object("calibrationAssistant");
        QVERIFY(sheet);
        auto* assistant = qobject_cast<CalibrationAssistantModel*>(
            sheet->property("assistant").value<QObject*>());
        QVERIFY(assistant);
        assistant->open();
        assistant->primary();
        assistant->primary();
        QTRY_VERIFY(screen.item("referenceLevelField")->isVisible());
        QQuickItem* field = screen.item("referenceLevel");
        QCOMPARE(field->property("text").toString(), QStringLiteral("94.0"));
        field->setProperty("text", QStringLiteral("104.5"));
        QMetaObject::invokeMethod(screen.item("assistantPrimary"), "clicked");
        QCOMPARE(station.model->settings().measurement().calibratorReferenceLevel(), 104.5);
        QCOMPARE(assistant->step(), CalibrationAssistantModel::Step::measuring);
        assistant->cancel();
    }

    void theAssistantsResultPageShowsTheOffset_data()
    {
        QTest::addColumn<bool>("dark");
        QTest::newRow("dark") << true;
        QTest::newRow("light") << false;
    }

    void theAssistantsResultPageShowsTheOffset()
    {
        QFETCH(bool, dark);
        Station station(AppModel::Mode::inert, dark ? AppearanceMode::dark : AppearanceMode::light);
        SampleContent::feed(*station.model, std::chrono::system_clock::now());
        double seconds = 0.0;
        station.model->calibration().setClock([&seconds] { return seconds; });
        station.model->calibration().setTick(1);
        Screen screen(*station.model);
        render(screen, QSize(560, 720));
        QObject* sheet = screen.object("calibrationAssistant");
        QVERIFY(sheet);
        auto* assistant = qobject_cast<CalibrationAssistantModel*>(
            sheet->property("assistant").value<QObject*>());
        QVERIFY(assistant);
        assistant->open();
        assistant->primary();
        assistant->primary();
        assistant->primary();
        auto at = std::chrono::system_clock::now();
        for (int i = 0; i < 40; ++i) {
            at += std::chrono::milliseconds(100);
            station.model->ingest(testsupport::intervalAt(94.0, -23.0), at);
            seconds += 0.1;
            if (i == 20)
                QVERIFY(save(render(screen, QSize(560, 720)),
                    QStringLiteral("calibration-measuring-%1.png").arg(QTest::currentDataTag())));
        }
        QTRY_VERIFY(assistant->showsResult());
        const QImage image = render(screen, QSize(560, 720));
        QVERIFY(
            save(image, QStringLiteral("calibration-result-%1.png").arg(QTest::currentDataTag())));
        QQuickItem* offset = screen.item("calibrationOffset");
        QVERIFY(offset && offset->isVisible());
        QCOMPARE(offset->property("text").toString(), QStringLiteral("+117.0 dB"));
        QCOMPARE(screen.item("calibrationMeasured")->property("text").toString(),
            QStringLiteral("-23.0 dBFS at 94.0 dB SPL"));
        QCOMPARE(screen.item("assistantTitle")->property("text").toString(),
            QStringLiteral("Calibration Complete"));
        QVERIFY(contrastingPixels(image, screen.rectOf("calibrationResult")) > 50);
    }

    void chooseInputOpensThePicker()
    {
        auto backend = std::make_unique<testsupport::FakeCaptureBackend>();
        backend->devices = {testsupport::device("mic", "Measurement Mic", 2),
            testsupport::device("usb", "USB Interface 8", 8)};
        auto* fake = backend.get();
        Station station(AppModel::Mode::live, AppearanceMode::dark, std::move(backend));
        station.model->settings().qlab().setEnabled(false);
        station.model->settings().input().setDeviceUID(QStringLiteral("gone"));
        Screen screen(*station.model);
        QTRY_COMPARE(station.model->audio().status(), AudioInput::Status::deviceUnavailable);
        render(screen, QSize(560, 720));
        QQuickItem* action = screen.item("noticeAction");
        QVERIFY(action && action->isVisible());
        QMetaObject::invokeMethod(action, "clicked");
        QObject* picker = screen.object("inputPickerSheet");
        QVERIFY(picker);
        QTRY_VERIFY(picker->property("visible").toBool());
        QVERIFY(save(render(screen, QSize(560, 720)), QStringLiteral("input-picker.png")));
        QQuickItem* device = screen.item("inputDevice");
        QVERIFY(device);
        QCOMPARE(device->property("currentText").toString(), QStringLiteral("Unavailable Device"));

        // Choosing a device applies at once: the notice goes and the readout comes back.
        QMetaObject::invokeMethod(device, "activated", Q_ARG(int, 2));
        QCOMPARE(station.model->settings().input().deviceUID(), QStringLiteral("usb"));
        QTRY_COMPARE(station.model->audio().status(), AudioInput::Status::running);
        QCOMPARE(fake->lastStarted.uid, QStringLiteral("usb"));
        QTRY_VERIFY(!screen.item("noticeView")->isVisible());
    }
};

int runPaneScreenTests(int argc, char** argv)
{
    PaneScreenTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "PaneScreenTest.moc"
