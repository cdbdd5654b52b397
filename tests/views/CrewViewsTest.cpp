// The crew's screens over real links: a primary and a secondary in this process, found through
// the private avahi-daemon on loopback. A secondary's main screen with the chat column and an
// urgent banner, and with its primary gone, drawn off screen light and dark; the chat shortcut;
// and the crew views' edge cases as the link really behaves.
#include <QQuickStyle>
#include <QTimer>

#include "ScreenshotStation.h"
#include "StationQmlModules.h"
#include "app/SampleContent.h"
#include "views/components/Symbols.h"
#include "views/components/Theme.h"
#include "views/crew/ChatMessagesModel.h"
#include "views/crew/CrewChatButtonModel.h"
#include "views/crew/CrewFrameModel.h"
#include "views/crew/CrewStatusModel.h"
#include "views/crew/LostConnectionModel.h"
#include "views/crew/QuickAlertBarModel.h"
#include "views/crew/UrgentBannersModel.h"
#include "views/dante/DropoutFlashModel.h"

using namespace ostrel;
using namespace ostrel::testsupport;

namespace {

constexpr int linkWait = 30000;

// Tenths of the station's waits, so that a lost primary is looked for again at once. Levels
// count as live for `silence` seconds, the station's two by default: a loaded machine may hold an
// interval back for more than a tenth of that.
CrewLink::Timings fastTimings(double silence = 2.0)
{
    CrewLink::Timings timings;
    timings.retryAfterFailure = std::chrono::milliseconds(300);
    timings.retryAfterLoss = std::chrono::milliseconds(200);
    timings.watchdogTick = std::chrono::milliseconds(100);
    timings.dnsSdRetry = std::chrono::milliseconds(500);
    timings.silenceLimit = silence;
    return timings;
}

QString appearanceName(AppearanceMode appearance)
{
    return appearance == AppearanceMode::dark ? QStringLiteral("dark") : QStringLiteral("light");
}

// Each test's primary has a name of its own, so that no secondary takes one left by another.
QString freshName(const char* base)
{
    static int count = 0;
    return QStringLiteral("%1 %2").arg(QLatin1String(base)).arg(++count);
}

// A primary that streams the sample minute's levels ten times a second while asked to.
struct Primary {
    CrewLink link;
    QTimer stream;
    std::vector<MeasurementInterval> minute = SampleContent::intervals();
    std::size_t next = 0;

    explicit Primary(const QString& name) : link(fastTimings())
    {
        link.configure(CrewRole::primary, name, QString());
        stream.setInterval(100);
        QObject::connect(&stream, &QTimer::timeout, &link,
            [this] { link.share(minute[next++ % minute.size()]); });
    }
};

bool connected(const CrewLink& secondary)
{
    return secondary.statusKind() == CrewLink::StatusKind::connected;
}

// What the primary's screen publishes: the statistics of `levels`, QLab on a running cue, two
// radio mics.
MirrorState showState(const QString& station, const std::vector<MeasurementInterval>& levels)
{
    const Date now = std::chrono::system_clock::now();
    QLabCue cue;
    cue.id = QStringLiteral("cue-14");
    cue.number = QStringLiteral("14");
    cue.name = QStringLiteral("Overture");
    cue.type = QStringLiteral("Audio");
    cue.startedAt = addingSeconds(now, -24.0);
    cue.actionElapsed = 24.0;
    cue.duration = 182.0;
    cue.sampledAt = now;
    MirrorState state;
    state.station = station;
    state.meterSetting = QStringLiteral("A / Fast");
    state.isCalibrated = true;
    for (const MeasurementInterval& interval : levels)
        state.statistics.add(interval);
    state.qlabState = QLabClientState::connected;
    state.workspace = QStringLiteral("Evening Show");
    state.cues = {cue};
    state.timecodeFallbackRate = TimecodeRates::rawValue(TimecodeRate::fps25);
    state.showsMics = true;
    state.micNames = {QStringLiteral("Lead Vocal"), QStringLiteral("Ensemble 3")};
    return state;
}

} // namespace

class CrewViewsTest : public QObject {
    Q_OBJECT

