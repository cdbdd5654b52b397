#pragma once

// A crew station running as its own process (crew_station), read through the JSON line it
// prints whenever its screen changes, and driven through its standard input.
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSettings>
#include <QString>
#include <QTest>
#include <functional>
#include <map>

namespace ostrel::testsupport {

class StationProcess {
public:
    // `settings` are written to `folder`/NAME.ini before the station starts.
    StationProcess(const QString& folder, const QString& name, std::map<QString, QVariant> settings)
        : settingsPath_(folder + u'/' + name + QStringLiteral(".ini")),
          sessionsPath_(folder + u'/' + name + QStringLiteral("-sessions"))
    {
        QSettings store(settingsPath_, QSettings::IniFormat);
        store.clear();
        store.setValue("stationName", name);
        for (const auto& [key, value] : settings)
            store.setValue(key, value);
        store.sync();
        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    }
    ~StationProcess() { kill(); }

    bool start()
    {
        last_ = {};
        pending_.clear();
        process_.start(QStringLiteral(OSTREL_CREW_STATION), {settingsPath_, sessionsPath_});
        return process_.waitForStarted(10000);
    }
    void kill()
    {
        if (process_.state() == QProcess::NotRunning) return;
        process_.kill();
        process_.waitForFinished(5000);
    }
    void command(const QString& line)
    {
        process_.write((line + u'\n').toUtf8());
        process_.waitForBytesWritten(1000);
    }

    // Reads what has arrived; the newest line is what the station shows now.
    const QJsonObject& now()
    {
        pending_ += process_.readAllStandardOutput();
        qsizetype end = 0;
        while ((end = pending_.indexOf('\n')) >= 0) {
            const QJsonDocument line = QJsonDocument::fromJson(pending_.left(end));
            pending_.remove(0, end + 1);
            if (line.isObject()) last_ = line.object();
        }
        return last_;
    }
    bool waitFor(const std::function<bool(const QJsonObject&)>& condition, int ms = 20000)
    {
        return QTest::qWaitFor([&] { return condition(now()); }, ms);
    }

private:
    QString settingsPath_;
    QString sessionsPath_;
    QProcess process_;
    QByteArray pending_;
    QJsonObject last_;
};

} // namespace ostrel::testsupport
