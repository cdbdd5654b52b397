// The settings window over a running inert station: every control of its pages changed as a user
// would, the preference stored at once and taken by the station; each page drawn off screen,
// light and dark.
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include "ScreenShots.h"
#include "StationQmlModules.h"

using namespace ostrel;
using ostrel::screens::Station;

namespace {

// The items under `root` by object name, as drawn: repeaters' delegates are found among the
// items, not always among the QObject children.
QQuickItem* itemNamed(QQuickItem* root, const QString& name)
{
    if (!root) return nullptr;
    if (root->objectName() == name) return root;
    for (QQuickItem* child : root->childItems())
        if (QQuickItem* found = itemNamed(child, name)) return found;
    return nullptr;
}

struct SettingsStation {
    Station station;
    QQmlApplicationEngine engine;
    QQuickWindow* main = nullptr;
    QQuickWindow* settings = nullptr;

    explicit SettingsStation(AppearanceMode appearance, AppModel::Mode mode = AppModel::Mode::inert,
        std::unique_ptr<AudioCaptureBackend> backend = std::make_unique<SilentCaptureBackend>())
        : station(mode, appearance, std::move(backend))
    {
        station.model->start();
        engine.addImportPath(QStringLiteral("qrc:/"));
        engine.setInitialProperties(
            {{QStringLiteral("appModel"), QVariant::fromValue(station.model.get())}});
        engine.load(QUrl(QStringLiteral("qrc:/Ostrel/Main/ContentView.qml")));
        if (engine.rootObjects().isEmpty()) return;
        main = qobject_cast<QQuickWindow*>(engine.rootObjects().first());
        settings = main->findChild<QQuickWindow*>(QStringLiteral("settingsWindow"));
        if (!settings) return;
        // Tall enough that every row of the longest page lies inside the window.
        settings->resize(500, 1000);
        settings->show();
    }

    AppSettings& preferences() { return station.model->settings(); }

    bool openPage(int index)
    {
        if (!settings) return false;
        settings->setProperty("currentPage", index);
        QCoreApplication::processEvents();
        return settings->property("currentPage").toInt() == index;
    }

    QQuickItem* control(const char* name) const
    {
        return settings ? itemNamed(settings->contentItem(), QLatin1String(name)) : nullptr;
    }

    // A press and release at the control's centre.
    void click(QQuickItem* item) const
    {
        // Laid out first: a row just shown has its place after the next polish.
        QSignalSpy frames(settings, &QQuickWindow::frameSwapped);
        settings->requestUpdate();
        frames.wait(1000);
        const QPointF centre = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
        QTest::mouseClick(settings, Qt::LeftButton, Qt::NoModifier, centre.toPoint());
    }

    // A row chosen from a picker's list: the index moves and the picker reports the choice.
    static void choose(QQuickItem* picker, int index)
    {
        picker->setProperty("currentIndex", index);
        QMetaObject::invokeMethod(picker, "activated", Q_ARG(int, index));
    }

    // One step of a stepper's arrows.
    static void step(QQuickItem* stepper, bool up)
    {
        QMetaObject::invokeMethod(stepper, up ? "increase" : "decrease");
        QMetaObject::invokeMethod(stepper, "valueModified");
    }

    QImage grab()
    {
        QSignalSpy frames(settings, &QQuickWindow::frameSwapped);
        settings->requestUpdate();
        frames.wait(2000);
        QTest::qWait(100);
        return settings->grabWindow();
    }
};

enum Page {
    audio = 0,
    calibration = 1,
    meter = 2,
    qlab = 3,
    mics = 4,
    crew = 5,
    display = 6,
    data = 7
};

} // namespace

class SettingsWindowTest : public QObject {
    Q_OBJECT

private slots:
    void theWindowOpensWithItsPagesInOrder()
    {
        SettingsStation s(AppearanceMode::light);
        QVERIFY(s.settings);
        QVERIFY(QTest::qWaitForWindowExposed(s.settings));
        QStringList titles;
        for (const char* name :
            {"settingsTabAudio", "settingsTabCalibration", "settingsTabMeter", "settingsTabQLab",
                "settingsTabMics", "settingsTabCrew", "settingsTabDisplay", "settingsTabData"}) {
            QQuickItem* tab = s.control(name);
            QVERIFY2(tab, name);
            titles << tab->property("text").toString();
        }
        QCOMPARE(titles,
            (QStringList {
                "Audio", "Calibration", "Meter", "QLab", "Mics", "Crew", "Display", "Data"}));
        // The Display page is built when its tab is first opened, not with the window.
        QVERIFY(!s.settings->property("displayPage").value<QObject*>());
        QVERIFY(s.openPage(display));
        QVERIFY(s.settings->property("displayPage").value<QObject*>());
    }

