// The crew's views decided without a window: the status line, the badge, the bubbles, the
// banners, the quick alerts, the settings page and the main window's crew frame. Links that need
// no peer are real: a primary with nobody attached, a secondary still looking.
#include <QSignalSpy>
#include <QTimeZone>

#include "StationFixture.h"
#include "crew/CrewLink.h"
#include "network/CrewSettings.h"
#include "settings/SettingsStore.h"
#include "views/components/Theme.h"
#include "views/crew/ChatMessagesModel.h"
#include "views/crew/ChatText.h"
#include "views/crew/CrewChatButtonModel.h"
#include "views/crew/CrewChatPanelModel.h"
#include "views/crew/CrewFrameModel.h"
#include "views/crew/CrewHeaderModel.h"
#include "views/crew/CrewSettingsModel.h"
#include "views/crew/CrewStatusModel.h"
#include "views/crew/LostConnectionModel.h"
#include "views/crew/QuickAlertBarModel.h"
#include "views/crew/UrgentBannersModel.h"
#include "views/level/MeterDescriptionModel.h"
#include "views/qlab/TimecodeModel.h"

using namespace ostrel;

namespace {

using Kind = CrewLink::StatusKind;

int role(Theme::Role value)
{
    return static_cast<int>(value);
}

const Date noon = Date {} + std::chrono::hours(24 * 365 * 56 + 12);

ChatMessage message(const QString& sender, const QString& text, bool urgent = false)
{
    ChatMessage result;
    result.id = QUuid::createUuid();
    result.sender = sender;
    result.text = text;
    result.date = noon;
    result.isUrgent = urgent;
    return result;
}

// A primary with nobody attached: sharing with none, and it can send.
struct LonePrimary {
    CrewLink link;
    LonePrimary() { link.configure(CrewRole::primary, QStringLiteral("FOH"), QString()); }
};

} // namespace

TEST(CrewStatus, SharingWithOneHasNoSingularForm)
{
    EXPECT_EQ(CrewStatusModel::text({Kind::sharing, 1, {}}, false), "Sharing with 1");
    EXPECT_EQ(CrewStatusModel::colorRole({Kind::sharing, 1, {}}, false), Theme::Role::green);
    EXPECT_EQ(CrewStatusModel::text({Kind::sharing, 3, {}}, false), "Sharing with 3");
}

TEST(CrewStatus, EveryStatusHasItsWordsAndColour)
{
    EXPECT_EQ(CrewStatusModel::text({Kind::sharing, 0, {}}, false), "Waiting for secondaries");
    EXPECT_EQ(CrewStatusModel::colorRole({Kind::sharing, 0, {}}, false), Theme::Role::orange);
    EXPECT_EQ(CrewStatusModel::text({Kind::connecting, 0, "FOH"}, false), "Connecting to FOH");
    EXPECT_EQ(CrewStatusModel::colorRole({Kind::connecting, 0, "FOH"}, false), Theme::Role::orange);
    EXPECT_EQ(CrewStatusModel::text({Kind::connected, 0, "FOH"}, true), "Connected to FOH");
    EXPECT_EQ(CrewStatusModel::colorRole({Kind::connected, 0, "FOH"}, true), Theme::Role::green);
    EXPECT_EQ(CrewStatusModel::text({Kind::searching, 0, {}}, false), "Looking for primary");
    EXPECT_EQ(CrewStatusModel::colorRole({Kind::searching, 0, {}}, false), Theme::Role::orange);
    EXPECT_EQ(CrewStatusModel::text({Kind::off, 0, {}}, false), "Off");
    EXPECT_EQ(CrewStatusModel::colorRole({Kind::off, 0, {}}, false), Theme::Role::secondary);
}

TEST(CrewStatus, AConnectedPrimaryThatStopsSendingReadsNotRespondingInRed)
{
    EXPECT_EQ(CrewStatusModel::text({Kind::connected, 0, "FOH"}, false), "FOH not responding");
    EXPECT_EQ(CrewStatusModel::colorRole({Kind::connected, 0, "FOH"}, false), Theme::Role::red);
}

