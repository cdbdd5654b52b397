// The QLab follower through every state of the link and the traffic of a show, without a socket:
// messages and timer firings go in by hand, and the effects that come out are read in order.
#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "qlab/QLabFollower.h"
#include "support/QLabCueIds.h"

using namespace ostrel;
using Effect = QLabFollower::Effect;
using Effects = QLabFollower::Effects;
using State = QLabFollower::State;

namespace {

const QString workspaceID = QStringLiteral("W-1");
const QString listAddress = QStringLiteral("/workspace/W-1/runningOrPausedCues/shallow");
const Date base = addingSeconds(Date {}, 1'700'000'000.0);

Date at(double seconds)
{
    return addingSeconds(base, seconds);
}

// A reply in QLab's JSON form, as QLab 5 sends it.
OSCMessage reply(const QString& address, const QString& status,
    const std::optional<QJsonValue>& data = std::nullopt, const QString& workspace = workspaceID)
{
    QJsonObject object {{"address", address}, {"status", status}};
    if (!workspace.isEmpty()) object.insert("workspace_id", workspace);
    if (data) object.insert("data", *data);
    const QByteArray json = QJsonDocument(object).toJson(QJsonDocument::Compact);
    return OSCMessage(
        ("/reply" + address).toStdString(), {OSCArgument::string(json.toStdString())});
}

OSCMessage workspacesReply(const QList<std::pair<QString, QString>>& workspaces)
{
    QJsonArray list;
    for (const auto& [id, name] : workspaces)
        list.append(QJsonObject {{"uniqueID", id}, {"displayName", name}, {"version", "5.4.1"}});
    return reply("/workspaces", "ok", list, {});
}

OSCMessage connectReply(const QString& status, const std::optional<QJsonValue>& data)
{
    return reply("/workspace/W-1/connect", status, data);
}

QJsonObject cueEntry(const QString& id, const QString& type = QStringLiteral("Audio"))
{
    return QJsonObject {{"uniqueID", id}, {"number", id}, {"name", id}, {"type", type}};
}

OSCMessage listReply(const QJsonArray& entries)
{
    return reply(listAddress, "ok", entries);
}

using ostrel::testsupport::valuesAddress;
OSCMessage valuesReply(const QString& cue, const QJsonObject& values)
{
    return reply(valuesAddress(cue), "ok", values);
}

OSCMessage cueEvent(const char* event, const QString& id, const QString& type = "Audio")
{
    return OSCMessage(std::string("/qlab/event/workspace/cue/") + event,
        {OSCArgument::string(id.toStdString()), OSCArgument::string(id.toStdString()),
            OSCArgument::string(id.toStdString()), OSCArgument::string(type.toStdString())});
}

QStringList sent(const Effects& effects)
{
    QStringList addresses;
    for (const Effect& effect : effects) {
        if (const auto* send = std::get_if<Effect::Send>(&effect.value))
            addresses.append(QString::fromStdString(send->message.address));
    }
    return addresses;
}

std::vector<OSCMessage> sentMessages(const Effects& effects, const QString& address)
{
    std::vector<OSCMessage> messages;
    for (const Effect& effect : effects) {
        const auto* send = std::get_if<Effect::Send>(&effect.value);
        if (send && send->message.address == address.toStdString())
            messages.push_back(send->message);
    }
    return messages;
}

template <typename Kind> int count(const Effects& effects)
{
    return static_cast<int>(std::count_if(effects.begin(), effects.end(),
        [](const Effect& effect) { return std::holds_alternative<Kind>(effect.value); }));
}

template <typename Kind> std::ptrdiff_t indexOf(const Effects& effects)
{
    const auto found = std::find_if(effects.begin(), effects.end(),
        [](const Effect& effect) { return std::holds_alternative<Kind>(effect.value); });
    return found == effects.end() ? -1 : found - effects.begin();
}

using ostrel::testsupport::ids;

void append(Effects& all, const Effects& more)
{
    all.insert(all.end(), more.begin(), more.end());
}

} // namespace

class QLabFollowerTest : public ::testing::Test {
protected:
    QLabFollower follower;

