#include "views/main/settings/MeterPageModel.h"

#include <algorithm>

namespace ostrel {

namespace {

template <typename Options, typename Value> int indexOf(const Options& options, Value value)
{
    const auto found = std::find(options.begin(), options.end(), value);
    return static_cast<int>(found - options.begin());
}

QString text(std::string_view value)
{
    return QString::fromUtf8(value.data(), static_cast<qsizetype>(value.size()));
}

} // namespace

MeterPageModel::MeterPageModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

QStringList MeterPageModel::weightingOptions()
{
    QStringList result;
    for (auto weighting : allFrequencyWeightings)
        result << text(symbol(weighting));
    return result;
}

int MeterPageModel::weightingIndex() const
{
    const auto value = measurement_ ? measurement_->weighting() : FrequencyWeighting::a;
    return indexOf(allFrequencyWeightings, value);
}

void MeterPageModel::setWeightingIndex(int index)
{
    if (!measurement_ || index < 0 || index >= static_cast<int>(allFrequencyWeightings.size()))
        return;
    measurement_->setWeighting(allFrequencyWeightings[static_cast<std::size_t>(index)]);
}

QString MeterPageModel::weightingFooter() const
{
    return text(summary(measurement_ ? measurement_->weighting() : FrequencyWeighting::a));
}

QStringList MeterPageModel::responseOptions()
{
    QStringList result;
    for (auto response : allTimeWeightings)
        result << text(title(response));
    return result;
}

int MeterPageModel::responseIndex() const
{
    return indexOf(
        allTimeWeightings, measurement_ ? measurement_->response() : TimeWeighting::fast);
}

void MeterPageModel::setResponseIndex(int index)
{
    if (!measurement_ || index < 0 || index >= static_cast<int>(allTimeWeightings.size())) return;
    measurement_->setResponse(allTimeWeightings[static_cast<std::size_t>(index)]);
}

QString MeterPageModel::responseFooter() const
{
    return text(settingsDescription(measurement_ ? measurement_->response() : TimeWeighting::fast));
}

void MeterPageModel::setFeedbackWarningEnabled(bool value)
{
    if (display_) display_->setFeedbackWarningEnabled(value);
}

QString MeterPageModel::feedbackFooter()
{
    return QStringLiteral(
        "Ostrel Live looks for a single tone that rings out above everything around it and holds "
        "its pitch. It pauses while you calibrate.");
}

void MeterPageModel::attach()
{
    watch(measurement_);
    watch(display_);
    if (measurement_) {
        track(connect(
            measurement_, &MeasurementSettings::weightingChanged, this, &MeterPageModel::refresh));
        track(connect(
            measurement_, &MeasurementSettings::responseChanged, this, &MeterPageModel::refresh));
    }
    if (display_)
        track(connect(display_, &DisplaySettings::feedbackWarningEnabledChanged, this,
            &MeterPageModel::refresh));
}

void MeterPageModel::refresh()
{
    emit valuesChanged();
}

} // namespace ostrel
