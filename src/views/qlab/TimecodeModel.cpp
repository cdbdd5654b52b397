#include "views/qlab/TimecodeModel.h"

#include <QStringList>
#include <chrono>

#include "qlab/QLabCueTimecode.h"

namespace ostrel {

TimecodeModel::TimecodeModel(QObject* parent)
    : ViewModel(parent), clock_([] { return std::chrono::system_clock::now(); })
{
    redraw_.setInterval(defaultRedrawMs);
    connect(&redraw_, &QTimer::timeout, this, &TimecodeModel::updateValue);
    refresh();
}

QString TimecodeModel::details(const QLabCue& cue, TimecodeRate fallbackRate)
{
    QStringList parts;
    if (const auto reported = cue.reportedTimecodeRate())
        parts << QString::fromUtf8(TimecodeRates::title(*reported));
    else
        parts << QString::fromUtf8(TimecodeRates::title(fallbackRate)) + " (assumed)";
    if (const auto settings = timecodeSettings(cue, fallbackRate)) {
        if (const auto output = settings->outputTitle()) parts << QString::fromUtf8(*output);
    }
    if (cue.isPaused) parts << QStringLiteral("Paused");
    return parts.join(QStringLiteral(" \u00B7 "));
}

QString TimecodeModel::value(const QLabCue& cue, Date at, TimecodeRate fallbackRate)
{
    const auto timecode = currentTimecode(cue, at, fallbackRate);
    return timecode ? QString::fromStdString(timecode->formatted()) : QStringLiteral("--:--:--:--");
}

void TimecodeModel::setClock(std::function<Date()> clock)
{
    clock_ = std::move(clock);
    updateValue();
}

TimecodeRate TimecodeModel::fallbackRate() const
{
    if (station_) return station_->timecodeFallbackRate();
    return settings_ ? settings_->timecodeFallbackRate() : TimecodeRate::fps25;
}

void TimecodeModel::attach()
{
    watch(qlab_);
    watch(settings_);
    watch(station_);
    if (station_) {
        track(connect(
            station_, &AppModel::timecodeFallbackRateChanged, this, &TimecodeModel::refresh));
    }
    if (qlab_)
        track(connect(qlab_, &QLabClient::timecodeCueChanged, this, &TimecodeModel::refresh));
    if (settings_) {
        track(connect(
            settings_, &QLabSettings::timecodeFallbackRateChanged, this, &TimecodeModel::refresh));
    }
}

void TimecodeModel::refresh()
{
    cue_ = qlab_ ? qlab_->timecodeCue() : std::nullopt;
    const QString newDetails = cue_ ? details(*cue_, fallbackRate()) : QString();
    detailsText_ = newDetails;
    emit cueChanged();
    if (cue_ && !redraw_.isActive()) redraw_.start();
    if (!cue_) redraw_.stop();
    updateValue();
}

void TimecodeModel::updateValue()
{
    const QString text = cue_ ? value(*cue_, clock_(), fallbackRate()) : QString();
    if (text == valueText_) return;
    valueText_ = text;
    emit valueChanged();
}

} // namespace ostrel