TEST(CrewStatus, TheLabelFollowsTheLink)
{
    CrewLink link;
    CrewStatusModel status;
    status.setCrew(&link);
    EXPECT_EQ(status.text(), "Off");
    QSignalSpy changes(&status, &CrewStatusModel::statusChanged);
    link.configure(CrewRole::primary, QStringLiteral("FOH"), QString());
    EXPECT_EQ(status.text(), "Waiting for secondaries");
    EXPECT_EQ(status.colorRole(), role(Theme::Role::orange));
    EXPECT_GE(changes.count(), 1);
}

TEST(CrewHeader, NamesTheCrewOrSaysNobodyHasJoined)
{
    EXPECT_EQ(CrewHeaderModel::stationsText({}), "Just you so far");
    EXPECT_EQ(CrewHeaderModel::stationsText({"FOH", "Backstage", "Stalls"}),
        QString::fromUtf8("FOH \u00B7 Backstage \u00B7 Stalls"));
    LonePrimary primary;
    CrewHeaderModel header;
    header.setCrew(&primary.link);
    EXPECT_EQ(header.stationsText(), "FOH");
}

TEST(CrewChatButton, HundredUnreadShowNinetyNinePlusAndNinetyNineShowNinetyNine)
{
    EXPECT_EQ(CrewChatButtonModel::badgeText(100), "99+");
    EXPECT_EQ(CrewChatButtonModel::badgeText(250), "99+");
    EXPECT_EQ(CrewChatButtonModel::badgeText(99), "99");
    EXPECT_EQ(CrewChatButtonModel::badgeText(1), "1");
}

TEST(CrewChatButton, ShowsOnlyInACrewAndCarriesItsHelp)
{
    CrewLink link;
    CrewChatButtonModel button;
    button.setCrew(&link);
    EXPECT_FALSE(button.isVisible());
    EXPECT_FALSE(button.showsBadge());
    EXPECT_EQ(button.accessibleValue(), "");
    link.configure(CrewRole::primary, QStringLiteral("FOH"), QString());
    EXPECT_TRUE(button.isVisible());
    EXPECT_EQ(button.title(), "Crew Chat");
    EXPECT_EQ(button.help(), "Crew chat (Ctrl+Shift+T)");
    EXPECT_EQ(button.symbol(), "bubble.left.and.bubble.right");
}

TEST(ChatBubble, OwnMessagesReadYouOnTheAccentAndOthersTheirSenderOnGrey)
{
    const QVariantMap mine = ChatMessagesModel::bubble(message("FOH", "Going to interval"), "FOH");
    EXPECT_TRUE(mine["isMine"].toBool());
    EXPECT_EQ(mine["senderText"].toString(), "You");
    EXPECT_EQ(mine["backgroundRole"].toInt(), role(Theme::Role::accent));
    EXPECT_DOUBLE_EQ(mine["backgroundOpacity"].toDouble(), 0.22);
    EXPECT_EQ(mine["symbol"].toString(), "");
    EXPECT_FALSE(mine["showsGotIt"].toBool());

    const QVariantMap theirs = ChatMessagesModel::bubble(message("Backstage", "Ready"), "FOH");
    EXPECT_FALSE(theirs["isMine"].toBool());
    EXPECT_EQ(theirs["senderText"].toString(), "Backstage");
    EXPECT_EQ(theirs["backgroundRole"].toInt(), role(Theme::Role::secondary));
    EXPECT_DOUBLE_EQ(theirs["backgroundOpacity"].toDouble(), 0.14);
    EXPECT_EQ(theirs["accessibleName"].toString(), "Backstage: Ready");
}

