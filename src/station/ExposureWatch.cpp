#include "station/ExposureWatch.h"

#include <QLoggingCategory>
#include <cmath>

Q_LOGGING_CATEGORY(ostrelExposure, "ostrel.exposure")

namespace ostrel {

ExposureWatch::ExposureWatch(
    ExposureSettings& settings, std::function<Date()> clock, QObject* parent)
    : QObject(parent), settings_(settings), clock_(std::move(clock)), meter_(settings.profile())
{
}

void ExposureWatch::start()
{
    applySettings();
    if (isFollowing_) return;
    isFollowing_ = true;
    connect(&settings_, &SettingsGroup::changed, this, &ExposureWatch::applySettings);
}

void ExposureWatch::applySettings()
{
    const ExposureProfile profile = settings_.profile();
    if (profile == meter_.profile()) return;
    // Recomputed from what the meter holds: a change mid-show is no reset.
    meter_.setProfile(profile);
    if (onProfileChanged) onProfileChanged(profile);
    emit profileChanged();
    emit readingChanged();
}

void ExposureWatch::ingest(const MeasurementInterval& interval, const std::optional<QString>& cue)
{
    if (!(interval.sampleRate > 0.0) || interval.sampleCount <= 0) return;
    const bool wasOver = meter_.reading().step == ExposureStep::overLimit;
    meter_.ingest(ExposureSample {interval.exposureEnergy / interval.sampleRate,
        interval.duration(), interval.exposurePeakPower});
    emit readingChanged();
    const ExposureReading& reading = meter_.reading();
    if (wasOver || reading.step != ExposureStep::overLimit) return;
    const Passing passing {clock_(), *reading.laeqWindow, meter_.profile(), cue};
    passings_.push_back(passing);
    qCInfo(ostrelExposure, "%s", qUtf8Printable(passingText(passing)));
    emit limitPassed(passing);
}

void ExposureWatch::reset()
{
    meter_.reset();
    passings_.clear();
    emit readingChanged();
}

QString ExposureWatch::windowName(const ExposureProfile& profile)
{
    if (profile.isDailyExposure) return QStringLiteral("LEX,8h");
    return QStringLiteral("LAeq %1 min").arg(std::lround(profile.windowSeconds / 60.0));
}

QString ExposureWatch::passingText(const Passing& passing)
{
    QString text = windowName(passing.profile) + QStringLiteral(" passed ")
        + QString::number(passing.profile.limit, 'g', 4) + QStringLiteral(" dB");
    if (passing.cue && !passing.cue->isEmpty()) text += QStringLiteral(" during ") + *passing.cue;
    return text;
}

} // namespace ostrel
