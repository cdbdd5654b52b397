// Stations linked into a crew, each its own process on this machine: a primary that hears a
// tone through the private PulseAudio server and follows a fake QLab and a fake Dante device,
// and secondaries that find it through the private avahi-daemon and show what it shows.
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>

#include "FakeQLab.h"
#include "MdnsServices.h"
#include "StationProcess.h"
#include "support/PulseTestMain.h"
#include "support/TonePlayer.h"

using namespace ostrel;
using ostrel::testing::FakeQLab;
using testsupport::StationProcess;

namespace {

// A tone of amplitude 0.1 reads 96.99 dB(A) with an offset of 120; the secondaries are set 10 dB
// lower, so that their own microphone can't pass for the primary's.
constexpr double primaryReading = 96.99;
constexpr double ownReading = 86.99;

double number(const QJsonObject& snapshot, const char* key)
{
    return snapshot.value(QLatin1String(key)).toDouble(std::nan(""));
}

bool holds(const QJsonObject& snapshot, const char* key, const QString& text)
{
    return snapshot.value(QLatin1String(key)).toArray().contains(text);
}

bool near(const QJsonObject& snapshot, const char* key, double value, double tolerance)
{
    return std::fabs(number(snapshot, key) - value) <= tolerance;
}

} // namespace

class CrewStationsTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir folder;
    testsupport::TonePlayer tone;
    std::unique_ptr<FakeQLab> qlab;
    std::unique_ptr<testsupport::FakeDevice> stageBox;

    std::unique_ptr<StationProcess> station(const QString& name, const QString& role)
    {
        const bool isPrimary = role == QLatin1String("primary");
        auto process = std::make_unique<StationProcess>(folder.path(), name,
            std::map<QString, QVariant> {{"crewRole", role}, {"inputDeviceUID", "testmic"},
                {"weighting", "A"}, {"calibrationOffset", isPrimary ? 120.0 : 110.0},
                {"qlabEnabled", isPrimary}, {"qlabHost", "127.0.0.1"}, {"qlabPort", qlab->port()},
                {"danteMonitoringEnabled", isPrimary}, {"micMonitoringEnabled", false}});
        return process;
    }

    static bool connectedTo(const QJsonObject& snapshot, const QString& primary)
    {
        return snapshot.value("status").toString() == QStringLiteral("connected ") + primary
            && snapshot.value("live").toBool();
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(qEnvironmentVariableIsSet("PULSE_SERVER"), "the pulse fixture sets PULSE_SERVER");
        QVERIFY(testsupport::settleDevices());
        const QString problem = tone.start(OSTREL_TONE_TOOL, 0.1, 600);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        qlab = std::make_unique<FakeQLab>();
        QVERIFY(qlab->listen());
        qlab->workspaces = {{"W-1", "Main Show", {}}};
        qlab->runningCues = {FakeQLab::cueEntry("C-12", "12", "Thunder Ambience")};
        stageBox = std::make_unique<testsupport::FakeDevice>(
            "Stage-Box-1", QStringList {"model=DX168", "mf=Allen & Heath"});
        QVERIFY(stageBox->waitUntilEstablished());
    }

    // The fake device goes, and the tests after these find the daemon without it.
    void cleanupTestCase()
    {
        stageBox.reset();
        QVERIFY(testsupport::settleDevices());
    }

    void aSecondaryShowsThePrimarysCalibratedLevelItsCuesAndItsDanteDevices()
    {
        auto primary = station("FOH", "primary");
        auto secondary = station("Backstage", "secondary");
        QVERIFY(primary->start());
        QVERIFY(secondary->start());
        QVERIFY(primary->waitFor([](const QJsonObject& s) {
            return s.value("status").toString() == QLatin1String("sharing 1")
                && near(s, "level", primaryReading, 0.1);
        }));
        QVERIFY2(secondary->waitFor([](const QJsonObject& s) { return connectedTo(s, "FOH"); }),
            qPrintable(QJsonDocument(secondary->now()).toJson()));
        // Both read the steady tone; a second is enough for the Fast detector and the stream.
        QTest::qWait(1000);
        const double there = number(primary->now(), "level");
        const double here = number(secondary->now(), "level");
        qInfo("primary reads %.1f dB, the secondary shows %.1f dB", there, here);
        QVERIFY2(std::fabs(here - there) <= 0.1,
            qPrintable(QStringLiteral("primary %1, secondary %2").arg(there).arg(here)));
        QVERIFY(!secondary->now().value("audioRunning").toBool());
        QVERIFY(secondary->waitFor([&](const QJsonObject& s) {
            return holds(s, "cues", "12 Thunder Ambience") && holds(s, "dante", "Stage-Box-1")
                && s.value("qlab").toString() == QLatin1String("connected");
        }));
        QVERIFY(secondary->waitFor([&](const QJsonObject& s) {
            return std::fabs(number(s, "leq") - number(primary->now(), "leq")) <= 0.05;
        }));
        QCOMPARE(secondary->now().value("stations").toArray(), QJsonArray({"FOH", "Backstage"}));
    }

    void chatRunsBothWaysAndAnUrgentAlertFlashesTheOthersUntilEachAcknowledges()
    {
        auto primary = station("FOH", "primary");
        auto first = station("Backstage", "secondary");
        auto second = station("Stalls", "secondary");
        QVERIFY(primary->start());
        QVERIFY(first->start());
        QVERIFY(second->start());
        QVERIFY(primary->waitFor([](const QJsonObject& s) { return s["status"] == "sharing 2"; }));
        QVERIFY(first->waitFor([](const QJsonObject& s) { return connectedTo(s, "FOH"); }));
        QVERIFY(second->waitFor([](const QJsonObject& s) { return connectedTo(s, "FOH"); }));

        primary->command("send House is open");
        const auto hasText = [](const QString& text) {
            return [text](const QJsonObject& s) {
                for (const auto& message : s["messages"].toArray())
                    if (message.toObject()["text"] == text) return true;
                return false;
            };
        };
        QVERIFY(first->waitFor(hasText("House is open")));
        QVERIFY(second->waitFor(hasText("House is open")));
        first->command("send Ready backstage");
        QVERIFY(primary->waitFor(hasText("Ready backstage")));
        QVERIFY(second->waitFor(hasText("Ready backstage")));

        const int primaryFlashes = primary->now()["urgentFlashCount"].toInt();
        const int secondFlashes = second->now()["urgentFlashCount"].toInt();
        first->command("urgent Mic 4 dead");
        QVERIFY(primary->waitFor([&](const QJsonObject& s) {
            return s["urgentFlashCount"].toInt() == primaryFlashes + 1
                && s["pendingUrgent"].toArray().size() == 1;
        }));
        QVERIFY(second->waitFor([&](const QJsonObject& s) {
            return s["urgentFlashCount"].toInt() == secondFlashes + 1
                && s["pendingUrgent"].toArray().size() == 1;
        }));
        const QString id = second->now()["pendingUrgent"].toArray().first().toString();
        QVERIFY(first->now()["pendingUrgent"].toArray().isEmpty());
        QCOMPARE(first->now()["urgentFlashCount"].toInt(), 0);

        second->command("ack " + id);
        QVERIFY(second->waitFor(
            [](const QJsonObject& s) { return s["pendingUrgent"].toArray().isEmpty(); }));
        // Each station answers for itself; the author sees who has.
        const auto seenBy = [&](const QStringList& names) {
            return [&, names](const QJsonObject& s) {
                for (const auto& message : s["messages"].toArray()) {
                    const QJsonObject object = message.toObject();
                    if (object["id"] == id)
                        return object["acknowledgedBy"].toArray()
                            == QJsonArray::fromStringList(names);
                }
                return false;
            };
        };
        QVERIFY(first->waitFor(seenBy({"Stalls"})));
        QCOMPARE(primary->now()["pendingUrgent"].toArray().size(), 1);
        primary->command("ack " + id);
        QVERIFY(primary->waitFor(
            [](const QJsonObject& s) { return s["pendingUrgent"].toArray().isEmpty(); }));
        QVERIFY(first->waitFor(seenBy({"Stalls", "FOH"})));
        QVERIFY(second->waitFor(seenBy({"Stalls", "FOH"})));
    }

    void aPrimaryKilledAndStartedAgainIsFoundAgainAndTheScreenGoesLiveAgain()
    {
        auto primary = station("FOH", "primary");
        auto secondary = station("Backstage", "secondary");
        QVERIFY(primary->start());
        QVERIFY(secondary->start());
        QVERIFY(secondary->waitFor([](const QJsonObject& s) { return connectedTo(s, "FOH"); }));

        primary->kill();
        // The readings stop being live (the lost-connection banner) and the search begins.
        QVERIFY(secondary->waitFor([](const QJsonObject& s) {
            return !s["live"].toBool() && s["status"] == "searching";
        }));
        // The last reading stays on the dimmed screen.
        QVERIFY(near(secondary->now(), "level", primaryReading, 0.5));
        QVERIFY(primary->start());
        QVERIFY(
            secondary->waitFor([](const QJsonObject& s) { return connectedTo(s, "FOH"); }, 30000));
    }

    void aSecondaryThatGoesBackToStandaloneUsesItsOwnInputsAgain()
    {
        auto primary = station("FOH", "primary");
        auto secondary = station("Backstage", "secondary");
        QVERIFY(primary->start());
        QVERIFY(secondary->start());
        QVERIFY(secondary->waitFor([](const QJsonObject& s) {
            return connectedTo(s, "FOH") && near(s, "level", primaryReading, 0.3);
        }));
        secondary->command("role standalone");
        QVERIFY(secondary->waitFor([](const QJsonObject& s) {
            return s["status"] == "off" && s["audioRunning"].toBool()
                && near(s, "level", ownReading, 0.3);
        }));
        QVERIFY(secondary->now()["live"].toBool());
        QVERIFY(primary->waitFor([](const QJsonObject& s) { return s["status"] == "sharing 0"; }));
    }
};

OSTREL_PULSE_TEST_MAIN(CrewStationsTest)
#include "CrewStationsTest.moc"