    // A secondary station drawn off screen, joined to `primary` and live, with the last minute of
    // the primary's levels on its graph.
    static bool joinAsSecondary(Station& station, Primary& primary, const QString& primaryName)
    {
        CrewSettings& settings = station.model->settings().crew();
        settings.setStationName(QStringLiteral("Backstage"));
        settings.setPrimary(primaryName);
        settings.setRole(CrewRole::secondary);
        station.model->applyCrewSettings();
        // The minute before joining, as a secondary that had watched it would show it; fed
        // before the live levels, whose later dates the graph would otherwise keep alone.
        Date shown = addingSeconds(std::chrono::system_clock::now(), -60.0);
        station.model->setClock([&shown] { return shown; });
        for (const MeasurementInterval& interval : primary.minute) {
            shown = addingSeconds(shown, 0.1);
            station.model->ingestMirrored(interval);
        }
        station.model->setClock([] { return std::chrono::system_clock::now(); });
        primary.stream.start();
        if (!QTest::qWaitFor([&] { return station.model->isMirrorLive(); }, linkWait)) return false;
        primary.link.share(showState(primaryName, primary.minute));
        return QTest::qWaitFor([&] { return station.model->mirror().has_value(); }, linkWait);
    }

    static CrewFrameModel* frameOf(Station& station)
    {
        QObject* screen = station.find("mainScreen");
        return screen ? screen->property("crew").value<CrewFrameModel*>() : nullptr;
    }

private slots:
    void initTestCase()
    {
        QQuickStyle::setStyle(QStringLiteral("Fusion"));
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        Symbols::installFont();
    }

    void aSecondaryShowsTheChatColumnAndAnUrgentBanner_data()
    {
        QTest::addColumn<int>("appearance");
        QTest::newRow("light") << int(AppearanceMode::light);
        QTest::newRow("dark") << int(AppearanceMode::dark);
    }

    void aSecondaryShowsTheChatColumnAndAnUrgentBanner()
    {
        QFETCH(int, appearance);
        const QString name = freshName("FOH");
        Primary primary(name);
        Station station(static_cast<AppearanceMode>(appearance), fastTimings());
        QVERIFY(station.window);
        QVERIFY(joinAsSecondary(station, primary, name));
        CrewLink& link = station.model->crew();
        CrewFrameModel* frame = frameOf(station);
        QVERIFY(frame);
        QTRY_VERIFY(frame->isLive());
        QVERIFY(!frame->showsSessionButton());

        primary.link.send(QStringLiteral("House is open. Beginners in five, please."), false,
            std::nullopt, std::nullopt);
        link.send(QStringLiteral("Radio mics are on and checked."), false, std::nullopt,
            QStringLiteral("14 Overture"));
        QTRY_COMPARE_WITH_TIMEOUT(primary.link.messages().size(), std::size_t(2), linkWait);

        auto* flash = station.find("dropoutFlash")->property("flash").value<DropoutFlashModel*>();
        QVERIFY(flash);
        const int flashesBefore = flash->flashCount();
        primary.link.send(QStringLiteral("Mic dead: Lead Vocal"), true, QuickAlert::micDead,
            QStringLiteral("14 Overture"));
        QTRY_COMPARE_WITH_TIMEOUT(link.pendingUrgent().size(), std::size_t(1), linkWait);
        // An urgent message flashes every screen, whatever the Dante setting says.
        QTRY_COMPARE(flash->flashCount(), flashesBefore + 1);

        frame->setShowsChat(true);
        const QImage image = station.render(QSize(1280, 800));
        QVERIFY(!image.isNull());
        QTest::qWait(3200); // the flash's three pulses and the banner's arrival
        const QImage settled = station.window->grabWindow();

        auto* column = qobject_cast<QQuickItem*>(station.find("chatColumn"));
        QVERIFY(column && column->isVisible());
        QCOMPARE(column->width(), 340.0);
        QCOMPARE(link.isChatVisible(), true);
        const auto banners = itemsNamed(station.window->contentItem(), "urgentBanner");
        QCOMPARE(int(banners.size()), 1);
        QVERIFY(banners.first()->isVisible());
        QVERIFY(drawnPixels(settled, sceneRect(banners.first()).intersected(settled.rect())) > 300);
        const QRect columnRect = sceneRect(column).intersected(settled.rect());
        QVERIFY(drawnPixels(settled, columnRect) > 800);
        const auto bubbles = itemsNamed(column, "chatBubble");
        QCOMPARE(int(bubbles.size()), 3);
        save(settled,
            QStringLiteral("crew-secondary-%1.png")
                .arg(appearanceName(static_cast<AppearanceMode>(appearance))));
        save(settled.copy(columnRect),
            QStringLiteral("crew-chat-panel-%1.png")
                .arg(appearanceName(static_cast<AppearanceMode>(appearance))));

        // "Got It" on the banner answers for this station, and the banner goes.
        auto* gotIt = itemsNamed(banners.first(), "bannerGotIt").value(0);
        QVERIFY(gotIt);
        QMetaObject::invokeMethod(gotIt, "clicked");
        QTRY_VERIFY(link.pendingUrgent().empty());
        QTRY_COMPARE_WITH_TIMEOUT(
            primary.link.messages().back().acknowledgedBy, QStringList {"Backstage"}, linkWait);
        QTRY_COMPARE(int(itemsNamed(station.window->contentItem(), "urgentBanner").size()), 0);
    }