TEST(ChatBubble, AnUrgentMessageIsRedWithGotItUntilThisStationAnswers)
{
    ChatMessage alert = message("Backstage", "Mic dead: Lead Vocal", true);
    alert.alert = QuickAlert::micDead;
    alert.cue = QStringLiteral("12 Storm");
    QVariantMap bubble = ChatMessagesModel::bubble(alert, "FOH");
    EXPECT_EQ(bubble["backgroundRole"].toInt(), role(Theme::Role::red));
    EXPECT_TRUE(bubble["usesWhiteText"].toBool());
    EXPECT_EQ(bubble["symbol"].toString(), "mic.slash.fill");
    EXPECT_EQ(bubble["cueText"].toString(), QString::fromUtf8(" \u00B7 Cue 12 Storm"));
    EXPECT_TRUE(bubble["accessibleName"].toString().startsWith("Urgent, "));
    EXPECT_TRUE(bubble["showsGotIt"].toBool());
    EXPECT_EQ(bubble["seenByText"].toString(), "");

    alert.acknowledgedBy = QStringList {"Stalls", "FOH"};
    bubble = ChatMessagesModel::bubble(alert, "FOH");
    EXPECT_FALSE(bubble["showsGotIt"].toBool());
    EXPECT_EQ(bubble["seenByText"].toString(), "Seen by Stalls, FOH");

    // Typed urgent, with no quick alert: the warning triangle.
    EXPECT_EQ(ChatText::symbol(message("Stalls", "Hold", true)), "exclamationmark.triangle.fill");
}

TEST(ChatBubble, TheTimeHasTwoDigitsForHourMinuteAndSecond)
{
    const Date date = Date {} + std::chrono::seconds(3600 * 24 * 1000 + 7 * 3600 + 5 * 60 + 9);
    EXPECT_EQ(ChatText::time(date, QTimeZone::utc()), "07:05:09");
}

TEST(ChatMessages, ListsTheLinksMessagesAndTellsWhenEmpty)
{
    LonePrimary primary;
    ChatMessagesModel messages;
    messages.setCrew(&primary.link);
    EXPECT_TRUE(messages.isEmpty());
    EXPECT_EQ(messages.emptyText(), "Messages to the whole crew appear here.");
    primary.link.send(QStringLiteral("House open"), false, std::nullopt, std::nullopt);
    ASSERT_EQ(messages.count(), 1);
    EXPECT_EQ(messages.row(0)["text"].toString(), "House open");
    EXPECT_EQ(messages.row(0)["senderText"].toString(), "You");
    EXPECT_EQ(messages.lastMessageId(), messages.row(0)["messageId"].toString());
}

TEST(UrgentBanners, FourPendingShowThreeBannersAndAnOverflowOfOneInThePlural)
{
    std::vector<ChatMessage> pending;
    for (int index = 1; index <= 4; ++index)
        pending.push_back(message("Backstage", QStringLiteral("Alert %1").arg(index), true));
    const QVariantList banners = UrgentBannersModel::banners(pending);
    ASSERT_EQ(banners.size(), 3);
    // The newest three, in order.
    EXPECT_EQ(banners[0].toMap()["text"].toString(), "Alert 2");
    EXPECT_EQ(banners[2].toMap()["text"].toString(), "Alert 4");
    EXPECT_EQ(UrgentBannersModel::overflowText(4), "1 more urgent messages in the chat");
    EXPECT_EQ(UrgentBannersModel::overflowText(3), "");
}

TEST(UrgentBanners, TheDetailNamesTheSenderTheTimeAndTheCue)
{
    ChatMessage alert = message("Backstage", "Feedback", true);
    alert.cue = QStringLiteral("4 Rain");
    const QString detail = UrgentBannersModel::detail(alert);
    EXPECT_TRUE(detail.startsWith("From Backstage at ")) << qPrintable(detail);
    EXPECT_TRUE(detail.endsWith(QString::fromUtf8(" \u00B7 Cue 4 Rain"))) << qPrintable(detail);
    EXPECT_EQ(UrgentBannersModel::announcement(alert), "Urgent from Backstage: Feedback");
}

TEST(UrgentBanners, AnUrgentMessageFromThisStationShowsNoBannerHere)
{
    LonePrimary primary;
    UrgentBannersModel banners;
    banners.setCrew(&primary.link);
    QSignalSpy announced(&banners, &UrgentBannersModel::announced);
    primary.link.send(QStringLiteral("Stop the show"), true, std::nullopt, std::nullopt);
    ASSERT_EQ(primary.link.messages().size(), 1u);
    EXPECT_TRUE(banners.banners().isEmpty());
    EXPECT_FALSE(banners.showsOverflow());
    EXPECT_EQ(announced.count(), 0);
}