    void theAudioPageChoosesTheDeviceChannelAndRateOfTheRunningInput()
    {
        auto backend = std::make_unique<testsupport::FakeCaptureBackend>();
        backend->devices = {testsupport::device("mic", "Measurement Mic", 1),
            testsupport::device("usb", "USB Interface", 8)};
        SettingsStation s(AppearanceMode::light, AppModel::Mode::live, std::move(backend));
        QVERIFY(s.settings && QTest::qWaitForWindowExposed(s.settings));
        QVERIFY(s.openPage(audio));
        auto& input = s.preferences().input();
        auto& audioInput = s.station.model->audio();
        QTRY_COMPARE(audioInput.status(), AudioInput::Status::running);

        QQuickItem* devices = s.control("inputDevicePicker");
        QQuickItem* channels = s.control("inputChannelPicker");
        QQuickItem* rates = s.control("sampleRatePicker");
        QVERIFY(devices && channels && rates);
        QCOMPARE(devices->property("count").toInt(), 3);

        // The one-channel microphone leaves the channel picker shown but disabled.
        SettingsStation::choose(devices, 1);
        QCOMPARE(input.deviceUID(), QStringLiteral("mic"));
        QVERIFY(channels->isVisible());
        QVERIFY(!channels->isEnabled());

        SettingsStation::choose(devices, 2);
        QCOMPARE(input.deviceUID(), QStringLiteral("usb"));
        QTRY_VERIFY(audioInput.activeDevice() && audioInput.activeDevice()->uid == "usb");
        QVERIFY(channels->isEnabled());
        SettingsStation::choose(channels, 5);
        QCOMPARE(input.channel(), qint64(5));
        QTRY_COMPARE(audioInput.measuredChannel(), qint64(5));

        QVERIFY(rates->isVisible());
        SettingsStation::choose(rates, 2);
        QTRY_COMPARE(audioInput.sampleRate(), 96000.0);
        QCOMPARE(s.control("audioFooter")->property("text").toString(),
            QStringLiteral("Audio is analysed in real time. It's recorded only during a session, "
                           "for replay, and stays on this Mac."));
    }

    void theCalibrationPageShowsAndResetsTheCalibration()
    {
        SettingsStation s(AppearanceMode::light);
        QVERIFY(s.settings && QTest::qWaitForWindowExposed(s.settings));
        QVERIFY(s.openPage(calibration));
        auto& measurement = s.preferences().measurement();
        // The screen stations are calibrated; start from a station never calibrated.
        measurement.resetCalibration();
        QCOMPARE(s.control("offsetText")->property("text").toString(), QStringLiteral("+120.0 dB"));
        QCOMPARE(
            s.control("lastCalibratedText")->property("text").toString(), QStringLiteral("Never"));
        QCOMPARE(
            s.control("referenceText")->property("text").toString(), QStringLiteral("94.0 dB SPL"));
        QCOMPARE(s.control("correctionText")->property("text").toString(), QStringLiteral("None"));

        QQuickItem* advanced = s.control("advancedDisclosure");
        QVERIFY(advanced);
        s.click(advanced);
        QQuickItem* reset = s.control("resetCalibrationButton");
        QVERIFY(reset && reset->isVisible());
        QVERIFY(!reset->isEnabled());

        QQuickItem* field = s.control("offsetField");
        QVERIFY(field && field->isVisible());
        field->setProperty("text", QStringLiteral("-3.5"));
        QMetaObject::invokeMethod(field, "editingFinished");
        QCOMPARE(measurement.calibrationOffset(), -3.5);
        QCOMPARE(s.control("offsetText")->property("text").toString(), QStringLiteral("-3.5 dB"));

        s.station.model->applyCalibration(101.2);
        QVERIFY(reset->isEnabled());
        QVERIFY(s.control("lastCalibratedText")->property("text").toString() != "Never");
        s.click(reset);
        QVERIFY(!measurement.isCalibrated());
        QCOMPARE(measurement.calibrationOffset(), 120.0);

        // An inert station can always open the assistant, here over the settings window.
        QQuickItem* calibrate = s.control("calibrateButton");
        QVERIFY(calibrate && calibrate->isEnabled());
        s.click(calibrate);
        auto* page = s.settings->property("calibrationPage").value<QObject*>();
        QVERIFY(page);
        auto* assistant = page->property("assistant").value<QObject*>();
        QVERIFY(assistant);
        QTRY_VERIFY(assistant->property("visible").toBool());
    }

