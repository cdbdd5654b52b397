#pragma once

// Reads the crew's frames from a byte stream: a header, then a body of the length it announces.
// The owner reads at most `wanted()` bytes at a time and hands them in, so nothing beyond the
// current frame is ever buffered here, and a body's buffer never grows past its announced,
// accepted length. A header announcing more than the limit breaks the stream for good, since its
// place in the stream is lost.
#include <cstdint>

#include <QByteArray>
#include <QByteArrayView>

namespace ostrel {

class CrewFrameReader {
public:
    enum class Outcome {
        // The current header or body is not complete yet; a zero-length frame is passed over.
        needsMore,
        // A body is complete: `takeBody`.
        bodyComplete,
        // The header announced too much: read nothing more from this stream.
        broken,
    };

    // Bytes still missing from the current header or body; 0 once broken.
    qsizetype wanted() const;
    // At most `wanted()` bytes; anything beyond that is a misuse and breaks the stream.
    Outcome append(QByteArrayView bytes);
    QByteArray takeBody();

    bool isBroken() const { return isBroken_; }
    // What the reader holds now, and the room it has reserved.
    qsizetype bufferedBytes() const { return header_.size() + body_.size(); }
    qsizetype reservedBytes() const { return header_.capacity() + body_.capacity(); }
    // The body length of the frame being read; 0 while reading a header.
    std::uint32_t announcedLength() const { return bodyLength_; }

private:
    Outcome appendToHeader(QByteArrayView bytes);
    Outcome appendToBody(QByteArrayView bytes);

    QByteArray header_;
    QByteArray body_;
    bool isReadingBody_ = false;
    std::uint32_t bodyLength_ = 0;
    bool isBroken_ = false;
    bool hasCompleteBody_ = false;
};

} // namespace ostrel