TEST(LostConnection, SearchingHoldsWhileNoPrimaryIsInSight)
{
    EXPECT_TRUE(LostConnectionModel::isSearching(std::nullopt, {}));
    EXPECT_FALSE(LostConnectionModel::isSearching(std::nullopt, {"FOH"}));
    EXPECT_FALSE(LostConnectionModel::isSearching(QString("FOH"), {}));
    EXPECT_EQ(LostConnectionModel::title(true, "FOH"),
        QString::fromUtf8("Looking for the primary computer\u2026"));
    EXPECT_EQ(LostConnectionModel::body(true),
        "Make sure Ostrel Live is running on the FOH computer with Crew set to Primary, on the "
        "same network.");
    EXPECT_EQ(LostConnectionModel::body(false),
        "These readings aren't live. Ostrel Live will reconnect automatically.");
}

TEST(LostConnection, TheNameIsThePrimarysElseThePreferredElseThePrimary)
{
    EXPECT_EQ(LostConnectionModel::primaryName(QString("FOH"), "Stalls"), "FOH");
    EXPECT_EQ(LostConnectionModel::primaryName(std::nullopt, "Stalls"), "Stalls");
    EXPECT_EQ(LostConnectionModel::primaryName(std::nullopt, ""), "the primary");
    EXPECT_EQ(LostConnectionModel::title(false, "the primary"), "Lost connection to the primary");
}

TEST(LostConnection, ALookingSecondaryShowsTheSearchingForm)
{
    CrewLink link;
    link.configure(CrewRole::secondary, QStringLiteral("Backstage"), QString());
    LostConnectionModel lost;
    lost.setCrew(&link);
    lost.setScale(1.5);
    EXPECT_TRUE(lost.isSearching());
    EXPECT_EQ(lost.symbol(), "antenna.radiowaves.left.and.right");
    EXPECT_DOUBLE_EQ(lost.titleSize(), 45.0);
    EXPECT_DOUBLE_EQ(lost.symbolSize(), 60.0);
    EXPECT_DOUBLE_EQ(lost.bodySize(), 22.5);
}

TEST(QuickAlerts, DisabledUnlessSharingOrConnected)
{
    EXPECT_TRUE(QuickAlertBarModel::isEnabled(Kind::sharing));
    EXPECT_TRUE(QuickAlertBarModel::isEnabled(Kind::connected));
    EXPECT_FALSE(QuickAlertBarModel::isEnabled(Kind::connecting));
    EXPECT_FALSE(QuickAlertBarModel::isEnabled(Kind::searching));
    EXPECT_FALSE(QuickAlertBarModel::isEnabled(Kind::off));
}

TEST(QuickAlerts, APrimaryWithNoSecondariesYetIsSharingSoTheyAreEnabled)
{
    LonePrimary primary;
    ASSERT_EQ(primary.link.statusKind(), Kind::sharing);
    ASSERT_EQ(primary.link.statusSecondaries(), 0);
    QuickAlertBarModel alerts;
    alerts.setCrew(&primary.link);
    EXPECT_TRUE(alerts.isEnabled());
    alerts.setMicNames({"Lead Vocal", "Ensemble 3"});
    alerts.setMicIndex(1);
    alerts.setCueLabel(QStringLiteral("7 Thunder"));
    alerts.send(0);
    ASSERT_EQ(primary.link.messages().size(), 1u);
    const ChatMessage& sent = primary.link.messages().front();
    EXPECT_EQ(sent.text, "Mic dead: Lead Vocal");
    EXPECT_TRUE(sent.isUrgent);
    EXPECT_EQ(sent.alert, QuickAlert::micDead);
    EXPECT_EQ(sent.cue, QString("7 Thunder"));
    // "No mic": the title alone.
    alerts.setMicIndex(0);
    alerts.send(1);
    EXPECT_EQ(primary.link.messages().back().text, "Swapping pack");
    EXPECT_FALSE(primary.link.messages().back().isUrgent);
}

