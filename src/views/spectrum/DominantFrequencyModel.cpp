#include "views/spectrum/DominantFrequencyModel.h"

#include "views/components/FrequencyText.h"

namespace ostrel {

DominantFrequencyModel::DominantFrequencyModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

void DominantFrequencyModel::attach()
{
    watch(meter_);
    if (meter_) {
        track(connect(meter_, &MeterModel::dominantFrequencyChanged, this, [this] { refresh(); }));
    }
}

void DominantFrequencyModel::refresh()
{
    const auto frequency = meter_ ? meter_->dominantFrequency() : std::nullopt;
    const QString text = frequency ? FrequencyText::hertz(*frequency) : QStringLiteral("None");
    if (text == text_) return;
    text_ = text;
    emit textChanged();
}

} // namespace ostrel