    void aSecondaryThatLosesItsPrimaryDimsUnderTheBanner_data()
    {
        QTest::addColumn<int>("appearance");
        QTest::newRow("light") << int(AppearanceMode::light);
        QTest::newRow("dark") << int(AppearanceMode::dark);
    }

    void aSecondaryThatLosesItsPrimaryDimsUnderTheBanner()
    {
        QFETCH(int, appearance);
        const QString name = freshName("FOH");
        auto primary = std::make_unique<Primary>(name);
        Station station(static_cast<AppearanceMode>(appearance), fastTimings());
        QVERIFY(station.window);
        QVERIFY(joinAsSecondary(station, *primary, name));
        station.render(QSize(900, 760));
        auto* banner = qobject_cast<QQuickItem*>(station.find("lostConnectionBanner"));
        auto* monitor = qobject_cast<QQuickItem*>(station.find("monitorView"));
        QVERIFY(banner && monitor);
        QTRY_COMPARE(banner->opacity(), 0.0);
        QCOMPARE(monitor->opacity(), 1.0);

        primary.reset();
        QTRY_VERIFY_WITH_TIMEOUT(!station.model->isMirrorLive(), linkWait);
        // The last reading stays, greyed and faded, under the banner.
        QTRY_COMPARE(monitor->opacity(), 0.3);
        QTRY_COMPARE(banner->opacity(), 1.0);
        auto* lost = banner->property("lost").value<LostConnectionModel*>();
        QVERIFY(lost);
        // With the primary gone from the network too, the banner looks for one.
        QTRY_VERIFY_WITH_TIMEOUT(lost->isSearching(), linkWait);
        QCOMPARE(lost->title(), QString::fromUtf8("Looking for the primary computer\u2026"));
        QTest::qWait(500);
        const QImage image = station.window->grabWindow();
        QVERIFY(drawnPixels(image, sceneRect(banner).intersected(image.rect())) > 500);
        save(image,
            QStringLiteral("crew-lost-connection-%1.png")
                .arg(appearanceName(static_cast<AppearanceMode>(appearance))));
    }

    void ctrlShiftTTogglesTheChatInACrewOnly()
    {
        Station station(AppearanceMode::light, fastTimings());
        QVERIFY(station.window);
        station.render(QSize(900, 700));
        station.window->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(station.window));
        CrewFrameModel* frame = frameOf(station);
        auto* column = qobject_cast<QQuickItem*>(station.find("chatColumn"));
        auto* button = qobject_cast<QQuickItem*>(station.find("crewChatButton"));
        QVERIFY(frame && column && button);
        QVERIFY(!button->isVisible());

        QTest::keySequence(station.window, QKeySequence(QStringLiteral("Ctrl+Shift+T")));
        QTest::qWait(50);
        QVERIFY(!frame->showsChat());

