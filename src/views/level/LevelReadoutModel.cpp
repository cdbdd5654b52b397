#include "views/level/LevelReadoutModel.h"

#include <QFontMetricsF>
#include <QVariantMap>
#include <algorithm>
#include <string_view>

#include "views/level/LevelText.h"

namespace ostrel {

namespace {

QString fromView(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

LevelReadoutModel::LevelReadoutModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

LevelReadoutModel::Tone LevelReadoutModel::tone(
    std::optional<double> level, bool hasSignal, LevelRange range)
{
    if (!level || !hasSignal) return Tone::noSignal;
    switch (range) {
    case LevelRange::normal:
        return Tone::normal;
    case LevelRange::elevated:
        return Tone::elevated;
    case LevelRange::high:
        return Tone::high;
    }
    return Tone::normal;
}

Theme::Role LevelReadoutModel::colorRole(Tone tone)
{
    switch (tone) {
    case Tone::normal:
        return Theme::Role::primary;
    case Tone::elevated:
        return Theme::Role::orange;
    case Tone::high:
        return Theme::Role::red;
    case Tone::noSignal:
        return Theme::Role::secondary;
    }
    return Theme::Role::primary;
}

QString LevelReadoutModel::numberText(
    std::optional<double> level, bool hasSignal, const QLocale& locale)
{
    if (!level || !hasSignal) return QString::fromUtf16(LevelText::missing);
    return LevelText::number(*level, locale);
}

QString LevelReadoutModel::accessibleValue(
    std::optional<double> level, bool hasSignal, LevelRange range, const QLocale& locale)
{
    if (!level || !hasSignal) return QStringLiteral("No signal");
    return LevelText::number(*level, locale) + QStringLiteral(" decibels, ")
        + fromView(LevelRanges::title(range));
}

double LevelReadoutModel::digitWidth(const QFont& font)
{
    const QFontMetricsF metrics(font);
    double widest = 0.0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    return widest;
}

std::vector<LevelReadoutModel::Cell> LevelReadoutModel::cells(
    const QString& text, const QFont& font)
{
    const QFontMetricsF metrics(font);
    const double digit = digitWidth(font);
    std::vector<Cell> result;
    result.reserve(static_cast<std::size_t>(text.size()));
    for (const QChar character : text) {
        // Another script's digit wider than the ASCII ones keeps its own width, never overlaps.
        const double width = character.isDigit()
            ? std::max(digit, metrics.horizontalAdvance(character))
            : metrics.horizontalAdvance(character);
        result.push_back({QString(character), width});
    }
    return result;
}

void LevelReadoutModel::setNumberFont(const QFont& value)
{
    if (value == numberFont_) return;
    numberFont_ = value;
    emit numberFontChanged();
    updateCells();
}

QVariantList LevelReadoutModel::numberCells() const
{
    QVariantList list;
    for (const auto& cell : cells_)
        list.append(QVariantMap {{"text", cell.text}, {"width", cell.width}});
    return list;
}

void LevelReadoutModel::updateCells()
{
    auto next = cells(numberText_, numberFont_);
    if (next == cells_) return;
    cells_ = std::move(next);
    emit numberCellsChanged();
}

void LevelReadoutModel::setNumberSize(double value)
{
    if (value == numberSize_) return;
    numberSize_ = value;
    emit numberSizeChanged();
}

double LevelReadoutModel::unitSize() const
{
    return std::max(0.2 * numberSize_, 13.0);
}

double LevelReadoutModel::peakSize() const
{
    return std::max(0.14 * numberSize_, 11.0);
}

double LevelReadoutModel::descriptionSize() const
{
    return std::max(0.17 * numberSize_, 12.0);
}

void LevelReadoutModel::attach()
{
    const auto update = [this] { refresh(); };
    watch(meter_);
    watch(display_);
    if (meter_) {
        track(connect(meter_, &MeterModel::levelChanged, this, update));
        track(connect(meter_, &MeterModel::hasSignalChanged, this, update));
        track(connect(meter_, &MeterModel::statisticsChanged, this, update));
    }
    if (display_) {
        track(connect(display_, &DisplaySettings::elevatedThresholdChanged, this, update));
        track(connect(display_, &DisplaySettings::highThresholdChanged, this, update));
        track(connect(display_, &DisplaySettings::unhingedModeChanged, this, update));
    }
}

void LevelReadoutModel::refresh()
{
    const std::optional<double> level = meter_ ? meter_->level() : std::nullopt;
    const bool hasSignal = meter_ && meter_->hasSignal();
    const LevelRange range = display_ && level ? display_->levelRange(*level) : LevelRange::normal;
    const bool unhinged = display_ && display_->unhingedMode();

    setNumberText(numberText(level, hasSignal));
    setTone(tone(level, hasSignal, range));
    setAccessibleValue(accessibleValue(level, hasSignal, range));
    setPeakCaption(unhinged ? QStringLiteral("LOUDEST SHIT") : QStringLiteral("PEAK"));

    QString peakText = QString::fromUtf16(LevelText::missing);
    QString peakSpoken = QStringLiteral("None");
    if (const auto peak = meter_ ? meter_->statistics().peak() : std::nullopt) {
        peakText = LevelText::number(*peak);
        peakSpoken = peakText + QStringLiteral(" decibels");
    }
    setPeakText(peakText);
    setPeakAccessibleValue(peakSpoken);
}

void LevelReadoutModel::setNumberText(const QString& value)
{
    if (value == numberText_) return;
    numberText_ = value;
    emit numberTextChanged();
    updateCells();
}

void LevelReadoutModel::setTone(Tone value)
{
    if (value == tone_) return;
    tone_ = value;
    emit toneChanged();
}

void LevelReadoutModel::setPeakCaption(const QString& value)
{
    if (value == peakCaption_) return;
    peakCaption_ = value;
    emit peakCaptionChanged();
}

void LevelReadoutModel::setPeakText(const QString& value)
{
    if (value == peakText_) return;
    peakText_ = value;
    emit peakTextChanged();
}

void LevelReadoutModel::setAccessibleValue(const QString& value)
{
    if (value == accessibleValue_) return;
    accessibleValue_ = value;
    emit accessibleValueChanged();
}

void LevelReadoutModel::setPeakAccessibleValue(const QString& value)
{
    if (value == peakAccessibleValue_) return;
    peakAccessibleValue_ = value;
    emit peakAccessibleValueChanged();
}

} // namespace ostrel
