// The QLab client against a fake QLab on loopback, through every state of its table, with every
// wait shortened (a tenth of the station's, or less).
#include <chrono>
#include <memory>

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include "FakeQLab.h"
#include "qlab/client/QLabClient.h"
#include "support/QLabCueIds.h"

using namespace ostrel;
using ostrel::testing::FakeQLab;
using State = QLabClient::State;

namespace {

constexpr int waitMs = 5000;
const QString workspaceID = QStringLiteral("W-1");
const QString runningListAddress = QStringLiteral("/workspace/W-1/runningOrPausedCues/shallow");

QLabClient::Timings shortTimings()
{
    QLabClient::Timings timings;
    timings.settleMs = 60;
    timings.reconnectMs = 300;
    timings.connectTimeoutMs = 1000;
    timings.heartbeatMs = 400;
    timings.silenceLimitMs = 1200;
    timings.pollMs = 100;
    timings.refreshAfterStopMs = 10;
    timings.refreshAfterUpdateMs = 15;
    return timings;
}

// A clock the test moves by hand; the real one otherwise.
struct TestClock {
    std::optional<Date> fixed;
    Date now() const { return fixed.value_or(std::chrono::system_clock::now()); }
};

using ostrel::testsupport::ids;
using ostrel::testsupport::valuesAddress;

// Lets the event loop run for a while, for checks that something does not happen.
void settle(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds)
        QTest::qWait(10);
}

} // namespace

class QLabClientTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<FakeQLab> qlab;
    std::shared_ptr<TestClock> clock;
    std::unique_ptr<QLabClient> client;

    // For the tests that need a heartbeat out of the way.
    void useTimings(QLabClient::Timings timings)
    {
        client = std::make_unique<QLabClient>(timings, [c = clock] { return c->now(); });
    }

    void configure(const QString& passcode = {}, const QString& workspace = {})
    {
        client->configure(true, QStringLiteral("127.0.0.1"), qlab->port(), passcode, workspace);
    }

