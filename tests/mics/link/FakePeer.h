#pragma once

// A fake receiver run as its own process, as the tests start it: its lines of output are kept
// and can be waited for.
#include <QProcess>
#include <QStringList>
#include <QTest>

namespace ostrel::test {

class FakePeer {
public:
    FakePeer(const QString& program, const QStringList& arguments)
    {
        process_.setProgram(program);
        process_.setArguments(arguments);
        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        QObject::connect(&process_, &QProcess::readyReadStandardOutput, [this] {
            while (process_.canReadLine())
                lines_.append(QString::fromUtf8(process_.readLine()).trimmed());
        });
        process_.start();
    }
    ~FakePeer()
    {
        process_.kill();
        process_.waitForFinished(3000);
    }

    // The rest of the first line that begins with `prefix`, waiting up to `timeoutMs`.
    QString waitFor(const QString& prefix, int timeoutMs = 10000)
    {
        QString found;
        const bool seen = QTest::qWaitFor(
            [&] {
                for (const QString& line : lines_) {
                    if (line.startsWith(prefix)) {
                        found = line.mid(prefix.size()).trimmed();
                        // Found but empty is not null: "not seen" is.
                        if (found.isNull()) found = QStringLiteral("");
                        return true;
                    }
                }
                return false;
            },
            timeoutMs);
        return seen ? found : QString();
    }
    int count(const QString& prefix) const
    {
        int n = 0;
        for (const QString& line : lines_)
            n += line.startsWith(prefix) ? 1 : 0;
        return n;
    }
    void write(const QByteArray& line) { process_.write(line + '\n'); }
    const QStringList& lines() const { return lines_; }
    QProcess& process() { return process_; }

private:
    QProcess process_;
    QStringList lines_;
};

} // namespace ostrel::test
