#pragma once

// Termination by signal (SIGTERM from a session manager or `kill`, Ctrl-C, a closed terminal)
// becomes an ordinary quit, so that the model's termination path runs as for a closed window.
#include <QObject>
#include <QSocketNotifier>
#include <memory>

namespace ostrel {

class UnixSignals : public QObject {
    Q_OBJECT

public:
    // Once per process; the handler only writes a byte, the event loop does the rest.
    explicit UnixSignals(QObject* parent = nullptr);
    ~UnixSignals() override;

    bool isInstalled() const { return notifier_ != nullptr; }

signals:
    void received(int signalNumber);

private:
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace ostrel
