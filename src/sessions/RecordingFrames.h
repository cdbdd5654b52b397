#pragma once

// The measurements of a recorded show, read in place from "measurements.ostrel": frames by
// index, and the searches by time that replay seeks with. Copies share the bytes, so an overview
// can be built from its own copy on another thread.
#include <memory>
#include <optional>

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include "sessions/RecordedFrame.h"

namespace ostrel {

class RecordingFrames {
public:
    // Over bytes in memory; nothing when the header is not this program's.
    static std::optional<RecordingFrames> fromBytes(QByteArray bytes);
    // Over bytes that `owner` keeps alive, such as a mapped file.
    static std::optional<RecordingFrames> fromMapping(
        std::shared_ptr<const void> owner, QByteArrayView bytes);
    // What the user reads when a file's header is not this program's.
    static QString corruptFileError(const QString& fileName);

    // Whole frames only: a last frame cut short by a crash is not counted.
    qsizetype count() const { return count_; }
    QByteArrayView data() const { return data_; }

    // Each is nothing for an index outside 0 ..< count. The times read 8 bytes and decode
    // nothing else.
    std::optional<RecordedFrame> frame(qsizetype index, bool includeSpectrum) const;
    std::optional<double> audioTime(qsizetype index) const;
    std::optional<double> wallTime(qsizetype index) const;

    // Binary searches that rely on the times growing with the index: the audio time always
    // does, the wall time unless the clock was set back during the show.
    // The last frame whose audio time is at or before `seconds`; of equal times, the last.
    std::optional<qsizetype> lastIndexAtOrBefore(double seconds) const;
    // The first frame whose wall time is at or after `seconds`.
    std::optional<qsizetype> firstIndexAtOrAfterWallTime(double seconds) const;
    // The audio time of the last frame, or 0 without frames.
    double duration() const;

private:
    RecordingFrames(std::shared_ptr<const void> owner, QByteArrayView data);
    double timeAt(qsizetype index, qsizetype fieldOffset) const;

    std::shared_ptr<const void> owner_; // keeps the mapping or the buffer alive
    QByteArrayView data_;
    qsizetype count_ = 0;
};

} // namespace ostrel
