#include "views/spectrum/SpectrumOptionsModel.h"

#include <algorithm>

#include "measurement/SpectrumResolution.h"
#include "model/SpectrumStyle.h"

namespace ostrel {

namespace {

template <typename Value, std::size_t Size>
int indexOf(const std::array<Value, Size>& all, Value value)
{
    const auto found = std::find(all.begin(), all.end(), value);
    return found == all.end() ? 0 : static_cast<int>(found - all.begin());
}

} // namespace

SpectrumOptionsModel::SpectrumOptionsModel(QObject* parent) : ViewModel(parent) { }

QStringList SpectrumOptionsModel::styleTitles() const
{
    QStringList titles;
    for (SpectrumStyle style : SpectrumStyles::all)
        titles << QString::fromUtf8(SpectrumStyles::title(style));
    return titles;
}

QStringList SpectrumOptionsModel::styleSymbols() const
{
    QStringList symbols;
    for (SpectrumStyle style : SpectrumStyles::all)
        symbols << QString::fromUtf8(SpectrumStyles::systemImage(style));
    return symbols;
}

QStringList SpectrumOptionsModel::resolutionTitles() const
{
    QStringList titles;
    for (SpectrumResolution resolution : SpectrumResolutions::all)
        titles << QString::fromStdString(SpectrumResolutions::title(resolution));
    return titles;
}

int SpectrumOptionsModel::styleIndex() const
{
    return display_ ? indexOf(SpectrumStyles::all, display_->spectrumStyle()) : 0;
}

void SpectrumOptionsModel::setStyleIndex(int index)
{
    if (!display_ || index < 0 || index >= static_cast<int>(SpectrumStyles::all.size())) return;
    display_->setSpectrumStyle(SpectrumStyles::all[static_cast<std::size_t>(index)]);
}

int SpectrumOptionsModel::resolutionIndex() const
{
    return display_ ? indexOf(SpectrumResolutions::all, display_->spectrumResolution()) : 0;
}

void SpectrumOptionsModel::setResolutionIndex(int index)
{
    if (!display_ || index < 0 || index >= static_cast<int>(SpectrumResolutions::all.size()))
        return;
    display_->setSpectrumResolution(SpectrumResolutions::all[static_cast<std::size_t>(index)]);
}

QString SpectrumOptionsModel::symbol() const
{
    return styleSymbols().value(styleIndex());
}

QString SpectrumOptionsModel::note() const
{
    if (display_ && display_->spectrumStyle() == SpectrumStyle::spectrogram) {
        return QStringLiteral(
            "The spectrogram always uses 1/24-octave bands and spans the graph duration.");
    }
    return QStringLiteral("Finer bands help pin down a frequency for EQ. Below about 400 Hz "
                          "they're measured over 1.4 seconds, so bass detail responds more "
                          "slowly.");
}

void SpectrumOptionsModel::attach()
{
    watch(display_);
    if (!display_) return;
    track(connect(display_, &DisplaySettings::spectrumStyleChanged, this,
        &SpectrumOptionsModel::choiceChanged));
    track(connect(display_, &DisplaySettings::spectrumResolutionChanged, this,
        &SpectrumOptionsModel::choiceChanged));
}

} // namespace ostrel
