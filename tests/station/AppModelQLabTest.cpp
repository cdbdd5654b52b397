// The central model takes the QLab settings to the client: trimmed host, clamped port, one
// reconfiguration per turn of changes, and nothing of QLab outside live mode.
#include <algorithm>
#include <vector>

#include <QSettings>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

#include "FakeCaptureBackend.h"
#include "FakeQLab.h"
#include "station/AppModel.h"

using namespace ostrel;
using ostrel::testing::FakeQLab;
using ostrel::testsupport::FakeCaptureBackend;
using State = QLabClient::State;

namespace {

constexpr int waitMs = 5000;

QLabClient::Timings shortTimings()
{
    QLabClient::Timings timings;
    timings.settleMs = 50;
    timings.reconnectMs = 200;
    timings.heartbeatMs = 400;
    timings.silenceLimitMs = 1200;
    timings.pollMs = 100;
    return timings;
}

} // namespace

class AppModelQLabTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir folder;
    std::unique_ptr<QSettings> store;
    std::unique_ptr<FakeQLab> qlab;

    // Preferences written before the model reads them, as a saved file would hold them.
    std::unique_ptr<AppModel> make(AppModel::Mode mode, const QString& host, qint64 port)
    {
        store = std::make_unique<QSettings>(folder.filePath("settings.ini"), QSettings::IniFormat);
        store->clear();
        store->setValue("qlabHost", host);
        store->setValue("qlabPort", port);
        auto fake = std::make_unique<FakeCaptureBackend>();
        fake->devices = {testsupport::device("mic", "Measurement Mic", 1)};
        return std::make_unique<AppModel>(
            mode, std::make_unique<AppSettings>(*store), std::move(fake), shortTimings());
    }

