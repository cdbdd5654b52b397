#include "views/level/StatisticsFooterModel.h"

#include "views/level/LevelText.h"

namespace ostrel {

StatisticsFooterModel::StatisticsFooterModel(QObject* parent) : ViewModel(parent) { }

StatisticsFooterModel::Texts StatisticsFooterModel::texts(
    const LevelStatistics& statistics, const QLocale& locale)
{
    return {LevelText::decibels(statistics.peak(), locale),
        LevelText::decibels(statistics.leq(), locale),
        LevelText::decibels(statistics.maxLevel, locale)};
}

void StatisticsFooterModel::setFontSize(double value)
{
    if (value == fontSize_) return;
    fontSize_ = value;
    emit fontSizeChanged();
}

void StatisticsFooterModel::attach()
{
    watch(meter_);
    if (meter_) track(connect(meter_, &MeterModel::statisticsChanged, this, [this] { refresh(); }));
}

void StatisticsFooterModel::refresh()
{
    const Texts next = meter_ ? texts(meter_->statistics()) : Texts {};
    if (next == texts_) return;
    texts_ = next;
    emit valuesChanged();
}

} // namespace ostrel