TEST(QuickAlerts, ASearchingSecondaryCanNotSendThem)
{
    CrewLink link;
    link.configure(CrewRole::secondary, QStringLiteral("Backstage"), QString());
    QuickAlertBarModel alerts;
    alerts.setCrew(&link);
    EXPECT_FALSE(alerts.isEnabled());
    alerts.send(0);
    EXPECT_TRUE(link.messages().empty());
}

TEST(QuickAlerts, ThePickerStartsWithNoMicAndOnlyShowsWithNames)
{
    QuickAlertBarModel alerts;
    EXPECT_FALSE(alerts.showsMicPicker());
    EXPECT_EQ(alerts.noMicNamesText(),
        "Mic names appear once Ostrel Live is watching your Sennheiser receivers");
    alerts.setMicNames({"Lead Vocal"});
    EXPECT_TRUE(alerts.showsMicPicker());
    EXPECT_EQ(alerts.micChoices(), QStringList({"No mic", "Lead Vocal"}));
    alerts.setMicIndex(1);
    EXPECT_EQ(alerts.micName(), "Lead Vocal");
    // A mic that leaves the list is no longer named.
    alerts.setMicNames({"Ensemble 3"});
    EXPECT_EQ(alerts.micName(), "");
    EXPECT_EQ(alerts.micIndex(), 0);
    const QVariantMap first = alerts.alerts().first().toMap();
    EXPECT_EQ(first["help"].toString(), "Urgent: flashes every screen until acknowledged");
    EXPECT_EQ(first["colorRole"].toInt(), role(Theme::Role::red));
    EXPECT_EQ(alerts.alerts().at(3).toMap()["help"].toString(), "Stand by");
}

TEST(CrewChatPanel, SendingStampsTheCueAndClearsTheDraftAndTheUrgentToggle)
{
    LonePrimary primary;
    CrewChatPanelModel panel;
    panel.setCrew(&primary.link);
    panel.setCueLabel(QStringLiteral("3 Overture"));
    panel.setDraft(QStringLiteral("  Hold the house  "));
    panel.setSendsUrgent(true);
    EXPECT_EQ(panel.urgentHelp(), "Sending as urgent: flashes every screen");
    EXPECT_EQ(panel.urgentColorRole(), role(Theme::Role::red));
    panel.send();
    ASSERT_EQ(primary.link.messages().size(), 1u);
    EXPECT_EQ(primary.link.messages().front().text, "Hold the house");
    EXPECT_TRUE(primary.link.messages().front().isUrgent);
    EXPECT_EQ(primary.link.messages().front().cue, QString("3 Overture"));
    EXPECT_EQ(panel.draft(), "");
    // Every urgent message is a fresh decision.
    EXPECT_FALSE(panel.sendsUrgent());
    EXPECT_EQ(panel.urgentHelp(), "Send as urgent");
    EXPECT_EQ(panel.urgentColorRole(), role(Theme::Role::secondary));

    panel.setCueLabel(QString());
    panel.setDraft(QStringLiteral("Thanks"));
    panel.send();
    EXPECT_FALSE(primary.link.messages().back().cue.has_value());
    EXPECT_FALSE(primary.link.messages().back().isUrgent);
}

TEST(CrewChatPanel, BeingShownMakesTheChatVisibleToTheLink)
{
    LonePrimary primary;
    CrewChatPanelModel panel;
    panel.setCrew(&primary.link);
    panel.setShown(true);
    EXPECT_TRUE(primary.link.isChatVisible());
    panel.setShown(false);
    EXPECT_FALSE(primary.link.isChatVisible());
}

class CrewSettingsPageTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    QSettings file {folder.filePath("settings.ini"), QSettings::IniFormat};
    SettingsStore store {file};
    CrewSettings settings {store};
};

