#include "views/recordings/ReplayModel.h"

#include <algorithm>

#include "common/IsoDate.h"
#include "recording/SessionReplay.h"
#include "views/components/Theme.h"
#include "views/sessions/SessionText.h"

namespace ostrel {

ReplayModel::ReplayModel(QObject* parent) : QObject(parent) { }

ReplayModel::~ReplayModel()
{
    close();
}

void ReplayModel::setFolder(const QString& folder)
{
    if (folder == folder_) return;
    folder_ = folder;
    open();
}

void ReplayModel::setGraphDuration(double seconds)
{
    if (seconds == graphDuration_) return;
    graphDuration_ = seconds;
    emit graphDurationChanged();
}

void ReplayModel::open()
{
    if (folder_.isEmpty()) {
        setPlayer(nullptr, false);
        return;
    }
    const auto recording = Recording::read(folder_);
    if (!recording) {
        setPlayer(nullptr, false);
        return;
    }
    SessionPlayer::Options options;
    options.graphDuration = graphDuration_;
    setPlayer(SessionReplay::open(*recording, options), recording->hasAudio);
}

void ReplayModel::setPlayer(std::unique_ptr<SessionPlayer> player, bool hasAudio)
{
    // A new selection makes a new player; the one before stops playing.
    if (player_) player_->close();
    player_ = std::move(player);
    hasAudio_ = player_ && hasAudio;
    sortedCues_ = player_ ? player_->session().cues : std::vector<CueRecord> {};
    std::stable_sort(sortedCues_.begin(), sortedCues_.end(),
        [](const CueRecord& a, const CueRecord& b) { return a.start < b.start; });
    if (player_) {
        connect(
            player_.get(), &SessionPlayer::positionChanged, this, &ReplayModel::positionChanged);
        connect(
            player_.get(), &SessionPlayer::isPlayingChanged, this, &ReplayModel::isPlayingChanged);
        connect(player_.get(), &SessionPlayer::problemChanged, this, &ReplayModel::problemChanged);
        connect(player_.get(), &SessionPlayer::volumeChanged, this, &ReplayModel::volumeChanged);
        connect(player_.get(), &SessionPlayer::overviewChanged, this, [this] {
            trace_
                = player_->overview() ? levelTrace(player_->overview()->levels) : QList<QPointF> {};
            emit overviewChanged();
        });
    }
    trace_ = player_ && player_->overview() ? levelTrace(player_->overview()->levels)
                                            : QList<QPointF> {};
    emit playerChanged();
    emit problemChanged();
    emit positionChanged();
    emit isPlayingChanged();
    emit volumeChanged();
    emit overviewChanged();
}

QList<QPointF> ReplayModel::levelTrace(const std::vector<double>& levels)
{
    double low = 0.0;
    double high = 0.0;
    bool any = false;
    for (double level : levels) {
        if (!(level > 0.0)) continue;
        low = any ? std::min(low, level) : level;
        high = any ? std::max(high, level) : level;
        any = true;
    }
    if (levels.size() < 2 || !any) return {};
    const double span = std::max(high - low, 20.0);
    QList<QPointF> points;
    points.reserve(static_cast<qsizetype>(levels.size()));
    const double last = static_cast<double>(levels.size() - 1);
    for (size_t i = 0; i < levels.size(); ++i) {
        const double height = 0.9 * (std::max(levels[i], low) - low) / span;
        points.append({static_cast<double>(i) / last, 1.0 - height});
    }
    return points;
}

QString ReplayModel::title() const
{
    return player_ ? player_->session().name : QString();
}

QString ReplayModel::subtitle() const
{
    if (!player_) return {};
    const ShowSession& session = player_->session();
    QString text
        = QLocale().toString(IsoDate::toQDateTime(session.start).toLocalTime(), QLocale::LongFormat)
        + QStringLiteral(" \u00B7 ") + session.meterSetting + QStringLiteral(" weighting");
    if (session.microphoneCorrection)
        text += QStringLiteral(" \u00B7 corrected with ") + *session.microphoneCorrection;
    return text;
}

QString ReplayModel::currentCueNumber() const
{
    if (!player_) return {};
    const auto cues = player_->currentCues();
    return cues.empty() ? QString() : cues.front().number;
}

QString ReplayModel::currentCueName() const
{
    if (!player_) return {};
    const auto cues = player_->currentCues();
    return cues.empty() ? QStringLiteral("No cue running") : cues.front().name;
}

QString ReplayModel::moreRunning() const
{
    if (!player_) return {};
    const auto count = player_->currentCues().size();
    return count > 1 ? QStringLiteral("and %1 more running").arg(count - 1) : QString();
}

QString ReplayModel::positionText() const
{
    return SessionText::duration(player_ ? player_->position() : 0.0);
}

QString ReplayModel::durationText() const
{
    return SessionText::duration(player_ ? player_->duration() : 0.0);
}

QString ReplayModel::timeOfDay() const
{
    if (!player_) return {};
    return QLocale().toString(
        IsoDate::toQDateTime(player_->wallDate(player_->position())).toLocalTime().time(),
        QStringLiteral("HH:mm:ss"));
}

double ReplayModel::playhead() const
{
    if (!player_ || !(player_->duration() > 0.0)) return 0.0;
    return std::clamp(player_->position() / player_->duration(), 0.0, 1.0);
}

void ReplayModel::setVolume(double value)
{
    if (player_) player_->setVolume(static_cast<float>(std::clamp(value, 0.0, 1.0)));
}

QList<qreal> ReplayModel::cueMarks() const
{
    QList<qreal> marks;
    if (!player_ || !(player_->duration() > 0.0)) return marks;
    for (const auto& [id, seconds] : player_->cuePositions())
        marks.append(std::clamp(seconds / player_->duration(), 0.0, 1.0));
    std::sort(marks.begin(), marks.end());
    return marks;
}

QVariantList ReplayModel::cues() const
{
    QVariantList rows;
    if (!player_) return rows;
    const auto current = player_->currentCues();
    for (const CueRecord& cue : sortedCues_) {
        const bool running = std::any_of(current.begin(), current.end(),
            [&](const CueRecord& other) { return other.id == cue.id; });
        rows.append(QVariantMap {{QStringLiteral("number"), cue.number},
            {QStringLiteral("name"), cue.name}, {QStringLiteral("isCurrent"), running}});
    }
    return rows;
}

int ReplayModel::playheadColorRole() const
{
    return static_cast<int>(Theme::Role::red);
}

void ReplayModel::togglePlayback()
{
    if (player_) player_->togglePlayback();
}

void ReplayModel::seekFraction(double fraction)
{
    if (player_) player_->seek(std::clamp(fraction, 0.0, 1.0) * player_->duration());
}

void ReplayModel::jumpToCue(int index)
{
    if (player_ && index >= 0 && index < static_cast<int>(sortedCues_.size()))
        player_->jump(sortedCues_[static_cast<size_t>(index)]);
}

void ReplayModel::close()
{
    if (player_) player_->close();
}

} // namespace ostrel
