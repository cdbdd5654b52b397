#include "network/CrewFrameReader.h"

#include <algorithm>

#include "network/CrewFraming.h"

namespace ostrel {

qsizetype CrewFrameReader::wanted() const
{
    if (isBroken_ || hasCompleteBody_) return 0;
    if (isReadingBody_) return static_cast<qsizetype>(bodyLength_) - body_.size();
    return static_cast<qsizetype>(CrewFraming::headerSize) - header_.size();
}

CrewFrameReader::Outcome CrewFrameReader::append(QByteArrayView bytes)
{
    if (isBroken_ || bytes.size() > wanted()) {
        isBroken_ = true;
        return Outcome::broken;
    }
    if (bytes.isEmpty()) return Outcome::needsMore;
    return isReadingBody_ ? appendToBody(bytes) : appendToHeader(bytes);
}

CrewFrameReader::Outcome CrewFrameReader::appendToHeader(QByteArrayView bytes)
{
    header_.append(bytes);
    if (static_cast<std::size_t>(header_.size()) < CrewFraming::headerSize)
        return Outcome::needsMore;
    const auto length = CrewFraming::length(header_);
    header_.clear();
    if (!length) {
        isBroken_ = true;
        return Outcome::broken;
    }
    // A zero-length frame carries nothing: straight on to the next header.
    if (*length == 0) return Outcome::needsMore;
    isReadingBody_ = true;
    bodyLength_ = *length;
    return Outcome::needsMore;
}

CrewFrameReader::Outcome CrewFrameReader::appendToBody(QByteArrayView bytes)
{
    const qsizetype needed = body_.size() + bytes.size();
    if (needed > body_.capacity()) {
        // Grow as the bytes come, never past the announced length: a peer that announces 4 MiB
        // and sends one byte costs one byte's room, not 4 MiB.
        const qsizetype doubled = std::max<qsizetype>(needed, body_.capacity() * 2);
        body_.reserve(std::min<qsizetype>(doubled, static_cast<qsizetype>(bodyLength_)));
    }
    body_.append(bytes);
    if (body_.size() < static_cast<qsizetype>(bodyLength_)) return Outcome::needsMore;
    hasCompleteBody_ = true;
    return Outcome::bodyComplete;
}

QByteArray CrewFrameReader::takeBody()
{
    if (!hasCompleteBody_) return {};
    QByteArray body = std::move(body_);
    body_ = QByteArray();
    hasCompleteBody_ = false;
    isReadingBody_ = false;
    bodyLength_ = 0;
    return body;
}

} // namespace ostrel
