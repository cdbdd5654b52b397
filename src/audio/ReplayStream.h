#pragma once

// The decoded sound as the audio sink pulls it: 32-bit float mono bytes straight from the
// decoder, decoded as the sink asks, so a long show is never held in memory.
#include <QIODevice>

#include "audio/ReplayDecoder.h"

namespace ostrel {

class ReplayStream : public QIODevice {
    Q_OBJECT

public:
    explicit ReplayStream(ReplayDecoder& decoder, QObject* parent = nullptr);

    bool isSequential() const override { return true; }
    bool atEnd() const override { return hasEnded_; }

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    ReplayDecoder& decoder_;
    bool hasEnded_ = false;
};

} // namespace ostrel