private slots:
    void init()
    {
        qlab = std::make_unique<FakeQLab>();
        QVERIFY(qlab->listen());
        qlab->workspaces = {{workspaceID, QStringLiteral("Main Show"), {}}};
        clock = std::make_shared<TestClock>();
        client = std::make_unique<QLabClient>(shortTimings(), [c = clock] { return c->now(); });
    }

    void cleanup()
    {
        client.reset();
        qlab.reset();
    }

    void startsDisconnectedAndConnectsOnlyAfterTheSettleWait()
    {
        QCOMPARE(client->state(), State::disconnected);
        configure();
        QCOMPARE(client->state(), State::disconnected);
        QCOMPARE(qlab->connectionCount(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
        QCOMPARE(client->workspaceName(), std::optional<QString>(QStringLiteral("Main Show")));
    }

    void trafficFromConnectToSteadyStateIsInTheDescribedOrder()
    {
        auto quiet = shortTimings();
        quiet.heartbeatMs = 60000;
        useTimings(quiet);
        qlab->workspaces = {{workspaceID, QStringLiteral("Main Show"), QStringLiteral("4321")}};
        configure(QStringLiteral("4321"));
        QTRY_COMPARE_WITH_TIMEOUT(qlab->count(runningListAddress), 1, waitMs);
        const QStringList expected {"/workspaces", "/workspace/W-1/connect", "/updates",
            "/workspace/W-1/listen/cue/start", "/workspace/W-1/listen/cue/stop",
            runningListAddress};
        QCOMPARE(qlab->receivedAddresses().mid(0, expected.size()), expected);
        QCOMPARE(qlab->received().at(1).strings, QStringList {"4321"});
        QCOMPARE(client->state(), State::connected);
    }

    void connectWithoutPasscodeSendsNoArgument()
    {
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
        QCOMPARE(qlab->received().at(1).strings, QStringList {});
    }

    void wrongPasscodeKeepsTheConnectionAndHeartbeatRetriesTheSamePasscode()
    {
        qlab->workspaces = {{workspaceID, QStringLiteral("Main Show"), QStringLiteral("1234")}};
        configure(QStringLiteral("9999"));
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::passcodeRequired, waitMs);
        QTRY_VERIFY_WITH_TIMEOUT(qlab->count("/workspace/W-1/connect") >= 2, waitMs);
        QCOMPARE(qlab->connectionCount(), 1);
        QCOMPARE(qlab->openConnectionCount(), 1);
        for (const auto& entry : qlab->received()) {
            if (entry.address == QLatin1String("/workspace/W-1/connect"))
                QCOMPARE(entry.strings, QStringList {"9999"});
        }
        QCOMPARE(client->state(), State::passcodeRequired);

        // Once QLab takes the passcode, the next retry connects on the same line.
        qlab->workspaces.front().passcode = QStringLiteral("9999");
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
        QCOMPARE(qlab->connectionCount(), 1);
    }

    void deniedStatusAlsoAsksForThePasscode()
    {
        qlab->connectStatusOverride = QStringLiteral("denied");
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::passcodeRequired, waitMs);
    }

    void connectReplyOkEditCountsAsSuccess()
    {
        qlab->connectGranted = QStringLiteral("ok:edit");
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
    }

    void connectReplyWithErrorStatusAndNoDataGivesNoWorkspace()
    {
        qlab->connectStatusOverride = QStringLiteral("error");
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::noWorkspace, waitMs);
    }

    void noOpenWorkspaceWaitsAndTheHeartbeatFindsOneOpenedLater()
    {
        qlab->workspaces.clear();
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::noWorkspace, waitMs);
        QVERIFY(!client->workspaceName());
        qlab->workspaces = {{workspaceID, QStringLiteral("Late Show"), {}}};
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
        QCOMPARE(client->workspaceName(), std::optional<QString>(QStringLiteral("Late Show")));
        QCOMPARE(qlab->connectionCount(), 1);
    }

    void preferredWorkspaceIsMatchedByPartOfItsNameIgnoringCase()
    {
        qlab->workspaces = {{QStringLiteral("W-0"), QStringLiteral("Rehearsal"), {}},
            {workspaceID, QStringLiteral("Main Show"), {}}};
        configure({}, QStringLiteral("main"));
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
        QCOMPARE(client->workspaceName(), std::optional<QString>(QStringLiteral("Main Show")));
        QVERIFY(qlab->receivedAddresses().contains("/workspace/W-1/connect"));
    }

    void unmatchedPreferredWorkspaceFallsBackToTheFirst()
    {
        qlab->workspaces = {{QStringLiteral("W-0"), QStringLiteral("Rehearsal"), {}},
            {workspaceID, QStringLiteral("Main Show"), {}}};
        configure({}, QStringLiteral("matinee"));
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
        QCOMPARE(client->workspaceName(), std::optional<QString>(QStringLiteral("Rehearsal")));
    }

    void changingOnlyThePasscodeReconnectsOnceForTwoChangesWithinTheWait()
    {
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
        QCOMPARE(qlab->connectionCount(), 1);

        configure(QStringLiteral("a"));
        configure(QStringLiteral("ab"));
        // The current connection stays open until the wait is over.
        QCOMPARE(client->state(), State::connected);
        QCOMPARE(qlab->connectionCount(), 1);
        QTRY_COMPARE_WITH_TIMEOUT(qlab->connectionCount(), 2, waitMs);
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
        settle(4 * shortTimings().settleMs);
        QCOMPARE(qlab->connectionCount(), 2);
        QCOMPARE(qlab->received().back().connection, 2);
        for (const auto& entry : qlab->received()) {
            if (entry.connection == 2 && entry.address.endsWith(QLatin1String("/connect")))
                QCOMPARE(entry.strings, QStringList {"ab"});
        }
    }

    void configureWithTheSameValuesDoesNothing()
    {
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
        configure();
        settle(4 * shortTimings().settleMs);
        QCOMPARE(qlab->connectionCount(), 1);
        QCOMPARE(client->state(), State::connected);
    }

    void anEmptyHostCountsAsChangedAtEveryCall()
    {
        client->configure(true, QString(), qlab->port(), {}, {});
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
        QCOMPARE(qlab->connectionCount(), 1);
        client->configure(true, QString(), qlab->port(), {}, {});
        QTRY_COMPARE_WITH_TIMEOUT(qlab->connectionCount(), 2, waitMs);
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
    }

    void disablingClosesTheConnectionAndSaysOff()
    {
        qlab->runningCues = {FakeQLab::cueEntry("A", "1", "Preshow")};
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->runningCues().size(), std::size_t(1), waitMs);
        client->configure(false, QStringLiteral("127.0.0.1"), qlab->port(), {}, {});
        QCOMPARE(client->state(), State::off);
        QVERIFY(client->runningCues().empty());
        QVERIFY(!client->workspaceName());
        QTRY_COMPARE_WITH_TIMEOUT(qlab->count("/workspace/W-1/disconnect"), 1, waitMs);
        QTRY_COMPARE_WITH_TIMEOUT(qlab->openConnectionCount(), 0, waitMs);
        settle(2 * shortTimings().reconnectMs);
        QCOMPARE(qlab->connectionCount(), 1);
        QCOMPARE(client->state(), State::off);
    }

    void aStationThatStartsDisabledSaysOff()
    {
        client->configure(false, QStringLiteral("localhost"), 53000, {}, {});
        QCOMPARE(client->state(), State::off);
    }

    void portZeroIsNotTriedAndStaysDisconnected()
    {
        client->configure(true, QStringLiteral("127.0.0.1"), 0, {}, {});
        QSignalSpy states(client.get(), &QLabClient::stateChanged);
        settle(3 * shortTimings().settleMs);
        QCOMPARE(client->state(), State::disconnected);
        QCOMPARE(states.count(), 0);
    }

    void aRefusedConnectionRetriesAtTheFixedDelayUntilQLabListens()
    {
        const quint16 port = qlab->port();
        qlab->close();
        QSignalSpy states(client.get(), &QLabClient::stateChanged);
        client->configure(true, QStringLiteral("127.0.0.1"), port, {}, {});
        QTRY_VERIFY_WITH_TIMEOUT(states.count() >= 2, waitMs);
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::disconnected, waitMs);
        // Several tries, each going through connecting again: no back-off, no limit.
        QTRY_VERIFY_WITH_TIMEOUT(states.count() >= 6, waitMs);

        FakeQLab again;
        again.workspaces = qlab->workspaces;
        QVERIFY(again.listen());
        client->configure(true, QStringLiteral("127.0.0.1"), again.port(), {}, {});
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
    }

    void aLostConnectionEmptiesTheCuesAndReconnectsAfterTheDelay()
    {
        qlab->runningCues = {FakeQLab::cueEntry("A", "1", "Preshow")};
        std::vector<std::vector<QLabCue>> published;
        client->onRunningCuesChanged
            = [&](const std::vector<QLabCue>& cues) { published.push_back(cues); };
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->runningCues().size(), std::size_t(1), waitMs);

        QElapsedTimer sinceLoss;
        sinceLoss.start();
        qlab->dropConnections();
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::disconnected, waitMs);
        QVERIFY(client->runningCues().empty());
        QVERIFY(published.back().empty());
        QTRY_COMPARE_WITH_TIMEOUT(qlab->connectionCount(), 2, waitMs);
        QVERIFY(sinceLoss.elapsed() >= shortTimings().reconnectMs - 20);
        QTRY_COMPARE_WITH_TIMEOUT(client->runningCues().size(), std::size_t(1), waitMs);
    }

    void reconnectOpensAFreshConnectionAtOnce()
    {
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
        client->reconnect();
        QCOMPARE(client->state(), State::connecting);
        QTRY_COMPARE_WITH_TIMEOUT(qlab->connectionCount(), 2, waitMs);
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
        QTRY_COMPARE_WITH_TIMEOUT(qlab->openConnectionCount(), 1, waitMs);
    }

    void reconnectDoesNothingWhileDisabled()
    {
        client->configure(false, QStringLiteral("127.0.0.1"), qlab->port(), {}, {});
        client->reconnect();
        settle(100);
        QCOMPARE(qlab->connectionCount(), 0);
        QCOMPARE(client->state(), State::off);
    }

    void aStopEventRemovesTheCueAtOnceBeforeTheRefresh()
    {
        qlab->runningCues
            = {FakeQLab::cueEntry("A", "1", "Preshow"), FakeQLab::cueEntry("B", "2", "Walk-in")};
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->runningCues().size(), std::size_t(2), waitMs);
        const int listsBefore = qlab->count(runningListAddress);

        qlab->holdsRunningCueReplies = true;
        qlab->sendCueStopped("1", "Preshow", "A", "Audio");
        QTRY_COMPARE_WITH_TIMEOUT(ids(client->runningCues()), QStringList {"B"}, waitMs);
        // The refresh goes out after the removal, and is still unanswered.
        QTRY_VERIFY_WITH_TIMEOUT(qlab->count(runningListAddress) >= listsBefore + 1, waitMs);
        qlab->runningCues = {FakeQLab::cueEntry("B", "2", "Walk-in")};
        qlab->releaseRunningCueReplies();
        settle(50);
        QCOMPARE(ids(client->runningCues()), QStringList {"B"});
    }

    void aStartEventAddsNothingUntilTheRefreshReplyAndKeepsTheEventsMoment()
    {
        const Date eventMoment = std::chrono::system_clock::now();
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(qlab->count(runningListAddress), 1, waitMs);

        clock->fixed = eventMoment;
        qlab->holdsRunningCueReplies = true;
        qlab->runningCues = {FakeQLab::cueEntry("A", "1", "Preshow")};
        qlab->sendCueStarted("1", "Preshow", "A", "Audio");
        QTRY_COMPARE_WITH_TIMEOUT(qlab->count(runningListAddress), 2, waitMs);
        settle(50);
        QVERIFY(client->runningCues().empty());

        clock->fixed = eventMoment + std::chrono::seconds(2);
        qlab->releaseRunningCueReplies();
        QTRY_COMPARE_WITH_TIMEOUT(ids(client->runningCues()), QStringList {"A"}, waitMs);
        QVERIFY(client->runningCues().front().startedAt == eventMoment);
    }

    void aCueRunningAtConnectIsStampedWithTheMomentOfTheFirstList()
    {
        const Date connectMoment = std::chrono::system_clock::now();
        clock->fixed = connectMoment;
        qlab->runningCues = {FakeQLab::cueEntry("A", "1", "Preshow")};
        qlab->holdsRunningCueReplies = true;
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(qlab->count(runningListAddress), 1, waitMs);

        const Date listMoment = connectMoment + std::chrono::seconds(5);
        clock->fixed = listMoment;
        qlab->releaseRunningCueReplies();
        QTRY_COMPARE_WITH_TIMEOUT(client->runningCues().size(), std::size_t(1), waitMs);
        QVERIFY(client->runningCues().front().startedAt == listMoment);

        // A later list keeps the first moment.
        clock->fixed = listMoment + std::chrono::seconds(5);
        qlab->holdsRunningCueReplies = false;
        qlab->sendUpdate("/update/workspace/W-1");
        QTRY_VERIFY_WITH_TIMEOUT(qlab->count(runningListAddress) >= 2, waitMs);
        settle(50);
        QVERIFY(client->runningCues().front().startedAt == listMoment);
    }

    void cuesStartedTogetherKeepQLabsOrderAndNewerOnesComeFirst()
    {
        const Date first = std::chrono::system_clock::now();
        clock->fixed = first;
        qlab->runningCues
            = {FakeQLab::cueEntry("A", "1", "Preshow"), FakeQLab::cueEntry("B", "2", "Walk-in")};
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(ids(client->runningCues()), (QStringList {"A", "B"}), waitMs);

        clock->fixed = first + std::chrono::seconds(1);
        qlab->runningCues.append(FakeQLab::cueEntry("C", "3", "Thunder"));
        qlab->sendCueStarted("3", "Thunder", "C", "Audio");
        QTRY_COMPARE_WITH_TIMEOUT(
            ids(client->runningCues()), (QStringList {"C", "A", "B"}), waitMs);
        QCOMPARE(client->currentCue()->id, QStringLiteral("C"));
    }

    void newCuesAreAskedForTheirValuesAndThePollRefreshesElapsedTime()
    {
        qlab->runningCues = {FakeQLab::cueEntry("A", "1", "Preshow")};
        qlab->cueValues["A"] = QJsonObject {{"number", "1"}, {"name", "Preshow music"},
            {"type", "Audio"}, {"isPaused", false}, {"actionElapsed", 1.5}, {"duration", 120.0}};
        QSignalSpy changes(client.get(), &QLabClient::runningCuesChanged);
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->runningCues().size(), std::size_t(1), waitMs);
        QTRY_COMPARE_WITH_TIMEOUT(
            client->runningCues().front().name, QStringLiteral("Preshow music"), waitMs);
        QCOMPARE(client->runningCues().front().duration, std::optional<double>(120.0));
        QCOMPARE(client->runningCues().front().actionElapsed, std::optional<double>(1.5));

        // Each answer of the poll is a new sample, so the list counts as changed.
        const auto before = changes.count();
        qlab->cueValues["A"].insert("actionElapsed", 2.5);
        QTRY_COMPARE_WITH_TIMEOUT(
            client->runningCues().front().actionElapsed, std::optional<double>(2.5), waitMs);
        QVERIFY(changes.count() > before);
    }

    void nineRunningCuesPollOnlyTheFirstEightButTheRelistKeepsTheNinth()
    {
        for (int index = 1; index <= 9; ++index) {
            const QString id = QStringLiteral("C%1").arg(index);
            qlab->runningCues.append(FakeQLab::cueEntry(id, QString::number(index), id));
        }
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->runningCues().size(), std::size_t(9), waitMs);
        // Two re-lists: at least ten polls have gone by.
        QTRY_VERIFY_WITH_TIMEOUT(qlab->count(runningListAddress) >= 3, waitMs);
        QVERIFY(qlab->count(valuesAddress("C1")) >= 10);
        QVERIFY(qlab->count(valuesAddress("C8")) >= 10);
        // Only the question every new cue gets once.
        QCOMPARE(qlab->count(valuesAddress("C9")), 1);
        QCOMPARE(client->runningCues().size(), std::size_t(9));

        // When one above it stops, the ninth moves up and is polled.
        qlab->runningCues.removeAt(0);
        qlab->sendCueStopped("1", "C1", "C1", "Audio");
        QTRY_VERIFY_WITH_TIMEOUT(qlab->count(valuesAddress("C9")) >= 3, waitMs);
        QCOMPARE(client->runningCues().size(), std::size_t(8));
    }

    void aLateValuesAnswerForAStoppedCueIsIgnored()
    {
        qlab->runningCues = {FakeQLab::cueEntry("A", "1", "Preshow")};
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->runningCues().size(), std::size_t(1), waitMs);
        std::vector<QStringList> published;
        client->onRunningCuesChanged
            = [&](const std::vector<QLabCue>& cues) { published.push_back(ids(cues)); };
        qlab->runningCues = {};
        qlab->sendReply(valuesAddress("GONE"), workspaceID, QStringLiteral("ok"),
            QJsonObject {{"number", "9"}, {"name", "Gone"}, {"type", "Group"}});
        qlab->sendCueStopped("1", "Preshow", "A", "Audio");
        QTRY_VERIFY_WITH_TIMEOUT(client->runningCues().empty(), waitMs);
        settle(50);
        // Only the removal was published: the stray answer added nothing, not even a group.
        QCOMPARE(published.size(), std::size_t(1));
        QVERIFY(published.front().isEmpty());
    }

    void aTimecodeCueIsApartFromTheRunningCuesAndStillPolled()
    {
        qlab->runningCues = {FakeQLab::cueEntry("TC", "", "", "Timecode")};
        qlab->cueValues["TC"] = QJsonObject {{"type", "Timecode"},
            {"displayName", "Timecode: LTC 01:00:00:00 @ 25fps"}, {"framerate", 3},
            {"outputType", 1}};
        configure();
        QTRY_VERIFY_WITH_TIMEOUT(client->timecodeCue().has_value(), waitMs);
        QCOMPARE(client->timecodeCue()->id, QStringLiteral("TC"));
        QVERIFY(client->runningCues().empty());
        QVERIFY(!client->currentCue());
        // The property reads go out once, for the new cue.
        QTRY_COMPARE_WITH_TIMEOUT(qlab->count("/workspace/W-1/cue_id/TC/startTime"), 1, waitMs);
        QCOMPARE(qlab->count("/workspace/W-1/cue_id/TC/framerate"), 1);
        QCOMPARE(qlab->count("/workspace/W-1/cue_id/TC/outputType"), 1);
        QTRY_VERIFY_WITH_TIMEOUT(qlab->count(valuesAddress("TC")) >= 4, waitMs);
        QTRY_COMPARE_WITH_TIMEOUT(
            client->timecodeCue()->timecodeRateIndex, std::optional<std::int64_t>(3), waitMs);
        QCOMPARE(client->timecodeCue()->timecodeOutputType, std::optional<std::int64_t>(1));
    }

    void aRunningChildIsShownAsItsGroupOnceTheParentIsLookedUp()
    {
        qlab->runningCues = {FakeQLab::cueEntry("CHILD", "", "Rain", "Audio")};
        qlab->cueValues["CHILD"] = QJsonObject {
            {"number", ""}, {"name", "Rain"}, {"type", "Audio"}, {"parent", "GROUP"}};
        qlab->cueValues["GROUP"] = QJsonObject {
            {"number", "12"}, {"name", "Storm"}, {"type", "Group"}, {"parent", "LIST"}};
        qlab->cueValues["LIST"]
            = QJsonObject {{"number", ""}, {"name", "Main Cue List"}, {"type", "Cue List"}};
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(ids(client->runningCues()), QStringList {"GROUP"}, waitMs);
        QCOMPARE(client->runningCues().front().name, QStringLiteral("Storm"));
        // Parents are asked once each, one level per answer, and the cue list ends the chain.
        QTRY_COMPARE_WITH_TIMEOUT(qlab->count(valuesAddress("LIST")), 1, waitMs);
        settle(300);
        QCOMPARE(qlab->count(valuesAddress("GROUP")), 1);
        QCOMPARE(ids(client->runningCues()), QStringList {"GROUP"});
    }

    void aBurstOfUpdatesYieldsOneRefresh()
    {
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(qlab->count(runningListAddress), 1, waitMs);
        for (int index = 0; index < 5; ++index)
            qlab->sendUpdate(QStringLiteral("/update/workspace/W-1/cue_id/X%1").arg(index));
        qlab->sendUpdate("/update/workspace/W-1/cueList/L/playbackPosition");
        QTRY_COMPARE_WITH_TIMEOUT(qlab->count(runningListAddress), 2, waitMs);
        settle(200);
        QCOMPARE(qlab->count(runningListAddress), 2);
    }

    void updatesForAnotherWorkspaceAreIgnored()
    {
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(qlab->count(runningListAddress), 1, waitMs);
        qlab->sendUpdate("/update/workspace/OTHER");
        qlab->sendUpdate("/update/workspace/OTHER/disconnect");
        settle(200);
        QCOMPARE(qlab->count(runningListAddress), 1);
        QCOMPARE(client->state(), State::connected);
        QCOMPARE(qlab->connectionCount(), 1);
    }

    void aDisconnectUpdateForOurWorkspaceReconnects()
    {
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
        qlab->sendUpdate("/update/workspace/W-1/disconnect");
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::disconnected, waitMs);
        QTRY_COMPARE_WITH_TIMEOUT(qlab->connectionCount(), 2, waitMs);
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
    }

    void theHeartbeatThumpsWhileConnected()
    {
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
        QTRY_VERIFY_WITH_TIMEOUT(qlab->count("/workspace/W-1/thump") >= 2, waitMs);
        // Once connected the heartbeat only thumps: no list of workspaces after the first thump.
        const QStringList addresses = qlab->receivedAddresses();
        QVERIFY(addresses.lastIndexOf("/workspaces") < addresses.indexOf("/workspace/W-1/thump"));
        QCOMPARE(qlab->connectionCount(), 1);
    }

    void silenceBeyondTheLimitReconnectsAlthoughTheLineStands()
    {
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
        QElapsedTimer silence;
        silence.start();
        qlab->isSilent = true;
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::disconnected, waitMs);
        // Found at the first heartbeat after the limit, which may fall a beat short of it here.
        QVERIFY(silence.elapsed() >= shortTimings().silenceLimitMs - shortTimings().heartbeatMs);
        qlab->isSilent = false;
        QTRY_COMPARE_WITH_TIMEOUT(qlab->connectionCount(), 2, waitMs);
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
    }

    void malformedTrafficIsDroppedAndTheLinkGoesOn()
    {
        qlab->runningCues = {FakeQLab::cueEntry("A", "1", "Preshow")};
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->runningCues().size(), std::size_t(1), waitMs);
        qlab->send(OSCMessage("/reply/workspace/W-1/runningOrPausedCues/shallow",
            {OSCArgument::string("{not json")}));
        qlab->send(OSCMessage("/qlab/event/workspace/cue/stop", {OSCArgument::int32(3)}));
        qlab->sendReply(runningListAddress, workspaceID, QStringLiteral("ok"), QJsonValue(42));
        qlab->runningCues = {};
        qlab->sendCueStopped("1", "Preshow", "A", "Audio");
        QTRY_VERIFY_WITH_TIMEOUT(client->runningCues().empty(), waitMs);
        QCOMPARE(client->state(), State::connected);
    }

    void simulatePublishesWithoutAConnectionAndStaysDisabled()
    {
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->state(), State::connected, waitMs);
        QLabCue cue;
        cue.id = QStringLiteral("demo-1");
        cue.number = QStringLiteral("1");
        cue.name = QStringLiteral("Preshow");
        cue.type = QStringLiteral("Audio");
        QLabCue timecode;
        timecode.id = QStringLiteral("demo-tc");
        timecode.type = QStringLiteral("Timecode");
        std::vector<QLabCue> published;
        client->onRunningCuesChanged = [&](const std::vector<QLabCue>& cues) { published = cues; };

        client->simulate(State::connected, QStringLiteral("Demo Show"), {cue, timecode});
        QCOMPARE(client->state(), State::connected);
        QCOMPARE(client->workspaceName(), std::optional<QString>(QStringLiteral("Demo Show")));
        QCOMPARE(ids(client->runningCues()), QStringList {"demo-1"});
        QCOMPARE(ids(published), QStringList {"demo-1"});
        QCOMPARE(client->timecodeCue()->id, QStringLiteral("demo-tc"));
        QTRY_COMPARE_WITH_TIMEOUT(qlab->openConnectionCount(), 0, waitMs);
        settle(2 * shortTimings().reconnectMs);
        QCOMPARE(qlab->connectionCount(), 1);

        // Configuring again with the same settings reconnects, since simulate disabled the client.
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(qlab->connectionCount(), 2, waitMs);
    }

    void anUnchangedListCallsNoOne()
    {
        qlab->runningCues = {FakeQLab::cueEntry("A", "1", "Preshow")};
        int calls = 0;
        client->onRunningCuesChanged = [&](const std::vector<QLabCue>&) { ++calls; };
        configure();
        QTRY_COMPARE_WITH_TIMEOUT(client->runningCues().size(), std::size_t(1), waitMs);
        // No values for A: the polls bring nothing new.
        QTRY_VERIFY_WITH_TIMEOUT(qlab->count(runningListAddress) >= 2, waitMs);
        settle(100);
        QCOMPARE(calls, 1);
    }
};

QTEST_GUILESS_MAIN(QLabClientTest)
#include "QLabClientTest.moc"
