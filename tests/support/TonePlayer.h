#pragma once

// Plays a 1 kHz test tone into the private PulseAudio server's null sink for the length of a
// test. The player gets a one-second buffer so that a loaded machine cannot starve it into
// gaps, which would read as a quieter tone.
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace ostrel::testsupport {

class TonePlayer {
public:
    // Empty on success, else what went wrong.
    // `waver` drops the level by that many dB every other half second.
    QString start(const QString& toneTool, double amplitude, int seconds, double waver = 0.0)
    {
        stop();
        const QString tone = folder_.filePath("tone.wav");
        QProcess generator;
        generator.start(toneTool,
            {"--frequency", "1000", "--amplitude", QString::number(amplitude), "--seconds",
                QString::number(seconds), "--rate", "48000", "--waver", QString::number(waver),
                "--output", tone});
        if (!generator.waitForFinished(20000) || generator.exitCode() != 0)
            return "ostrel-tone failed: " + QString::fromUtf8(generator.readAllStandardError());
        player_.start("paplay", {"--latency-msec=1000", "--device=testsink", tone});
        if (!player_.waitForStarted(5000)) return "paplay did not start: " + player_.errorString();
        return {};
    }

    void stop()
    {
        if (player_.state() == QProcess::NotRunning) return;
        player_.kill();
        player_.waitForFinished(5000);
    }

    ~TonePlayer() { stop(); }

private:
    QTemporaryDir folder_;
    QProcess player_;
};

} // namespace ostrel::testsupport
