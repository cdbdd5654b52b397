#include "replay/SessionPlayer.h"

#include <algorithm>
#include <cmath>

#include <QCoreApplication>
#include <QMetaObject>
#include <QPointer>
#include <QThreadPool>

namespace ostrel {

namespace {

double secondsAfterStart(const ShowSession& session, Date date)
{
    return secondsBetween(session.start, date);
}

QString markerLabel(const CueRecord& cue)
{
    return cue.number.isEmpty() ? cue.name : cue.number;
}

} // namespace

SessionPlayer::SessionPlayer(ShowSession session, std::optional<RecordingFrames> frames,
    std::unique_ptr<ReplayAudio> audio, Options options, QObject* parent)
    : QObject(parent),
      session_(std::move(session)),
      frames_(std::move(frames)),
      audio_(std::move(audio)),
      options_(std::move(options))
{
    meter_.setGraphDuration(options_.graphDuration);
    sortedCues_ = session_.cues;
    std::stable_sort(sortedCues_.begin(), sortedCues_.end(),
        [](const CueRecord& a, const CueRecord& b) { return a.start < b.start; });

    duration_ = std::max(frames_ ? frames_->duration() : 0.0, audio_ ? audio_->duration() : 0.0);
    if (!frames_)
        problem_ = framesUnreadable;
    else if (!audio_)
        problem_ = noAudio;

    ticker_.setInterval(static_cast<int>(std::lround(options_.tickSeconds * 1000.0)));
    connect(&ticker_, &QTimer::timeout, this, &SessionPlayer::tick);

    seek(0.0);
    for (const CueRecord& cue : sortedCues_) {
        if (const auto seconds = position(cue)) cuePositions_[cue.id] = *seconds;
    }
    if (frames_) startOverview();
}

SessionPlayer::~SessionPlayer()
{
    if (overviewCancelled_) overviewCancelled_->store(true);
    if (audio_) audio_->stop();
}

void SessionPlayer::startOverview()
{
    auto cancelled = std::make_shared<std::atomic<bool>>(false);
    overviewCancelled_ = cancelled;
    // The build reads its own copy of the frames; the bytes are shared and never written.
    auto build = [frames = *frames_, cancelled] {
        return SessionOverview::build(frames, [cancelled] { return cancelled->load(); });
    };
    auto store = [this, cancelled](SessionOverview overview) {
        if (cancelled->load()) return;
        overview_ = std::move(overview);
        emit overviewChanged();
    };
    if (options_.runInBackground) {
        options_.runInBackground(std::move(build), std::move(store));
        return;
    }
    QPointer<SessionPlayer> self(this);
    QThreadPool::globalInstance()->start(
        [self, build = std::move(build), store = std::move(store)]() mutable {
            auto overview = std::make_shared<SessionOverview>(build());
            // Posted to the application, which lives on the main thread as the player does; the
            // player is looked at only there, and may have gone by then.
            QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [self, store = std::move(store), overview] {
                    if (self) store(std::move(*overview));
                },
                Qt::QueuedConnection);
        });
}

void SessionPlayer::setVolume(float volume)
{
    if (audio_) audio_->setVolume(volume);
    if (volume_ == volume) return;
    volume_ = volume;
    emit volumeChanged();
}

void SessionPlayer::togglePlayback()
{
    if (isPlaying_)
        pause();
    else
        play();
}

void SessionPlayer::play()
{
    if (isPlaying_ || !(duration_ > 0.0)) return;
    if (position_ >= duration_ - endTolerance) seek(0.0);
    setIsPlaying(true);
    anchor_ = {position_, options_.now()};
    startAudio();
    if (options_.runsTicker) ticker_.start();
}

void SessionPlayer::pause()
{
    if (!isPlaying_) return;
    tick();
    stopPlayback();
}

void SessionPlayer::close()
{
    pause();
    if (overviewCancelled_) overviewCancelled_->store(true);
}

void SessionPlayer::skip(double seconds)
{
    seek(position_ + seconds);
}

void SessionPlayer::seek(double seconds)
{
    const double target = std::clamp(seconds, 0.0, duration_);
    meter_.resetAll();
    setPosition(target);
    anchor_ = {target, options_.now()};
    if (!frames_ || frames_->count() == 0) return;

    // The meter needs only as much history as its graph shows, plus a second.
    const auto last = frames_->lastIndexAtOrBefore(target - meter_.graphDuration() - warmUpMargin);
    const std::int64_t start = last ? *last + 1 : 0;
    meter_.restoreStatistics(statistics(start));
    nextFrame_ = start;
    lastFedWallTime_ = start > 0 ? frames_->wallTime(start - 1).value_or(0.0)
                                 : -std::numeric_limits<double>::infinity();
    advance(target);
    if (isPlaying_) startAudio();
}

