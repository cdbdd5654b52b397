#pragma once

// The private avahi-daemon of the tests and fake Dante devices announced through it with
// avahi-publish, each killed by its own process id.
#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTest>
#include <memory>
#include <vector>

namespace ostrel::testsupport {

// Runs the service script (start, stop, stop-daemon, start-daemon) on `folder`.
inline bool mdnsScript(const QString& command, const QString& folder = OSTREL_MDNS_DIR)
{
    QProcess script;
    script.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    script.start(QStringLiteral(OSTREL_MDNS_SCRIPT), {command, folder});
    return script.waitForFinished(30000) && script.exitStatus() == QProcess::NormalExit
        && script.exitCode() == 0;
}

// Starts the daemon again if a test stopped it, then waits until no Dante device of an earlier
// test is announced any more (a withdrawn one lingers about a second in the daemon's cache).
inline bool settleDevices()
{
    if (QProcess::execute(QStringLiteral("avahi-daemon"), {QStringLiteral("-c")}) != 0
        && !mdnsScript(QStringLiteral("start-daemon")))
        return false;
    return QTest::qWaitFor(
        [] {
            QProcess browse;
            browse.start(QStringLiteral("avahi-browse"),
                {QStringLiteral("-pt"), QStringLiteral("_netaudio-arc._udp")});
            return browse.waitForFinished(10000) && browse.readAll().trimmed().isEmpty();
        },
        15000);
}

// One fake device: avahi-publish for as long as the object lives or until killed.
class FakeDevice {
public:
    FakeDevice(const QString& name, const QStringList& txt, const QStringList& options = {},
        const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment())
    {
        process_.setProcessEnvironment(environment);
        process_.setProcessChannelMode(QProcess::MergedChannels);
        process_.start(QStringLiteral("avahi-publish"),
            QStringList {QStringLiteral("-s")} + options
                + QStringList {name, QStringLiteral("_netaudio-arc._udp"), QStringLiteral("4440")}
                + txt);
    }
    // Through the shell, for TXT strings whose bytes are not text: `command` is the rest of the
    // avahi-publish command line, with printf escapes allowed inside $(printf '...').
    explicit FakeDevice(const QString& shellArguments)
    {
        process_.setProcessChannelMode(QProcess::MergedChannels);
        process_.start(QStringLiteral("sh"),
            {QStringLiteral("-c"), QStringLiteral("exec avahi-publish -s ") + shellArguments});
    }
    ~FakeDevice() { kill(); }

    // Until the daemon has taken the announcement (after its probing, about a second).
    bool waitUntilEstablished()
    {
        return QTest::qWaitFor(
            [this] {
                output_ += process_.readAll();
                return output_.contains("Established");
            },
            10000);
    }
    void kill()
    {
        if (process_.state() == QProcess::NotRunning) return;
        process_.kill();
        process_.waitForFinished(5000);
    }
    QByteArray output() const { return output_; }

private:
    QProcess process_;
    QByteArray output_;
};

} // namespace ostrel::testsupport
