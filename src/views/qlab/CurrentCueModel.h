#pragma once

// What the current-cue place shows: the first running cue with its timing and the others, "No
// cue playing", or while QLab is not connected why not and what can help. Times move by
// themselves while a cue runs.
#include <functional>
#include <optional>

#include <QPointer>
#include <QString>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include "common/Date.h"
#include "qlab/QLabClientState.h"
#include "qlab/client/QLabClient.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class CurrentCueModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::QLabClient* qlab READ qlab WRITE setQlab NOTIFY qlabChanged)
    Q_PROPERTY(bool showsUnavailable READ showsUnavailable NOTIFY cueChanged)
    Q_PROPERTY(QString unavailableText READ unavailableText NOTIFY cueChanged)
    Q_PROPERTY(QString unavailableAction READ unavailableAction NOTIFY cueChanged)
    Q_PROPERTY(bool hasUnavailableAction READ hasUnavailableAction NOTIFY cueChanged)
    Q_PROPERTY(bool hasCue READ hasCue NOTIFY cueChanged)
    Q_PROPERTY(QString noCueText READ noCueText CONSTANT)
    Q_PROPERTY(QString cueId READ cueId NOTIFY cueChanged)
    Q_PROPERTY(QString number READ number NOTIFY cueChanged)
    Q_PROPERTY(QString name READ name NOTIFY cueChanged)
    Q_PROPERTY(bool hasOthers READ hasOthers NOTIFY cueChanged)
    Q_PROPERTY(QString othersText READ othersText NOTIFY cueChanged)
    Q_PROPERTY(QString othersCountText READ othersCountText NOTIFY cueChanged)
    Q_PROPERTY(QString playingText READ playingText NOTIFY timingChanged)
    Q_PROPERTY(QString elapsedText READ elapsedText NOTIFY timingChanged)
    Q_PROPERTY(QString remainingText READ remainingText NOTIFY timingChanged)
    Q_PROPERTY(bool hasRemaining READ hasRemaining NOTIFY timingChanged)

public:
    // How often the running times are redrawn.
    static constexpr int defaultRedrawMs = 250;

    enum class Action { none, reconnect, openSettings };

    QLabClient* qlab() const { return qlab_.data(); }
    void setQlab(QLabClient* value) { setSource(qlab_, value, &CurrentCueModel::qlabChanged); }

    explicit CurrentCueModel(QObject* parent = nullptr);

    static QString unavailableText(QLabClientState state);
    static Action unavailableAction(QLabClientState state);
    // Where the present date comes from; tests set their own and call `tick`.
    void setClock(std::function<Date()> clock);
    void setRedrawInterval(int milliseconds) { redraw_.setInterval(milliseconds); }
    bool isRedrawing() const { return redraw_.isActive(); }
    Q_INVOKABLE void tick() { updateTiming(); }
    // The unavailable form's button: "Reconnect" asks QLab again; "QLab Settings…" is for the
    // window that shows the settings.
    Q_INVOKABLE void performUnavailableAction();

    bool showsUnavailable() const { return state_ != QLabClientState::connected; }
    QString unavailableText() const { return unavailableText(state_); }
    QString unavailableAction() const;
    bool hasUnavailableAction() const;
    bool hasCue() const { return cue_.has_value(); }
    QString noCueText() const { return QStringLiteral("No cue playing"); }
    QString cueId() const { return cue_ ? cue_->id : QString(); }
    QString number() const { return cue_ ? cue_->number : QString(); }
    QString name() const { return cue_ ? cue_->displayName() : QString(); }
    bool hasOthers() const { return !others_.empty(); }
    QString othersText() const;
    QString othersCountText() const;
    QString playingText() const { return playingText_; }
    QString elapsedText() const { return elapsedText_; }
    QString remainingText() const { return remainingText_; }
    bool hasRemaining() const { return !remainingText_.isEmpty(); }

signals:
    void qlabChanged();
    void cueChanged();
    void timingChanged();
    // "QLab Settings…" was pressed.
    void settingsRequested();

protected:
    void attach() override;
    void refresh() override;

private:
    void updateTiming();

    QPointer<QLabClient> qlab_;
    std::function<Date()> clock_;
    QTimer redraw_;
    QLabClientState state_ = QLabClientState::disconnected;
    std::optional<QLabCue> cue_;
    std::vector<QLabCue> others_;
    QString playingText_;
    QString elapsedText_;
    QString remainingText_;
};

} // namespace ostrel