TEST_F(CrewSettingsPageTest, TheRolePickerWritesTheSettingAndTheSummaryFollows)
{
    CrewSettingsModel page;
    page.setSettings(&settings);
    EXPECT_EQ(page.roleTitle(), "This Computer Is");
    EXPECT_EQ(page.roleChoices(), QStringList({"Standalone", "Primary (FOH)", "Secondary"}));
    EXPECT_EQ(page.roleIndex(), 0);
    EXPECT_EQ(page.summary(), "This computer measures on its own and doesn't join a crew.");
    EXPECT_FALSE(page.isInCrew());
    EXPECT_FALSE(page.showsPrimarySection());

    page.setRoleIndex(2);
    EXPECT_EQ(settings.role(), CrewRole::secondary);
    EXPECT_TRUE(page.summary().endsWith(
        " Every computer running Ostrel Live on this network can join and read the chat."));
    EXPECT_TRUE(page.showsPrimarySection());
    EXPECT_TRUE(page.showsMessagesSection());

    page.setRoleIndex(1);
    EXPECT_EQ(settings.role(), CrewRole::primary);
    EXPECT_FALSE(page.showsPrimarySection());
    page.setStationName(QStringLiteral("Stalls"));
    EXPECT_EQ(settings.stationName(), "Stalls");
}

TEST_F(CrewSettingsPageTest, AStoredPrimaryNotFoundStaysChosenAndSaysSo)
{
    EXPECT_EQ(CrewSettingsModel::primaryTitles("", {"FOH", "Stage Left"}),
        QStringList({"First one found", "FOH", "Stage Left"}));
    EXPECT_EQ(CrewSettingsModel::primaryTitles("Booth", {"FOH"}),
        QStringList({"First one found", "FOH", "Booth (not found)"}));
    EXPECT_EQ(
        CrewSettingsModel::primaryTitles("FOH", {"FOH"}), QStringList({"First one found", "FOH"}));

    settings.setRole(CrewRole::secondary);
    settings.setPrimary(QStringLiteral("Booth"));
    CrewSettingsModel page;
    page.setSettings(&settings);
    EXPECT_EQ(page.primaryChoices(), QStringList({"First one found", "Booth (not found)"}));
    EXPECT_EQ(page.primaryIndex(), 1);
    page.setPrimaryIndex(0);
    EXPECT_EQ(settings.primary(), "");
}

TEST(CrewSettingsPage, ClearChatEmptiesThisCopyOnly)
{
    LonePrimary primary;
    primary.link.send(QStringLiteral("One"), false, std::nullopt, std::nullopt);
    CrewSettingsModel page;
    page.setCrew(&primary.link);
    EXPECT_EQ(page.clearTitle(), "Clear Chat");
    EXPECT_EQ(page.clearFooter(),
        "Clears this computer's copy only. The chat isn't saved when Ostrel Live quits.");
    page.clearChat();
    EXPECT_TRUE(primary.link.messages().empty());
}

class CrewFrameTest : public testsupport::StationFixture {
protected:
    void becomes(AppModel& model, CrewRole role)
    {
        model.settings().crew().setRole(role);
        model.applyCrewSettings();
        settle();
    }
};

TEST_F(CrewFrameTest, TheSessionButtonIsAbsentOnASecondaryAndTheChatButtonOnAStandalone)
{
    auto model = make(AppModel::Mode::inert);
    model->start();
    CrewFrameModel frame;
    frame.setAppModel(model.get());
    EXPECT_FALSE(frame.showsChatButton());
    EXPECT_TRUE(frame.showsSessionButton());
    becomes(*model, CrewRole::primary);
    EXPECT_TRUE(frame.showsChatButton());
    EXPECT_TRUE(frame.showsSessionButton());
    becomes(*model, CrewRole::secondary);
    EXPECT_TRUE(frame.showsChatButton());
    EXPECT_FALSE(frame.showsSessionButton());
}

