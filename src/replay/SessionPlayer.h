#pragma once

// Replays a recorded show: its sound, and in step with it the recorded frames fed into a meter
// of its own, so the meter, graph and spectrum views work unchanged on old data. A seek rebuilds
// the meter as if the listener had played up to there. Lives as long as its replay view.
#include <atomic>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <QObject>
#include <QString>
#include <QTimer>
#include <QUuid>

#include "common/Date.h"
#include "measurement/LevelStatistics.h"
#include "model/MeterModel.h"
#include "replay/ReplayAudio.h"
#include "replay/SessionPlayerOptions.h"
#include "sessions/CueRecord.h"
#include "sessions/RecordingFrames.h"
#include "sessions/SessionOverview.h"
#include "sessions/ShowSession.h"

namespace ostrel {

class SessionPlayer : public QObject {
    Q_OBJECT
    Q_PROPERTY(double position READ position NOTIFY positionChanged)
    Q_PROPERTY(double duration READ duration NOTIFY durationChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY isPlayingChanged)
    Q_PROPERTY(bool hasOverview READ hasOverview NOTIFY overviewChanged)
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged)
    Q_PROPERTY(float volume READ volume WRITE setVolume NOTIFY volumeChanged)
    Q_PROPERTY(ostrel::MeterModel* meter READ meter CONSTANT)

public:
    using Options = SessionPlayerOptions;

    static constexpr double previousCueGrace = 2.2;
    static constexpr double nextCueLead = 0.2;
    static constexpr double endTolerance = 0.05;
    static constexpr double warmUpMargin = 1.0;

    static inline const QString framesUnreadable
        = QStringLiteral("This recording's measurements couldn't be read.");
    static inline const QString noAudio
        = QStringLiteral("This recording has no audio. Levels and spectrum still replay.");
    static inline const QString audioFailed
        = QStringLiteral("The audio couldn't be played. Levels and spectrum still replay.");

    // `frames` and `audio` are absent when the recording has none or they couldn't be opened.
    SessionPlayer(ShowSession session, std::optional<RecordingFrames> frames,
        std::unique_ptr<ReplayAudio> audio, Options options = {}, QObject* parent = nullptr);
    ~SessionPlayer() override;

    MeterModel* meter() { return &meter_; }
    const MeterModel& meterModel() const { return meter_; }
    const ShowSession& session() const { return session_; }
    double position() const { return position_; }
    double duration() const { return duration_; }
    bool isPlaying() const { return isPlaying_; }
    bool hasOverview() const { return overview_.has_value(); }
    const std::optional<SessionOverview>& overview() const { return overview_; }
    QString problem() const { return problem_; }
    float volume() const { return volume_; }
    const std::map<QUuid, double>& cuePositions() const { return cuePositions_; }

    void setVolume(float volume);
    void togglePlayback();
    void play();
    void pause();
    void skip(double seconds);
    void seek(double seconds);
    // Stops and gives up the overview being built; the view calls it when it goes.
    void close();
    // One step of the playing clock.
    void tick();

    std::vector<CueRecord> currentCues() const;
    std::optional<double> position(const CueRecord& cue) const;
    void jump(const CueRecord& cue);
    void jumpToNextCue();
    void jumpToPreviousCue();
    Date wallDate(double position) const;

    // The statistics of frames 0 ..< `index`, from the nearest checkpoint when there is one.
    LevelStatistics statistics(std::int64_t index);
    // Frames read by `statistics` so far: what a seek costs beyond the graph's warm-up.
    std::int64_t statisticsFramesRead() const { return statisticsFramesRead_; }

signals:
    void positionChanged();
    void durationChanged();
    void isPlayingChanged();
    void overviewChanged();
    void problemChanged();
    void volumeChanged();

private:
    struct Anchor {
        double position = 0.0;
        Date date;
    };

    void advance(double seconds);
    void startAudio();
    void stopPlayback();
    void startOverview();
    void setPosition(double value);
    void setIsPlaying(bool value);
    void setProblem(const QString& value);

    ShowSession session_;
    std::vector<CueRecord> sortedCues_;
    std::optional<RecordingFrames> frames_;
    std::unique_ptr<ReplayAudio> audio_;
    Options options_;
    MeterModel meter_;
    QTimer ticker_;

    double position_ = 0.0;
    double duration_ = 0.0;
    bool isPlaying_ = false;
    std::optional<SessionOverview> overview_;
    QString problem_;
    float volume_ = 1.0F;
    std::map<QUuid, double> cuePositions_;

    std::int64_t nextFrame_ = 0;
    double lastFedWallTime_ = -std::numeric_limits<double>::infinity();
    Anchor anchor_;
    std::shared_ptr<std::atomic<bool>> overviewCancelled_;
    std::int64_t statisticsFramesRead_ = 0;
};

} // namespace ostrel