private slots:
    void init()
    {
        qlab = std::make_unique<FakeQLab>();
        QVERIFY(qlab->listen());
        qlab->workspaces = {{"W-1", "Main Show", {}}};
    }

    void cleanup() { qlab.reset(); }

    void liveStationConnectsWithTheHostTrimmedOfSpacesAndTabs()
    {
        auto model = make(AppModel::Mode::live, " \t127.0.0.1\t ", qlab->port());
        QTRY_COMPARE_WITH_TIMEOUT(model->qlab().state(), State::connected, waitMs);
        QCOMPARE(model->qlab().host(), QStringLiteral("127.0.0.1"));
        QCOMPARE(model->qlab().workspaceName(), std::optional<QString>("Main Show"));
    }

    void aHostWithALineEndIsNotTrimmedOfIt()
    {
        auto model = make(AppModel::Mode::live, " 127.0.0.1\n", qlab->port());
        QTRY_VERIFY_WITH_TIMEOUT(model->hasStarted(), waitMs);
        QCOMPARE(model->qlab().host(), QStringLiteral("127.0.0.1\n"));
    }

    void aPortBelowZeroIsClampedToZeroAndNeverTried()
    {
        auto model = make(AppModel::Mode::live, "127.0.0.1", -5);
        std::vector<State> states;
        QObject::connect(&model->qlab(), &QLabClient::stateChanged, model.get(),
            [&] { states.push_back(model->qlab().state()); });
        QTRY_VERIFY_WITH_TIMEOUT(model->hasStarted(), waitMs);
        QCOMPARE(model->qlab().port(), quint16(0));
        // Long enough for a settle and a reconnect, had either been scheduled.
        QTest::qWait(2 * (shortTimings().settleMs + shortTimings().reconnectMs));
        QCOMPARE(model->qlab().state(), State::disconnected);
        QVERIFY(std::find(states.begin(), states.end(), State::connecting) == states.end());
    }

    void aPortAboveTheRangeIsClampedToTheHighestPort()
    {
        auto model = make(AppModel::Mode::live, "127.0.0.1", 70000);
        QTRY_VERIFY_WITH_TIMEOUT(model->hasStarted(), waitMs);
        QCOMPARE(model->qlab().port(), quint16(65535));
    }

    void changedSettingsReconnectOnceForSeveralAssignmentsInOneTurn()
    {
        auto model = make(AppModel::Mode::live, "127.0.0.1", qlab->port());
        QTRY_COMPARE_WITH_TIMEOUT(model->qlab().state(), State::connected, waitMs);

        FakeQLab other;
        other.workspaces = {{"W-2", "Matinee", {}}, {"W-3", "Evening", {}}};
        QVERIFY(other.listen());
        const int appliesBefore = model->qlabLink().applyCount();
        model->settings().qlab().setPort(other.port());
        model->settings().qlab().setWorkspace("even");
        model->settings().qlab().setHost(" 127.0.0.1");
        QTRY_COMPARE_WITH_TIMEOUT(
            model->qlab().workspaceName(), std::optional<QString>("Evening"), waitMs);
        QCOMPARE(other.connectionCount(), 1);
        QCOMPARE(model->qlab().state(), State::connected);
        QCOMPARE(model->qlabLink().applyCount(), appliesBefore + 1);
    }

    void turningQLabOffInSettingsSaysOff()
    {
        auto model = make(AppModel::Mode::live, "127.0.0.1", qlab->port());
        QTRY_COMPARE_WITH_TIMEOUT(model->qlab().state(), State::connected, waitMs);
        model->settings().qlab().setEnabled(false);
        QTRY_COMPARE_WITH_TIMEOUT(model->qlab().state(), State::off, waitMs);
        QTRY_COMPARE_WITH_TIMEOUT(qlab->openConnectionCount(), 0, waitMs);
    }

    void aStationStartedWithQLabOffSaysOff()
    {
        store = std::make_unique<QSettings>(folder.filePath("off.ini"), QSettings::IniFormat);
        store->clear();
        store->setValue("qlabEnabled", false);
        AppModel model(AppModel::Mode::live, std::make_unique<AppSettings>(*store),
            std::make_unique<FakeCaptureBackend>(), shortTimings());
        QTRY_COMPARE_WITH_TIMEOUT(model.qlab().state(), State::off, waitMs);
    }

    void inertAndDemoStationsNeverConnect()
    {
        for (auto mode : {AppModel::Mode::inert, AppModel::Mode::demo}) {
            auto model = make(mode, "127.0.0.1", qlab->port());
            model->start();
            QTest::qWait(4 * shortTimings().settleMs);
            QCOMPARE(qlab->connectionCount(), 0);
            // The demo's show is simulated on the client: connected to "Demo Show", no socket.
            if (mode == AppModel::Mode::demo) {
                QCOMPARE(model->qlab().state(), State::connected);
                QCOMPARE(model->qlab().workspaceName(), std::optional<QString>("Demo Show"));
            } else {
                QCOMPARE(model->qlab().state(), State::disconnected);
            }
        }
    }

    void defaultSettingsTalkToQLabOnThisComputerByThemselves()
    {
        FakeQLab local;
        local.workspaces = {{"W-9", "Local Show", {}}};
        QTcpServer probe;
        if (!probe.listen(QHostAddress::LocalHost, 53000))
            QSKIP("Port 53000 is in use here, so a stand-in QLab cannot take it.");
        probe.close();
        QVERIFY(local.listenOn(53000));
        store = std::make_unique<QSettings>(folder.filePath("defaults.ini"), QSettings::IniFormat);
        store->clear();
        AppModel model(AppModel::Mode::live, std::make_unique<AppSettings>(*store),
            std::make_unique<FakeCaptureBackend>(), shortTimings());
        QTRY_COMPARE_WITH_TIMEOUT(model.qlab().state(), State::connected, waitMs);
        QCOMPARE(model.qlab().workspaceName(), std::optional<QString>("Local Show"));
    }
};

QTEST_GUILESS_MAIN(AppModelQLabTest)
#include "AppModelQLabTest.moc"