    Effects configure(const QString& passcode = {}, const QString& workspace = {})
    {
        return follower.configure(true, "qlab.local", 53000, passcode, workspace);
    }

    // From the settings to an open line on which QLab has not yet been asked anything.
    Effects openLine(const QString& passcode = {})
    {
        Effects all = configure(passcode);
        append(all, follower.reconnectDue());
        append(all, follower.connectionReady());
        return all;
    }

    // From the settings to a connected workspace, with QLab answering as it does.
    Effects connectToWorkspace(const QString& passcode = {})
    {
        Effects all = openLine(passcode);
        append(all, follower.receive(workspacesReply({{workspaceID, "Main Show"}}), at(0)));
        append(all, follower.receive(connectReply("ok", QJsonValue("ok")), at(0)));
        return all;
    }

    Effects list(const QJsonArray& entries, Date now)
    {
        return follower.receive(listReply(entries), now);
    }
};

TEST_F(QLabFollowerTest, StartsDisconnectedWithNothingPublished)
{
    EXPECT_EQ(follower.state(), State::disconnected);
    EXPECT_FALSE(follower.workspaceName());
    EXPECT_TRUE(follower.runningCues().empty());
    EXPECT_FALSE(follower.timecodeCue());
    EXPECT_FALSE(follower.currentCue());
}

TEST_F(QLabFollowerTest, ConfiguringOpensNothingBeforeTheSettleWait)
{
    const Effects effects = configure();
    ASSERT_EQ(effects.size(), 1u);
    EXPECT_EQ(effects[0], Effect {Effect::ScheduleReconnect {600}});
    EXPECT_EQ(follower.state(), State::disconnected);

    const Effects opened = follower.reconnectDue();
    EXPECT_EQ(follower.state(), State::connecting);
    EXPECT_EQ(opened.back(), (Effect {Effect::OpenConnection {"qlab.local", 53000}}));
    EXPECT_EQ(count<Effect::StateChanged>(opened), 1);
}

TEST_F(QLabFollowerTest, WaitsComeFromTheSettings)
{
    QLabFollower quick(QLabFollower::Waits {60, 300, 1200, 10, 15});
    EXPECT_EQ(
        quick.configure(true, "h", 1, {}, {}).front(), Effect {Effect::ScheduleReconnect {60}});
    const Effects lost = quick.connectionLost();
    EXPECT_EQ(lost.back(), Effect {Effect::ScheduleReconnect {300}});
}

TEST_F(QLabFollowerTest, AFirstConfigureThatDisablesSaysOff)
{
    const Effects effects = follower.configure(false, "localhost", 53000, {}, {});
    EXPECT_EQ(follower.state(), State::off);
    EXPECT_EQ(count<Effect::CloseConnection>(effects), 1);
    EXPECT_EQ(count<Effect::ScheduleReconnect>(effects), 0);
}

TEST_F(QLabFollowerTest, DisablingSaysGoodbyeClosesAndSaysOff)
{
    connectToWorkspace();
    list({cueEntry("A")}, at(1));
    const Effects effects = follower.configure(false, "qlab.local", 53000, {}, {});
    EXPECT_EQ(follower.state(), State::off);
    EXPECT_TRUE(follower.runningCues().empty());
    EXPECT_FALSE(follower.workspaceName());
    EXPECT_EQ(sent(effects), QStringList {"/workspace/W-1/disconnect"});
    EXPECT_LT(indexOf<Effect::Send>(effects), indexOf<Effect::CloseConnection>(effects));
    EXPECT_EQ(count<Effect::ScheduleReconnect>(effects), 0);
    EXPECT_TRUE(follower.reconnectDue().empty());
}

TEST_F(QLabFollowerTest, PortZeroIsNotTriedAndStaysDisconnected)
{
    follower.configure(true, "qlab.local", 0, {}, {});
    const Effects effects = follower.reconnectDue();
    EXPECT_EQ(count<Effect::OpenConnection>(effects), 0);
    EXPECT_EQ(count<Effect::StateChanged>(effects), 0);
    EXPECT_EQ(follower.state(), State::disconnected);
}

TEST_F(QLabFollowerTest, AnOpenLineAsksForWorkspacesAndStaysConnectingUntilQLabAnswers)
{
    configure();
    follower.reconnectDue();
    const Effects effects = follower.connectionReady();
    EXPECT_EQ(sent(effects), QStringList {"/workspaces"});
    EXPECT_EQ(count<Effect::StartHeartbeat>(effects), 1);
    EXPECT_EQ(follower.state(), State::connecting);
}

TEST_F(QLabFollowerTest, TrafficFromConnectToSteadyStateIsInTheDescribedOrder)
{
    const Effects effects = connectToWorkspace("4321");
    const QStringList expected {"/workspaces", "/workspace/W-1/connect", "/updates",
        "/workspace/W-1/listen/cue/start", "/workspace/W-1/listen/cue/stop", listAddress};
    EXPECT_EQ(sent(effects), expected);
    const auto connect = sentMessages(effects, "/workspace/W-1/connect");
    ASSERT_EQ(connect.size(), 1u);
    EXPECT_EQ(connect[0].arguments, std::vector {OSCArgument::string("4321")});
    EXPECT_EQ(sentMessages(effects, "/updates")[0].arguments, std::vector {OSCArgument::int32(1)});
    EXPECT_EQ(follower.state(), State::connected);
    EXPECT_EQ(follower.workspaceName(), std::optional<QString>("Main Show"));
}

TEST_F(QLabFollowerTest, ConnectWithoutPasscodeSendsNoArgument)
{
    const Effects effects = connectToWorkspace();
    EXPECT_TRUE(sentMessages(effects, "/workspace/W-1/connect")[0].arguments.empty());
}

TEST_F(QLabFollowerTest, PreferredWorkspaceIsMatchedByPartOfItsNameIgnoringCase)
{
    configure({}, "main");
    follower.reconnectDue();
    follower.connectionReady();
    const Effects effects = follower.receive(
        workspacesReply({{"W-0", "Rehearsal"}, {workspaceID, "Main Show"}}), at(0));
    EXPECT_EQ(sent(effects), QStringList {"/workspace/W-1/connect"});
    EXPECT_EQ(follower.workspaceName(), std::optional<QString>("Main Show"));
}

TEST_F(QLabFollowerTest, UnmatchedPreferredWorkspaceFallsBackToTheFirst)
{
    configure({}, "matinee");
    follower.reconnectDue();
    follower.connectionReady();
    const Effects effects = follower.receive(
        workspacesReply({{"W-0", "Rehearsal"}, {workspaceID, "Main Show"}}), at(0));
    EXPECT_EQ(sent(effects), QStringList {"/workspace/W-0/connect"});
}

TEST_F(QLabFollowerTest, NoOpenWorkspaceWaitsAndTheHeartbeatFindsOneOpenedLater)
{
    openLine();
    follower.receive(workspacesReply({}), at(0));
    EXPECT_EQ(follower.state(), State::noWorkspace);
    EXPECT_FALSE(follower.workspaceName());

    EXPECT_EQ(sent(follower.heartbeatDue(10000)), QStringList {"/workspaces"});
    follower.receive(workspacesReply({{workspaceID, "Late Show"}}), at(10));
    follower.receive(connectReply("ok", QJsonValue("ok")), at(10));
    EXPECT_EQ(follower.state(), State::connected);
    EXPECT_EQ(follower.workspaceName(), std::optional<QString>("Late Show"));
}

TEST_F(QLabFollowerTest, BadpassAsksForThePasscodeKeepsTheLineAndTheHeartbeatRetriesTheSamePasscode)
{
    openLine("9999");
    follower.receive(workspacesReply({{workspaceID, "Main Show"}}), at(0));
    const Effects refused = follower.receive(connectReply("ok", QJsonValue("badpass")), at(0));
    EXPECT_EQ(follower.state(), State::passcodeRequired);
    EXPECT_EQ(count<Effect::CloseConnection>(refused), 0);
    EXPECT_EQ(count<Effect::ScheduleReconnect>(refused), 0);

    const Effects beat = follower.heartbeatDue(10000);
    EXPECT_EQ(sent(beat), QStringList {"/workspaces"});
    EXPECT_EQ(count<Effect::CloseConnection>(beat), 0);
    const Effects retry = follower.receive(workspacesReply({{workspaceID, "Main Show"}}), at(10));
    const auto connect = sentMessages(retry, "/workspace/W-1/connect");
    ASSERT_EQ(connect.size(), 1u);
    EXPECT_EQ(connect[0].arguments, std::vector {OSCArgument::string("9999")});

    // Once QLab takes it, the retry connects on the same line.
    follower.receive(connectReply("ok", QJsonValue("ok")), at(10));
    EXPECT_EQ(follower.state(), State::connected);
}

TEST_F(QLabFollowerTest, DeniedStatusAlsoAsksForThePasscode)
{
    openLine();
    follower.receive(workspacesReply({{workspaceID, "Main Show"}}), at(0));
    follower.receive(connectReply("denied", std::nullopt), at(0));
    EXPECT_EQ(follower.state(), State::passcodeRequired);
}

TEST_F(QLabFollowerTest, ConnectReplyOkEditCountsAsSuccessByItsPrefix)
{
    openLine();
    follower.receive(workspacesReply({{workspaceID, "Main Show"}}), at(0));
    const Effects effects = follower.receive(connectReply("ok", QJsonValue("ok:edit")), at(0));
    EXPECT_EQ(follower.state(), State::connected);
    EXPECT_EQ(sent(effects).value(0), "/updates");
}

TEST_F(QLabFollowerTest, ConnectReplyWithErrorStatusAndNoDataGivesNoWorkspace)
{
    openLine();
    follower.receive(workspacesReply({{workspaceID, "Main Show"}}), at(0));
    const Effects effects = follower.receive(connectReply("error", std::nullopt), at(0));
    EXPECT_EQ(follower.state(), State::noWorkspace);
    EXPECT_TRUE(sent(effects).isEmpty());
}

TEST_F(QLabFollowerTest, ChangingOnlyThePasscodeReconnectsAfterTheSettleWait)
{
    connectToWorkspace();
    const Effects changed = configure("ab");
    ASSERT_EQ(changed.size(), 1u);
    EXPECT_EQ(changed[0], Effect {Effect::ScheduleReconnect {600}});
    // The line stays open until the wait is over.
    EXPECT_EQ(follower.state(), State::connected);

    const Effects reopened = follower.reconnectDue();
    EXPECT_LT(
        indexOf<Effect::CloseConnection>(reopened), indexOf<Effect::OpenConnection>(reopened));
    EXPECT_EQ(follower.state(), State::connecting);
    follower.connectionReady();
    const Effects asked = follower.receive(workspacesReply({{workspaceID, "Main Show"}}), at(1));
    EXPECT_EQ(sentMessages(asked, "/workspace/W-1/connect")[0].arguments,
        std::vector {OSCArgument::string("ab")});
}

TEST_F(QLabFollowerTest, ConfigureWithTheSameValuesDoesNothing)
{
    connectToWorkspace();
    EXPECT_TRUE(configure().empty());
    EXPECT_EQ(follower.state(), State::connected);
}

TEST_F(QLabFollowerTest, AnEmptyHostCountsAsChangedAtEveryCall)
{
    follower.configure(true, QString(), 53000, {}, {});
    EXPECT_EQ(follower.host(), "localhost");
    const Effects again = follower.configure(true, QString(), 53000, {}, {});
    ASSERT_EQ(again.size(), 1u);
    EXPECT_EQ(again[0], Effect {Effect::ScheduleReconnect {600}});
}

TEST_F(QLabFollowerTest, ReconnectOpensAtOnceOnlyWhenEnabled)
{
    EXPECT_TRUE(follower.reconnect().empty());
    follower.configure(false, "qlab.local", 53000, {}, {});
    EXPECT_TRUE(follower.reconnect().empty());
    EXPECT_EQ(follower.state(), State::off);

    connectToWorkspace();
    const Effects effects = follower.reconnect();
    EXPECT_EQ(count<Effect::OpenConnection>(effects), 1);
    EXPECT_EQ(follower.state(), State::connecting);
}

TEST_F(QLabFollowerTest, ALostConnectionEmptiesTheCuesAndReconnectsAfterTheDelay)
{
    connectToWorkspace();
    list({cueEntry("A")}, at(1));
    const Effects effects = follower.connectionLost();
    EXPECT_EQ(follower.state(), State::disconnected);
    EXPECT_TRUE(follower.runningCues().empty());
    EXPECT_FALSE(follower.workspaceName());
    EXPECT_EQ(count<Effect::RunningCuesChanged>(effects), 1);
    EXPECT_EQ(effects.back(), Effect {Effect::ScheduleReconnect {3000}});
    EXPECT_LT(
        indexOf<Effect::CloseConnection>(effects), indexOf<Effect::ScheduleReconnect>(effects));

    const Effects reopened = follower.reconnectDue();
    EXPECT_EQ(count<Effect::OpenConnection>(reopened), 1);
}

TEST_F(QLabFollowerTest, ADisconnectUpdateForOurWorkspaceDropsTheLineAndReconnects)
{
    connectToWorkspace();
    const Effects effects = follower.receive(OSCMessage("/update/workspace/W-1/disconnect"), at(1));
    EXPECT_EQ(follower.state(), State::disconnected);
    EXPECT_EQ(count<Effect::CloseConnection>(effects), 1);
    EXPECT_EQ(effects.back(), Effect {Effect::ScheduleReconnect {3000}});
}

TEST_F(QLabFollowerTest, ADisconnectUpdateForAnotherWorkspaceIsIgnored)
{
    connectToWorkspace();
    EXPECT_TRUE(follower.receive(OSCMessage("/update/workspace/OTHER/disconnect"), at(1)).empty());
    EXPECT_EQ(follower.state(), State::connected);
    EXPECT_EQ(follower.workspaceName(), std::optional<QString>("Main Show"));
}

TEST_F(QLabFollowerTest, UpdatesForOurWorkspaceAskForOneRefreshAfterTheUpdateWait)
{
    connectToWorkspace();
    for (const char* address : {"/update/workspace/W-1", "/update/workspace/W-1/cue_id/X",
             "/update/workspace/W-1/cueList/L/playbackPosition"}) {
        const Effects effects = follower.receive(OSCMessage(address), at(1));
        ASSERT_EQ(effects.size(), 1u) << address;
        EXPECT_EQ(effects[0], Effect {Effect::ScheduleRefresh {150}}) << address;
    }
    EXPECT_EQ(sent(follower.refreshDue()), QStringList {listAddress});
}

TEST_F(QLabFollowerTest, UpdatesForAnotherWorkspaceAreIgnored)
{
    connectToWorkspace();
    EXPECT_TRUE(follower.receive(OSCMessage("/update/workspace/OTHER"), at(1)).empty());
    EXPECT_TRUE(follower.receive(OSCMessage("/update/workspace/OTHER/cue_id/X"), at(1)).empty());
}

TEST_F(QLabFollowerTest, ARefreshWithoutAWorkspaceAsksNothing)
{
    EXPECT_TRUE(follower.refreshDue().empty());
}

TEST_F(QLabFollowerTest, TheHeartbeatThumpsWhileConnected)
{
    connectToWorkspace();
    EXPECT_EQ(sent(follower.heartbeatDue(10000)), QStringList {"/workspace/W-1/thump"});
    // Exactly at the limit is not yet silence.
    EXPECT_EQ(sent(follower.heartbeatDue(30000)), QStringList {"/workspace/W-1/thump"});
    EXPECT_EQ(follower.state(), State::connected);
}

TEST_F(QLabFollowerTest, ThirtySecondsOfSilenceDropTheLineAtTheNextHeartbeatAndReconnectAfterThree)
{
    connectToWorkspace();
    const Effects effects = follower.heartbeatDue(40000);
    EXPECT_EQ(follower.state(), State::disconnected);
    EXPECT_EQ(sent(effects), QStringList {"/workspace/W-1/disconnect"});
    EXPECT_EQ(count<Effect::CloseConnection>(effects), 1);
    EXPECT_EQ(effects.back(), Effect {Effect::ScheduleReconnect {3000}});
}

TEST_F(QLabFollowerTest, AStopEventRemovesTheCueAtOnceBeforeTheRefresh)
{
    connectToWorkspace();
    list({cueEntry("A"), cueEntry("B")}, at(1));
    const Effects effects = follower.receive(cueEvent("stop", "A"), at(2));
    EXPECT_EQ(ids(follower.runningCues()), QStringList {"B"});
    const auto published = indexOf<Effect::RunningCuesChanged>(effects);
    ASSERT_GE(published, 0);
    EXPECT_EQ(ids(std::get<Effect::RunningCuesChanged>(effects[published].value).cues),
        QStringList {"B"});
    EXPECT_EQ(effects.back(), Effect {Effect::ScheduleRefresh {100}});
    EXPECT_LT(published, std::ptrdiff_t(effects.size()) - 1);
}

TEST_F(QLabFollowerTest, AStartEventAddsNothingUntilTheRefreshReplyAndKeepsTheEventsMoment)
{
    connectToWorkspace();
    list({}, at(1));
    const Effects started = follower.receive(cueEvent("start", "A"), at(10));
    ASSERT_EQ(started.size(), 1u);
    EXPECT_EQ(started[0], Effect {Effect::ScheduleRefresh {0}});
    EXPECT_TRUE(follower.runningCues().empty());

    EXPECT_EQ(sent(follower.refreshDue()), QStringList {listAddress});
    EXPECT_TRUE(follower.runningCues().empty());
    list({cueEntry("A")}, at(12));
    ASSERT_EQ(ids(follower.runningCues()), QStringList {"A"});
    EXPECT_EQ(follower.runningCues().front().startedAt, at(10));
}

TEST_F(QLabFollowerTest, ACueRunningAtConnectIsStampedWithTheMomentOfTheFirstList)
{
    connectToWorkspace();
    list({cueEntry("A")}, at(5));
    ASSERT_EQ(follower.runningCues().size(), 1u);
    EXPECT_EQ(follower.runningCues().front().startedAt, at(5));
    // A later list keeps the first moment.
    list({cueEntry("A")}, at(10));
    EXPECT_EQ(follower.runningCues().front().startedAt, at(5));
}

TEST_F(QLabFollowerTest, CuesStartedTogetherKeepQLabsOrderAndNewerOnesComeFirst)
{
    connectToWorkspace();
    list({cueEntry("A"), cueEntry("B")}, at(1));
    EXPECT_EQ(ids(follower.runningCues()), (QStringList {"A", "B"}));
    follower.receive(cueEvent("start", "C"), at(2));
    list({cueEntry("A"), cueEntry("B"), cueEntry("C")}, at(2.1));
    EXPECT_EQ(ids(follower.runningCues()), (QStringList {"C", "A", "B"}));
    EXPECT_EQ(follower.currentCue()->id, "C");
}

TEST_F(QLabFollowerTest, NewCuesAreAskedForTheirValuesOnceAndTheAnswerFillsThem)
{
    connectToWorkspace();
    const Effects listed = list({cueEntry("A")}, at(1));
    EXPECT_EQ(sent(listed), QStringList {valuesAddress("A")});
    EXPECT_TRUE(sent(list({cueEntry("A")}, at(2))).isEmpty());

    const Effects filled = follower.receive(
        valuesReply("A",
            QJsonObject {{"name", "Preshow music"}, {"actionElapsed", 1.5}, {"duration", 120.0}}),
        at(3));
    EXPECT_EQ(follower.runningCues().front().name, "Preshow music");
    EXPECT_EQ(follower.runningCues().front().actionElapsed, std::optional<double>(1.5));
    EXPECT_EQ(count<Effect::RunningCuesChanged>(filled), 1);
}

TEST_F(QLabFollowerTest, AnUnchangedListPublishesNothing)
{
    connectToWorkspace();
    EXPECT_EQ(count<Effect::RunningCuesChanged>(list({cueEntry("A")}, at(1))), 1);
    EXPECT_EQ(count<Effect::RunningCuesChanged>(list({cueEntry("A")}, at(2))), 0);
}

TEST_F(QLabFollowerTest, PollingRunsWhileACueRunsAndStopsWithTheLast)
{
    connectToWorkspace();
    EXPECT_FALSE(follower.isPolling());
    const Effects listed = list({cueEntry("A")}, at(1));
    EXPECT_EQ(count<Effect::StartPolling>(listed), 1);
    EXPECT_TRUE(follower.isPolling());
    EXPECT_EQ(count<Effect::StartPolling>(list({cueEntry("A")}, at(2))), 0);
    EXPECT_EQ(sent(follower.pollDue()), QStringList {valuesAddress("A")});

    const Effects stopped = follower.receive(cueEvent("stop", "A"), at(3));
    EXPECT_EQ(count<Effect::StopPolling>(stopped), 1);
    EXPECT_FALSE(follower.isPolling());
}

TEST_F(QLabFollowerTest, NineRunningCuesPollOnlyTheFirstEightButTheRelistKeepsTheNinth)
{
    connectToWorkspace();
    QJsonArray nine;
    for (int index = 1; index <= 9; ++index)
        nine.append(cueEntry(QStringLiteral("C%1").arg(index)));
    list(nine, at(1));
    ASSERT_EQ(follower.runningCues().size(), 9u);

    Effects polls;
    for (int tick = 1; tick <= 5; ++tick)
        append(polls, follower.pollDue());
    const QStringList asked = sent(polls);
    EXPECT_EQ(asked.count(valuesAddress("C1")), 5);
    EXPECT_EQ(asked.count(valuesAddress("C8")), 5);
    EXPECT_EQ(asked.count(valuesAddress("C9")), 0);
    // The fifth poll re-lists, and only the fifth.
    EXPECT_EQ(asked.count(listAddress), 1);
    EXPECT_EQ(asked.back(), listAddress);
    list(nine, at(6));
    EXPECT_EQ(follower.runningCues().size(), 9u);

    // When one above it stops, the ninth moves up and is polled.
    follower.receive(cueEvent("stop", "C1"), at(7));
    EXPECT_EQ(sent(follower.pollDue()).count(valuesAddress("C9")), 1);
}

TEST_F(QLabFollowerTest, AValuesAnswerForAStoppedCueNotAwaitedAsAParentIsIgnored)
{
    connectToWorkspace();
    list({cueEntry("A")}, at(1));
    const Effects effects = follower.receive(
        valuesReply("GONE", QJsonObject {{"number", "9"}, {"name", "Gone"}, {"type", "Group"}}),
        at(2));
    EXPECT_TRUE(effects.empty());
    EXPECT_EQ(ids(follower.runningCues()), QStringList {"A"});
}

TEST_F(QLabFollowerTest, ARunningChildIsShownAsItsGroupOnceTheParentIsLookedUp)
{
    connectToWorkspace();
    list({cueEntry("CHILD")}, at(1));
    const Effects child = follower.receive(
        valuesReply("CHILD", QJsonObject {{"type", "Audio"}, {"parent", "GROUP"}}), at(2));
    EXPECT_EQ(sent(child), QStringList {valuesAddress("GROUP")});
    EXPECT_EQ(ids(follower.runningCues()), QStringList {"CHILD"});

    const Effects group = follower.receive(valuesReply("GROUP",
                                               QJsonObject {{"number", "12"}, {"name", "Storm"},
                                                   {"type", "Group"}, {"parent", "LIST"}}),
        at(3));
    EXPECT_EQ(ids(follower.runningCues()), QStringList {"GROUP"});
    EXPECT_EQ(follower.runningCues().front().name, "Storm");
    // One level per answer: the group's own parent is asked now, and only once.
    EXPECT_EQ(sent(group), QStringList {valuesAddress("LIST")});
    const Effects again = follower.receive(
        valuesReply("CHILD", QJsonObject {{"type", "Audio"}, {"parent", "GROUP"}}), at(4));
    EXPECT_TRUE(sent(again).isEmpty());
}

TEST_F(QLabFollowerTest, ATimecodeCueIsApartFromTheRunningCues)
{
    connectToWorkspace();
    const Effects effects = list({cueEntry("TC", "Timecode"), cueEntry("A")}, at(1));
    ASSERT_TRUE(follower.timecodeCue());
    EXPECT_EQ(follower.timecodeCue()->id, "TC");
    EXPECT_EQ(ids(follower.runningCues()), QStringList {"A"});
    EXPECT_EQ(count<Effect::TimecodeCueChanged>(effects), 1);
    // A new Timecode cue is also read property by property, once.
    const QStringList asked = sent(effects);
    EXPECT_EQ(asked.count(valuesAddress("TC")), 2);
    EXPECT_TRUE(asked.contains("/workspace/W-1/cue_id/TC/startTime"));
    EXPECT_TRUE(asked.contains("/workspace/W-1/cue_id/TC/framerate"));
    EXPECT_TRUE(asked.contains("/workspace/W-1/cue_id/TC/outputType"));

    follower.receive(reply("/workspace/W-1/cue_id/TC/framerate", "ok", QJsonValue(3)), at(2));
    EXPECT_EQ(follower.timecodeCue()->timecodeRateIndex, std::optional<std::int64_t>(3));
}

TEST_F(QLabFollowerTest, WithOnlyATimecodeCueRunningTheRunningCuesAreEmptyAndPollingStillRuns)
{
    connectToWorkspace();
    const Effects effects = list({cueEntry("TC", "Timecode")}, at(1));
    EXPECT_TRUE(follower.runningCues().empty());
    EXPECT_FALSE(follower.currentCue());
    EXPECT_TRUE(follower.timecodeCue());
    EXPECT_EQ(count<Effect::StartPolling>(effects), 1);
    // Without a start time yet, each poll asks for the Timecode settings too, but reads no
    // single property again.
    const QStringList polled = sent(follower.pollDue());
    EXPECT_EQ(polled.count(valuesAddress("TC")), 2);
    EXPECT_FALSE(polled.contains("/workspace/W-1/cue_id/TC/startTime"));
}

TEST_F(QLabFollowerTest, SimulatePublishesWithoutAConnectionAndDisables)
{
    connectToWorkspace();
    QLabCue cue;
    cue.id = "demo-1";
    cue.type = "Audio";
    QLabCue timecode;
    timecode.id = "demo-tc";
    timecode.type = "Timecode";
    const Effects effects
        = follower.simulate(State::connected, QString("Demo Show"), {cue, timecode});
    EXPECT_EQ(count<Effect::CloseConnection>(effects), 1);
    EXPECT_EQ(follower.state(), State::connected);
    EXPECT_EQ(follower.workspaceName(), std::optional<QString>("Demo Show"));
    EXPECT_EQ(ids(follower.runningCues()), QStringList {"demo-1"});
    EXPECT_EQ(follower.timecodeCue()->id, "demo-tc");
    EXPECT_FALSE(follower.isEnabled());
    EXPECT_TRUE(follower.reconnectDue().empty());
    // The same settings count as a change again, since simulate disabled the follower.
    EXPECT_EQ(configure(), Effects {Effect {Effect::ScheduleReconnect {600}}});
}

TEST_F(QLabFollowerTest, RepeatedSimulationsOfARunningCueNeverPublishAnEmptyListBetween)
{
    QLabCue cue;
    cue.id = "mirrored-1";
    cue.type = "Audio";
    for (int i = 0; i < 10; ++i) {
        cue.actionElapsed = 0.5 * i;
        const Effects effects = follower.simulate(State::connected, QString("Main Show"), {cue});
        for (const Effect& effect : effects) {
            if (const auto* changed = std::get_if<Effect::RunningCuesChanged>(&effect.value)) {
                EXPECT_EQ(ids(changed->cues), QStringList {"mirrored-1"}) << "update " << i;
            }
        }
    }
    EXPECT_EQ(ids(follower.runningCues()), QStringList {"mirrored-1"});
}

TEST_F(QLabFollowerTest, MalformedTrafficIsDroppedAndChangesNothing)
{
    connectToWorkspace();
    list({cueEntry("A")}, at(1));
    EXPECT_TRUE(follower
                    .receive(OSCMessage("/reply/workspace/W-1/runningOrPausedCues/shallow",
                                 {OSCArgument::string("{not json")}),
                        at(2))
                    .empty());
    EXPECT_TRUE(
        follower
            .receive(OSCMessage("/qlab/event/workspace/cue/stop", {OSCArgument::int32(3)}), at(2))
            .empty());
    EXPECT_EQ(ids(follower.runningCues()), QStringList {"A"});
    EXPECT_EQ(follower.state(), State::connected);
}