    void theMeterPageChangesTheMeasurementAtOnce()
    {
        SettingsStation s(AppearanceMode::light);
        QVERIFY(s.settings && QTest::qWaitForWindowExposed(s.settings));
        QVERIFY(s.openPage(meter));
        const int applies = s.station.model->measurementApplyCount();

        QQuickItem* c = s.control("weightingC");
        QVERIFY(c);
        s.click(c);
        QCOMPARE(s.preferences().measurement().weighting(), FrequencyWeighting::c);
        QCOMPARE(s.station.model->measurementApplyCount(), applies + 1);
        QCOMPARE(s.control("weightingFooter")->property("text").toString(),
            QStringLiteral("Flatter response that includes low frequencies. Useful for loud music "
                           "and peaks."));

        QQuickItem* slow = s.control("responseSlow");
        QVERIFY(slow);
        s.click(slow);
        QCOMPARE(s.preferences().measurement().response(), TimeWeighting::slow);
        QCOMPARE(s.preferences().measurement().meterSetting(), QStringLiteral("C / Slow"));
        QCOMPARE(s.station.model->measurementApplyCount(), applies + 2);

        QQuickItem* feedback = s.control("feedbackWarningSwitch");
        QVERIFY(feedback && feedback->property("checked").toBool());
        s.click(feedback);
        QVERIFY(!s.preferences().display().feedbackWarningEnabled());
        QVERIFY(!s.station.model->meter().detectsFeedback());
    }

    void theDisplayPageChangesTheStationAtOnce()
    {
        SettingsStation s(AppearanceMode::light);
        QVERIFY(s.settings && QTest::qWaitForWindowExposed(s.settings));
        QVERIFY(s.openPage(display));
        auto& display = s.preferences().display();

        const QColor lightBackground = s.settings->color();
        QQuickItem* appearance = s.control("appearancePicker");
        QVERIFY(appearance);
        SettingsStation::choose(appearance, 2);
        QCOMPARE(display.appearance(), AppearanceMode::dark);
        QVERIFY(s.settings->color().lightness() < lightBackground.lightness());

        QQuickItem* duration = s.control("graphDurationPicker");
        QVERIFY(duration);
        SettingsStation::choose(duration, 2);
        QCOMPARE(display.graphDuration(), 120.0);
        // Applied once per turn of the event loop.
        QTRY_COMPARE(s.station.model->meter().graphDuration(), 120.0);

        QQuickItem* elevated = s.control("elevatedStepper");
        QQuickItem* high = s.control("highStepper");
        QVERIFY(elevated && high);
        SettingsStation::step(elevated, true);
        QCOMPARE(display.elevatedThreshold(), 86.0);
        QCOMPARE(display.levelRange(86.0), LevelRange::elevated);
        QCOMPARE(high->property("from").toInt(), 87);
        SettingsStation::step(high, false);
        QCOMPARE(display.highThreshold(), 94.0);
        QCOMPARE(elevated->property("to").toInt(), 93);

        QQuickItem* graph = s.control("showGraphSwitch");
        QVERIFY(graph);
        s.click(graph);
        QVERIFY(!display.showModeShowsGraph());

        QQuickItem* slider = s.control("brightnessSlider");
        QVERIFY(slider);
        QCOMPARE(slider->property("from").toDouble(), 0.2);
        slider->setProperty("value", 0.5);
        QMetaObject::invokeMethod(slider, "moved");
        QCOMPARE(display.screenBrightness(), 0.5);
        QCOMPARE(s.control("brightnessText")->property("text").toString(), QStringLiteral("50%"));
        QObject* dimming = s.main->findChild<QObject*>(QStringLiteral("dimming"));
        QVERIFY(dimming);
        QTRY_VERIFY(dimming->property("opacity").toDouble() > 0.0);

        QQuickItem* unhinged = s.control("unhingedSwitch");
        QVERIFY(unhinged);
        s.click(unhinged);
        QVERIFY(display.unhingedMode());

        QQuickItem* style = s.control("spectrumStylePicker");
        QQuickItem* resolution = s.control("resolutionPicker");
        QVERIFY(style && resolution);
        SettingsStation::choose(resolution, 1);
        QCOMPARE(display.spectrumResolution(), SpectrumResolution::sixth);
        SettingsStation::choose(style, 2);
        QCOMPARE(display.spectrumStyle(), SpectrumStyle::spectrogram);
        QVERIFY(!resolution->isEnabled());
        QCOMPARE(s.control("spectrumFooter")->property("text").toString(),
            QStringLiteral(
                "The spectrogram always uses 1/24-octave bands and spans the graph duration."));
    }