        station.model->settings().crew().setRole(CrewRole::primary);
        station.model->applyCrewSettings();
        QTRY_VERIFY(button->isVisible());
        QTest::keySequence(station.window, QKeySequence(QStringLiteral("Ctrl+Shift+T")));
        QTRY_VERIFY(frame->showsChat());
        QTRY_VERIFY(column->isVisible());
        QVERIFY(station.model->crew().isChatVisible());
        QTest::keySequence(station.window, QKeySequence(QStringLiteral("Ctrl+Shift+T")));
        QTRY_VERIFY(!column->isVisible());
        QVERIFY(!station.model->crew().isChatVisible());
    }

    void aConnectedSecondaryWhosePrimaryStopsSendingReadsNotRespondingInRed()
    {
        const QString name = freshName("FOH");
        Primary primary(name);
        CrewLink secondary(fastTimings(1.0));
        CrewStatusModel status;
        status.setCrew(&secondary);
        QuickAlertBarModel alerts;
        alerts.setCrew(&secondary);
        secondary.configure(CrewRole::secondary, QStringLiteral("Backstage"), name);
        // Looking for a primary, nobody would hear an alert.
        QVERIFY(!alerts.isEnabled());
        primary.stream.start();
        QTRY_VERIFY_WITH_TIMEOUT(connected(secondary) && secondary.isReceiving(), linkWait);
        QTRY_COMPARE(status.text(), QStringLiteral("Connected to ") + name);
        QCOMPARE(status.colorRole(), int(Theme::Role::green));
        QVERIFY(alerts.isEnabled());

        primary.stream.stop();
        QTRY_VERIFY_WITH_TIMEOUT(!secondary.isReceiving(), 5000);
        QCOMPARE(status.text(), name + QStringLiteral(" not responding"));
        QCOMPARE(status.colorRole(), int(Theme::Role::red));
        // The connection itself is still up.
        QVERIFY(connected(secondary));
        QVERIFY(alerts.isEnabled());
    }

    void anUrgentMessageFromThisStationShowsNoBannerHereAndSeenByAsOthersAnswer()
    {
        const QString name = freshName("FOH");
        Primary primary(name);
        CrewLink secondary(fastTimings());
        secondary.configure(CrewRole::secondary, QStringLiteral("Backstage"), name);
        QTRY_VERIFY_WITH_TIMEOUT(connected(secondary), linkWait);
        UrgentBannersModel mine;
        mine.setCrew(&secondary);
        UrgentBannersModel theirs;
        theirs.setCrew(&primary.link);
        ChatMessagesModel chat;
        chat.setCrew(&secondary);

        secondary.send(QStringLiteral("Feedback"), true, QuickAlert::feedback, std::nullopt);
        QTRY_COMPARE_WITH_TIMEOUT(int(theirs.banners().size()), 1, linkWait);
        QCOMPARE(int(mine.banners().size()), 0);
        QCOMPARE(chat.row(0)["showsGotIt"].toBool(), false);
        QCOMPARE(chat.row(0)["seenByText"].toString(), QString());

        theirs.acknowledge(theirs.banners().first().toMap()["messageId"].toString());
        QCOMPARE(int(theirs.banners().size()), 0);
        QTRY_COMPARE_WITH_TIMEOUT(
            chat.row(0)["seenByText"].toString(), QStringLiteral("Seen by ") + name, linkWait);
    }

    void fourPendingUrgentMessagesShowThreeBannersAndTheOverflowLine()
    {
        const QString name = freshName("FOH");
        Primary primary(name);
        CrewLink secondary(fastTimings());
        secondary.configure(CrewRole::secondary, QStringLiteral("Backstage"), name);
        QTRY_VERIFY_WITH_TIMEOUT(connected(secondary), linkWait);
        UrgentBannersModel banners;
        banners.setCrew(&secondary);
        QSignalSpy announced(&banners, &UrgentBannersModel::announced);
        for (int index = 1; index <= 4; ++index) {
            primary.link.send(
                QStringLiteral("Stand by %1").arg(index), true, std::nullopt, std::nullopt);
        }
        QTRY_COMPARE_WITH_TIMEOUT(secondary.pendingUrgent().size(), std::size_t(4), linkWait);
        QCOMPARE(int(banners.banners().size()), 3);
        QCOMPARE(
            banners.banners().first().toMap()["text"].toString(), QStringLiteral("Stand by 2"));
        QVERIFY(banners.showsOverflow());
        QCOMPARE(banners.overflowText(), QStringLiteral("1 more urgent messages in the chat"));
        QCOMPARE(announced.count(), 4);
        QCOMPARE(announced.first().first().toString(),
            QStringLiteral("Urgent from ") + name + QStringLiteral(": Stand by 1"));
    }

    void aHundredUnreadMessagesShowNinetyNinePlus()
    {
        const QString name = freshName("FOH");
        Primary primary(name);
        CrewLink secondary(fastTimings());
        secondary.configure(CrewRole::secondary, QStringLiteral("Backstage"), name);
        QTRY_VERIFY_WITH_TIMEOUT(connected(secondary), linkWait);
        CrewChatButtonModel button;
        button.setCrew(&secondary);
        QVERIFY(button.isVisible());
        QVERIFY(!button.showsBadge());
        for (int index = 1; index <= 99; ++index)
            primary.link.send(
                QStringLiteral("Line %1").arg(index), false, std::nullopt, std::nullopt);
        QTRY_COMPARE_WITH_TIMEOUT(secondary.unreadCount(), 99, linkWait);
        QCOMPARE(button.badgeText(), QStringLiteral("99"));
        QCOMPARE(button.accessibleValue(), QStringLiteral("99 unread"));
        primary.link.send(QStringLiteral("Line 100"), false, std::nullopt, std::nullopt);
        QTRY_COMPARE_WITH_TIMEOUT(secondary.unreadCount(), 100, linkWait);
        QCOMPARE(button.badgeText(), QStringLiteral("99+"));
        // Seeing the chat clears the count and the badge.
        secondary.setChatVisible(true);
        QVERIFY(!button.showsBadge());
    }
};

QTEST_MAIN(CrewViewsTest)
#include "CrewViewsTest.moc"