TEST_F(CrewFrameTest, AStandaloneStationNeverShowsTheChatColumnEvenIfShowsChatWasLeftTrue)
{
    auto model = make(AppModel::Mode::inert);
    model->start();
    CrewFrameModel frame;
    frame.setAppModel(model.get());
    frame.toggleChat();
    EXPECT_FALSE(frame.showsChat());
    becomes(*model, CrewRole::primary);
    frame.toggleChat();
    EXPECT_TRUE(frame.presentsChat());
    QSignalSpy presented(&frame, &CrewFrameModel::presentsChatChanged);
    becomes(*model, CrewRole::standalone);
    EXPECT_TRUE(frame.showsChat());
    EXPECT_FALSE(frame.presentsChat());
    EXPECT_EQ(presented.count(), 1);
}

TEST_F(CrewFrameTest, ASecondaryWithoutLiveReadingsGreysAndFadesItsMonitor)
{
    auto model = make(AppModel::Mode::inert);
    model->start();
    CrewFrameModel frame;
    frame.setAppModel(model.get());
    EXPECT_TRUE(frame.isLive());
    EXPECT_DOUBLE_EQ(frame.monitorOpacity(), 1.0);
    becomes(*model, CrewRole::secondary);
    EXPECT_FALSE(frame.isLive());
    EXPECT_DOUBLE_EQ(frame.monitorOpacity(), 0.3);
    EXPECT_DOUBLE_EQ(frame.monitorSaturation(), 0.0);
    EXPECT_EQ(frame.fadeDuration(), 400);
}

TEST_F(CrewFrameTest, TheChatColumnKeepsBetweenItsMinimumAndIdealWidth)
{
    CrewFrameModel frame;
    EXPECT_DOUBLE_EQ(frame.chatWidth(1400.0), 340.0);
    EXPECT_DOUBLE_EQ(frame.chatWidth(800.0), 320.0);
    EXPECT_DOUBLE_EQ(frame.chatWidth(480.0), 280.0);
    EXPECT_DOUBLE_EQ(frame.chatMaximumWidth(), 480.0);
}

TEST_F(CrewFrameTest, ASecondaryShowsItsPrimarysMeterSettingAndCalibration)
{
    auto model = make(AppModel::Mode::inert);
    model->start();
    model->settings().measurement().setCalibrationDate(std::nullopt);
    MeterDescriptionModel description;
    description.setMeter(&model->meter());
    description.setMeasurement(&model->settings().measurement());
    description.setDisplay(&model->settings().display());
    description.setStation(model.get());
    EXPECT_EQ(description.weightingText(), "A");
    EXPECT_EQ(description.responseText(), "FAST");
    EXPECT_TRUE(description.showsUncalibrated());

    becomes(*model, CrewRole::secondary);
    // Waiting for its primary: no warning about calibration.
    EXPECT_FALSE(description.showsUncalibrated());
    MirrorState state;
    state.station = QStringLiteral("FOH");
    state.meterSetting = QStringLiteral("C / Slow");
    state.isCalibrated = false;
    model->applyMirror(state);
    EXPECT_EQ(description.weightingText(), "C");
    EXPECT_EQ(description.responseText(), "SLOW");
    EXPECT_TRUE(description.showsUncalibrated());
}

TEST_F(CrewFrameTest, ASecondaryAssumesItsPrimarysTimecodeRate)
{
    auto model = make(AppModel::Mode::inert);
    model->start();
    model->settings().qlab().setTimecodeFallbackRate(TimecodeRate::fps25);
    QLabCue cue;
    cue.id = QStringLiteral("tc");
    cue.type = QStringLiteral("Timecode");
    cue.startedAt = noon;
    TimecodeModel timecode;
    timecode.setQlab(&model->qlab());
    timecode.setSettings(&model->settings().qlab());
    timecode.setStation(model.get());
    becomes(*model, CrewRole::secondary);
    MirrorState state;
    state.meterSetting = QStringLiteral("A / Fast");
    state.cues = {cue};
    state.timecodeFallbackRate = TimecodeRates::rawValue(TimecodeRate::fps30);
    model->applyMirror(state);
    settle();
    ASSERT_TRUE(timecode.isShown());
    EXPECT_TRUE(timecode.detailsText().contains(
        QString::fromUtf8(TimecodeRates::title(TimecodeRate::fps30)) + " (assumed)"))
        << qPrintable(timecode.detailsText());
}
