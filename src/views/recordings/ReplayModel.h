#pragma once

// The replay side of the Recordings window: one recording's player, and everything its header,
// current cue, overview strip, transport bar and cue list show. The level views take the
// player's own meter, never the live one.
#include <memory>

#include <QList>
#include <QObject>
#include <QPointF>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include "replay/SessionPlayer.h"

namespace ostrel {

class ReplayModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString folder READ folder WRITE setFolder NOTIFY playerChanged)
    Q_PROPERTY(
        double graphDuration READ graphDuration WRITE setGraphDuration NOTIFY graphDurationChanged)
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY playerChanged)
    Q_PROPERTY(ostrel::MeterModel* meter READ meter NOTIFY playerChanged)
    Q_PROPERTY(QString title READ title NOTIFY playerChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY playerChanged)
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged)
    Q_PROPERTY(bool hasAudio READ hasAudio NOTIFY playerChanged)
    Q_PROPERTY(QString currentCueNumber READ currentCueNumber NOTIFY positionChanged)
    Q_PROPERTY(QString currentCueName READ currentCueName NOTIFY positionChanged)
    Q_PROPERTY(QString moreRunning READ moreRunning NOTIFY positionChanged)
    Q_PROPERTY(QString positionText READ positionText NOTIFY positionChanged)
    Q_PROPERTY(QString durationText READ durationText NOTIFY playerChanged)
    Q_PROPERTY(QString timeOfDay READ timeOfDay NOTIFY positionChanged)
    Q_PROPERTY(double playhead READ playhead NOTIFY positionChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY isPlayingChanged)
    Q_PROPERTY(QString playSymbol READ playSymbol NOTIFY isPlayingChanged)
    Q_PROPERTY(QString playTitle READ playTitle NOTIFY isPlayingChanged)
    Q_PROPERTY(double volume READ volume WRITE setVolume NOTIFY volumeChanged)
    Q_PROPERTY(QList<QPointF> levelTrace READ levelTrace NOTIFY overviewChanged)
    Q_PROPERTY(QList<qreal> cueMarks READ cueMarks NOTIFY playerChanged)
    Q_PROPERTY(QVariantList cues READ cues NOTIFY positionChanged)
    Q_PROPERTY(int playheadColorRole READ playheadColorRole CONSTANT)

public:
    explicit ReplayModel(QObject* parent = nullptr);
    ~ReplayModel() override;

    // Replays over a player made elsewhere, as tests do.
    void setPlayer(std::unique_ptr<SessionPlayer> player, bool hasAudio);

    QString folder() const { return folder_; }
    void setFolder(const QString& folder);
    double graphDuration() const { return graphDuration_; }
    void setGraphDuration(double seconds);

    // Points of the level trace in fractions of the strip, left to right and top down: the
    // louder, the higher. Empty with fewer than two levels or none above 0 dB.
    static QList<QPointF> levelTrace(const std::vector<double>& levels);

    bool isOpen() const { return player_ != nullptr; }
    MeterModel* meter() const { return player_ ? player_->meter() : nullptr; }
    QString title() const;
    QString subtitle() const;
    QString problem() const { return player_ ? player_->problem() : QString(); }
    bool hasAudio() const { return hasAudio_; }
    QString currentCueNumber() const;
    QString currentCueName() const;
    QString moreRunning() const;
    QString positionText() const;
    QString durationText() const;
    QString timeOfDay() const;
    double playhead() const;
    bool isPlaying() const { return player_ && player_->isPlaying(); }
    QString playSymbol() const
    {
        return isPlaying() ? QStringLiteral("pause.fill") : QStringLiteral("play.fill");
    }
    QString playTitle() const
    {
        return isPlaying() ? QStringLiteral("Pause") : QStringLiteral("Play");
    }
    double volume() const { return player_ ? player_->volume() : 1.0; }
    void setVolume(double value);
    QList<QPointF> levelTrace() const { return trace_; }
    QList<qreal> cueMarks() const;
    QVariantList cues() const;
    int playheadColorRole() const;

    Q_INVOKABLE void togglePlayback();
    Q_INVOKABLE void back()
    {
        if (player_) player_->skip(-10.0);
    }
    Q_INVOKABLE void forward()
    {
        if (player_) player_->skip(10.0);
    }
    Q_INVOKABLE void previousCue()
    {
        if (player_) player_->jumpToPreviousCue();
    }
    Q_INVOKABLE void nextCue()
    {
        if (player_) player_->jumpToNextCue();
    }
    // A click or drag on the strip, as a fraction of its width.
    Q_INVOKABLE void seekFraction(double fraction);
    Q_INVOKABLE void jumpToCue(int index);
    Q_INVOKABLE void close();

signals:
    void playerChanged();
    void graphDurationChanged();
    void problemChanged();
    void positionChanged();
    void isPlayingChanged();
    void volumeChanged();
    void overviewChanged();

private:
    void open();

    QString folder_;
    double graphDuration_ = 60.0;
    std::unique_ptr<SessionPlayer> player_;
    std::vector<CueRecord> sortedCues_; // the session's cues by start, for the cue list
    bool hasAudio_ = false;
    QList<QPointF> trace_;
};

} // namespace ostrel
