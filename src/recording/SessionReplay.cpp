#include "recording/SessionReplay.h"

#include "audio/FFmpegReplayAudio.h"
#include "audio/ReplayLog.h"
#include "recording/RecordingFile.h"

namespace ostrel::SessionReplay {

std::unique_ptr<SessionPlayer> open(
    const Recording& recording, SessionPlayer::Options options, QObject* parent)
{
    std::optional<RecordingFrames> frames;
    if (recording.hasMeasurements) {
        auto opened = RecordingFile::open(recording.framesPath());
        frames = std::move(opened.frames);
        // The player says the measurements couldn't be read; the log keeps why.
        if (!frames) qCWarning(ostrelReplay, "%s", qUtf8Printable(opened.error));
    }

    std::unique_ptr<ReplayAudio> audio;
    if (recording.hasAudio) {
        auto opened = FFmpegReplayAudio::open(recording.audioPath());
        if (auto* sound = std::get_if<std::unique_ptr<FFmpegReplayAudio>>(&opened))
            audio = std::move(*sound);
        else
            qCWarning(
                ostrelReplay, "Couldn't open audio: %s", qUtf8Printable(std::get<QString>(opened)));
    }
    return std::make_unique<SessionPlayer>(
        recording.session, std::move(frames), std::move(audio), std::move(options), parent);
}

} // namespace ostrel::SessionReplay