    void theQLabPageChangesTheConnectionSettings()
    {
        SettingsStation s(AppearanceMode::light);
        QVERIFY(s.settings && QTest::qWaitForWindowExposed(s.settings));
        QVERIFY(s.openPage(qlab));
        auto& qlabSettings = s.preferences().qlab();

        QQuickItem* host = s.control("hostField");
        QQuickItem* port = s.control("portField");
        QVERIFY(host && port);
        QCOMPARE(port->property("text").toString(), QStringLiteral("53000"));
        host->setProperty("text", QStringLiteral("192.168.1.20"));
        QMetaObject::invokeMethod(host, "editingFinished");
        QCOMPARE(qlabSettings.host(), QStringLiteral("192.168.1.20"));
        port->setProperty("text", QStringLiteral("53001"));
        QMetaObject::invokeMethod(port, "editingFinished");
        QCOMPARE(qlabSettings.port(), qint64(53001));

        QQuickItem* rate = s.control("timecodeRatePicker");
        QVERIFY(rate);
        SettingsStation::choose(rate, 2);
        QCOMPARE(qlabSettings.timecodeFallbackRate(), TimecodeRate::fps30);

        QQuickItem* advanced = s.control("qlabAdvancedDisclosure");
        QVERIFY(advanced);
        s.click(advanced);
        QQuickItem* workspace = s.control("workspaceField");
        QQuickItem* passcode = s.control("passcodeField");
        QVERIFY(workspace && passcode && workspace->isVisible());
        workspace->setProperty("text", QStringLiteral("Hamlet"));
        QMetaObject::invokeMethod(workspace, "editingFinished");
        QCOMPARE(qlabSettings.workspace(), QStringLiteral("Hamlet"));
        passcode->setProperty("text", QStringLiteral("1234"));
        QMetaObject::invokeMethod(passcode, "editingFinished");
        QCOMPARE(qlabSettings.passcode(), QStringLiteral("1234"));

        // Turned off, the fields rest and the client stops.
        QQuickItem* monitor = s.control("monitorQLabSwitch");
        QVERIFY(monitor);
        QVERIFY(s.control("reconnectButton")->isVisible());
        s.click(monitor);
        QVERIFY(!qlabSettings.enabled());
        QVERIFY(!host->isEnabled() && !port->isEnabled());
        QVERIFY(!s.control("reconnectButton")->isVisible());

        // The Dante watch and its flash, on by default, are switched off here.
        auto& dante = s.preferences().dante();
        QVERIFY(dante.monitoringEnabled() && dante.dropoutFlash());
        QQuickItem* watch = s.control("watchDanteSwitch");
        QQuickItem* flash = s.control("danteFlashSwitch");
        QVERIFY(watch && flash);
        s.click(flash);
        QVERIFY(!dante.dropoutFlash());
        s.click(watch);
        QVERIFY(!dante.monitoringEnabled());
        QVERIFY(!s.station.model->showsDante());
    }

    void theDataPageChangesWhatSessionsRecord()
    {
        SettingsStation s(AppearanceMode::light);
        QVERIFY(s.settings && QTest::qWaitForWindowExposed(s.settings));
        QVERIFY(s.openPage(data));
        auto& sessions = s.preferences().sessions();

        QQuickItem* audio = s.control("recordsSessionsSwitch");
        QVERIFY(audio);
        s.click(audio);
        QVERIFY(!sessions.recordsSessions());
        QCOMPARE(s.control("storageFooter")->property("text").toString(),
            QStringLiteral("Ostrel Live stores measurements only. Microphone audio is never "
                           "recorded or saved."));

        QQuickItem* history = s.control("recordsLevelHistorySwitch");
        QVERIFY(history);
        s.click(history);
        QVERIFY(!sessions.recordsLevelHistory());

        // An inert station can't check for updates, so the toggle is absent.
        QQuickItem* updates = s.control("checksAutomaticallySwitch");
        QVERIFY(updates);
        QVERIFY(!updates->isVisible());
        // Nothing to export without a session.
        QQuickItem* exportButton = s.control("exportSessionButton");
        QVERIFY(exportButton);
        QVERIFY(!exportButton->isEnabled());
    }