void SessionPlayer::advance(double seconds)
{
    if (!frames_) return;
    while (nextFrame_ < frames_->count()) {
        if (*frames_->audioTime(nextFrame_) > seconds) return;
        const auto frame = frames_->frame(nextFrame_, true);
        const Date frameDate = addingSeconds(session_.start, frame->wallTime);
        for (const CueRecord& cue : sortedCues_) {
            const double cueTime = secondsAfterStart(session_, cue.start);
            if (lastFedWallTime_ < cueTime && cueTime <= frame->wallTime)
                meter_.addMarker(markerLabel(cue), cue.start);
        }
        meter_.ingest(frame->interval, frameDate);
        lastFedWallTime_ = frame->wallTime;
        ++nextFrame_;
    }
}

void SessionPlayer::startAudio()
{
    if (!audio_ || position_ >= audio_->duration()) return;
    // Without sound the show plays on, on the wall clock.
    if (!audio_->play(position_)) setProblem(audioFailed);
}

void SessionPlayer::tick()
{
    if (!isPlaying_) return;
    const Date now = options_.now();
    double next = 0.0;
    const auto heard = audio_ ? audio_->currentSeconds() : std::nullopt;
    if (heard && *heard < audio_->duration()) {
        // The sound's clock is the master while there is sound.
        next = *heard;
        anchor_ = {next, now};
    } else {
        next = anchor_.position + secondsBetween(anchor_.date, now);
    }
    if (next >= duration_) {
        advance(duration_);
        setPosition(duration_);
        stopPlayback();
        return;
    }
    advance(next);
    setPosition(next);
}

void SessionPlayer::stopPlayback()
{
    if (!isPlaying_) return;
    setIsPlaying(false);
    ticker_.stop();
    if (audio_) audio_->stop();
}

LevelStatistics SessionPlayer::statistics(std::int64_t index)
{
    LevelStatistics result;
    if (!frames_) return result;
    const std::int64_t end = std::min<std::int64_t>(index, frames_->count());
    std::int64_t from = 0;
    if (overview_ && !overview_->checkpoints.empty()) {
        const auto last = static_cast<std::int64_t>(overview_->checkpoints.size()) - 1;
        const std::int64_t k = std::min(index / SessionOverview::checkpointSpacing, last);
        result = overview_->checkpoints[static_cast<std::size_t>(k)];
        from = k * SessionOverview::checkpointSpacing;
    }
    // Without the overview, while it is being built, this reads every frame before `index`.
    for (std::int64_t i = from; i < end; ++i) {
        const auto frame = frames_->frame(i, false);
        ++statisticsFramesRead_;
        if (frame->interval.sampleCount == 0) continue;
        result.add(frame->interval);
    }
    return result;
}

Date SessionPlayer::wallDate(double seconds) const
{
    if (frames_) {
        if (const auto index = frames_->lastIndexAtOrBefore(seconds)) {
            return addingSeconds(session_.start,
                *frames_->wallTime(*index) + (seconds - *frames_->audioTime(*index)));
        }
    }
    return addingSeconds(session_.start, seconds);
}

std::vector<CueRecord> SessionPlayer::currentCues() const
{
    const Date now = wallDate(position_);
    std::vector<CueRecord> result;
    for (const CueRecord& cue : sortedCues_) {
        if (cue.start <= now && (!cue.end || now < *cue.end)) result.push_back(cue);
    }
    return result;
}

std::optional<double> SessionPlayer::position(const CueRecord& cue) const
{
    if (!frames_) return std::nullopt;
    const double wall = secondsAfterStart(session_, cue.start);
    const auto index = frames_->firstIndexAtOrAfterWallTime(wall);
    if (!index) return std::nullopt;
    return std::max(0.0, *frames_->audioTime(*index) - (*frames_->wallTime(*index) - wall));
}

void SessionPlayer::jump(const CueRecord& cue)
{
    if (const auto seconds = position(cue)) seek(*seconds);
}

void SessionPlayer::jumpToNextCue()
{
    // The lead keeps a jump from landing on the cue the last jump reached.
    const Date from = wallDate(position_ + nextCueLead);
    const auto next = std::find_if(sortedCues_.begin(), sortedCues_.end(),
        [from](const CueRecord& cue) { return cue.start > from; });
    if (next != sortedCues_.end()) jump(*next);
}

void SessionPlayer::jumpToPreviousCue()
{
    const Date from = wallDate(position_ + nextCueLead);
    const auto passedEnd = std::find_if(sortedCues_.begin(), sortedCues_.end(),
        [from](const CueRecord& cue) { return cue.start > from; });
    const auto passed = passedEnd - sortedCues_.begin();
    if (passed == 0) {
        seek(0.0);
        return;
    }
    const CueRecord& last = *(passedEnd - 1);
    // Well into a cue, "previous" means the start of the cue in progress.
    if (secondsBetween(last.start, from) > previousCueGrace)
        jump(last);
    else if (passed >= 2)
        jump(*(passedEnd - 2));
    else
        seek(0.0);
}

void SessionPlayer::setPosition(double value)
{
    if (position_ == value) return;
    position_ = value;
    emit positionChanged();
}

void SessionPlayer::setIsPlaying(bool value)
{
    if (isPlaying_ == value) return;
    isPlaying_ = value;
    emit isPlayingChanged();
}

void SessionPlayer::setProblem(const QString& value)
{
    if (problem_ == value) return;
    problem_ = value;
    emit problemChanged();
}

} // namespace ostrel