    void theCrewPageSetsTheRoleTheNameAndThePrimary()
    {
        SettingsStation s(AppearanceMode::light);
        QVERIFY(s.settings && QTest::qWaitForWindowExposed(s.settings));
        QVERIFY(s.openPage(crew));
        auto& settings = s.preferences().crew();
        QQuickItem* roles = s.control("crewRolePicker");
        QQuickItem* name = s.control("stationNameField");
        QQuickItem* summary = s.control("crewRoleSummary");
        QVERIFY(roles && name && summary);
        QCOMPARE(roles->property("count").toInt(), 3);
        QVERIFY(!s.control("crewSettingsStatus")->isVisible());
        QVERIFY(!s.control("crewPrimaryPicker")->isVisible());
        QVERIFY(!s.control("clearChatButton")->isVisible());

        SettingsStation::choose(roles, 2);
        QCOMPARE(settings.role(), CrewRole::secondary);
        // A running station applies the role; an inert one is told to.
        s.station.model->applyCrewSettings();
        QTRY_COMPARE(s.control("crewSettingsStatus")->property("text").toString(),
            QStringLiteral("Looking for primary"));
        QVERIFY(summary->property("text").toString().endsWith(
            "Every computer running Ostrel Live on this network can join and read the chat."));
        QTRY_VERIFY(s.control("crewPrimaryPicker")->isVisible());
        QVERIFY(s.control("crewSettingsStatus")->isVisible());
        QVERIFY(s.control("clearChatButton")->isVisible());

        name->setProperty("text", QStringLiteral("Backstage"));
        QMetaObject::invokeMethod(name, "editingFinished");
        QCOMPARE(settings.stationName(), QStringLiteral("Backstage"));

        // A stored primary that nobody announces stays chosen, marked as not found.
        settings.setPrimary(QStringLiteral("Booth"));
        QQuickItem* primaries = s.control("crewPrimaryPicker");
        QTRY_COMPARE(primaries->property("count").toInt(), 2);
        QCOMPARE(
            primaries->property("currentText").toString(), QStringLiteral("Booth (not found)"));
        const QImage image = s.grab();
        QVERIFY(screens::distinctColours(image) > 8);
        QVERIFY(screens::save(image, QStringLiteral("settings-crew-secondary.png")));
        SettingsStation::choose(primaries, 0);
        QCOMPARE(settings.primary(), QString());

        SettingsStation::choose(roles, 1);
        QCOMPARE(settings.role(), CrewRole::primary);
        QTRY_VERIFY(!s.control("crewPrimaryPicker")->isVisible());
        SettingsStation::choose(roles, 0);
        QCOMPARE(settings.role(), CrewRole::standalone);
    }

    void theCrewPagesClearChatEmptiesThisStationsCopy()
    {
        SettingsStation s(AppearanceMode::light);
        QVERIFY(s.settings && QTest::qWaitForWindowExposed(s.settings));
        QVERIFY(s.openPage(crew));
        // An inert station joins no crew by itself; its link is made a primary by hand.
        s.preferences().crew().setRole(CrewRole::primary);
        s.station.model->applyCrewSettings();
        CrewLink& link = s.station.model->crew();
        link.send(QStringLiteral("Beginners, please"), false, std::nullopt, std::nullopt);
        QCOMPARE(link.messages().size(), std::size_t(1));
        QQuickItem* clear = s.control("clearChatButton");
        QTRY_VERIFY(clear && clear->isVisible());
        s.click(clear);
        QTRY_VERIFY(link.messages().empty());
        QCOMPARE(s.control("crewSettingsStatus")->property("text").toString(),
            QStringLiteral("Waiting for secondaries"));
    }

    void everyPageIsDrawnLightAndDark()
    {
        const QString names[] = {QStringLiteral("audio"), QStringLiteral("calibration"),
            QStringLiteral("meter"), QStringLiteral("qlab"), QStringLiteral("mics"),
            QStringLiteral("crew"), QStringLiteral("display"), QStringLiteral("data")};
        for (AppearanceMode mode : {AppearanceMode::light, AppearanceMode::dark}) {
            SettingsStation s(mode);
            QVERIFY(s.settings && QTest::qWaitForWindowExposed(s.settings));
            s.settings->resize(500, 760);
            for (int page : {audio, calibration, meter, qlab, mics, crew, display, data}) {
                QVERIFY(s.openPage(page));
                const QImage image = s.grab();
                QVERIFY(!image.isNull());
                QVERIFY(screens::distinctColours(image) > 8);
                const QString name
                    = QStringLiteral("settings-%1-%2.png")
                          .arg(names[page],
                              mode == AppearanceMode::dark ? QStringLiteral("dark")
                                                           : QStringLiteral("light"));
                QVERIFY(screens::save(image, name));
            }
        }
    }
};

QTEST_MAIN(SettingsWindowTest)
#include "SettingsWindowTest.moc"
