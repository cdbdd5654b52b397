#pragma once

// The large number of the meter and the peak under it: the level or the no-signal glyph, its
// tone by range, and the words a screen reader says for both. Sizes of the readout's parts
// follow its number size.
#include <optional>
#include <vector>

#include <QFont>
#include <QPointer>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include "measurement/LevelRange.h"
#include "model/DisplaySettings.h"
#include "model/MeterModel.h"
#include "views/components/Theme.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class LevelReadoutModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::MeterModel* meter READ meter WRITE setMeter NOTIFY meterChanged)
    Q_PROPERTY(ostrel::DisplaySettings* display READ display WRITE setDisplay NOTIFY displayChanged)
    Q_PROPERTY(double numberSize READ numberSize WRITE setNumberSize NOTIFY numberSizeChanged)
    Q_PROPERTY(QString numberText READ numberText NOTIFY numberTextChanged)
    Q_PROPERTY(QFont numberFont READ numberFont WRITE setNumberFont NOTIFY numberFontChanged)
    Q_PROPERTY(QVariantList numberCells READ numberCells NOTIFY numberCellsChanged)
    Q_PROPERTY(Tone tone READ tone NOTIFY toneChanged)
    Q_PROPERTY(int colorRole READ colorRole NOTIFY toneChanged)
    Q_PROPERTY(double numberOpacity READ numberOpacity NOTIFY toneChanged)
    Q_PROPERTY(QString unitText READ unitText CONSTANT)
    Q_PROPERTY(QString peakCaption READ peakCaption NOTIFY peakCaptionChanged)
    Q_PROPERTY(QString peakText READ peakText NOTIFY peakTextChanged)
    Q_PROPERTY(QString accessibleName READ accessibleName CONSTANT)
    Q_PROPERTY(QString accessibleValue READ accessibleValue NOTIFY accessibleValueChanged)
    Q_PROPERTY(QString peakAccessibleName READ peakAccessibleName CONSTANT)
    Q_PROPERTY(
        QString peakAccessibleValue READ peakAccessibleValue NOTIFY peakAccessibleValueChanged)
    Q_PROPERTY(double unitSize READ unitSize NOTIFY numberSizeChanged)
    Q_PROPERTY(double peakSize READ peakSize NOTIFY numberSizeChanged)
    Q_PROPERTY(double peakTracking READ peakTracking NOTIFY numberSizeChanged)
    Q_PROPERTY(double peakSpacing READ peakSpacing NOTIFY numberSizeChanged)
    Q_PROPERTY(double descriptionSize READ descriptionSize NOTIFY numberSizeChanged)
    Q_PROPERTY(double padding READ padding NOTIFY numberSizeChanged)

public:
    MeterModel* meter() const { return meter_.data(); }
    void setMeter(MeterModel* value) { setSource(meter_, value, &LevelReadoutModel::meterChanged); }
    DisplaySettings* display() const { return display_.data(); }
    void setDisplay(DisplaySettings* value)
    {
        setSource(display_, value, &LevelReadoutModel::displayChanged);
    }

    enum class Tone { normal, elevated, high, noSignal };
    Q_ENUM(Tone)

    // One character of the number in a box of its own width; every digit gets the widest
    // digit's, so that a number changing ten times a second doesn't jitter sideways.
    struct Cell {
        QString text;
        double width = 0.0;
        bool operator==(const Cell&) const = default;
    };

    explicit LevelReadoutModel(QObject* parent = nullptr);

    // With no level yet the number is in its no-signal form too.
    static Tone tone(std::optional<double> level, bool hasSignal, LevelRange range);
    static Theme::Role colorRole(Tone tone);
    static QString numberText(
        std::optional<double> level, bool hasSignal, const QLocale& locale = QLocale());
    static QString accessibleValue(std::optional<double> level, bool hasSignal, LevelRange range,
        const QLocale& locale = QLocale());
    static double digitWidth(const QFont& font);
    static std::vector<Cell> cells(const QString& text, const QFont& font);

    double numberSize() const { return numberSize_; }
    void setNumberSize(double value);
    QString numberText() const { return numberText_; }
    QFont numberFont() const { return numberFont_; }
    void setNumberFont(const QFont& value);
    QVariantList numberCells() const;
    const std::vector<Cell>& cellList() const { return cells_; }
    Tone tone() const { return tone_; }
    int colorRole() const { return static_cast<int>(colorRole(tone_)); }
    double numberOpacity() const { return tone_ == Tone::noSignal ? 0.4 : 1.0; }
    QString unitText() const { return QStringLiteral("dB SPL"); }
    QString peakCaption() const { return peakCaption_; }
    QString peakText() const { return peakText_; }
    QString accessibleName() const { return QStringLiteral("Sound level"); }
    QString accessibleValue() const { return accessibleValue_; }
    QString peakAccessibleName() const { return QStringLiteral("Peak level"); }
    QString peakAccessibleValue() const { return peakAccessibleValue_; }
    double unitSize() const;
    double peakSize() const;
    double peakTracking() const { return 0.08 * peakSize(); }
    double peakSpacing() const { return 0.4 * peakSize(); }
    double descriptionSize() const;
    double padding() const { return 0.06 * numberSize_; }

signals:
    void meterChanged();
    void displayChanged();
    void numberSizeChanged();
    void numberTextChanged();
    void numberFontChanged();
    void numberCellsChanged();
    void toneChanged();
    void peakCaptionChanged();
    void peakTextChanged();
    void accessibleValueChanged();
    void peakAccessibleValueChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<MeterModel> meter_;
    QPointer<DisplaySettings> display_;
    void setNumberText(const QString& value);
    void updateCells();
    void setTone(Tone value);
    void setPeakCaption(const QString& value);
    void setPeakText(const QString& value);
    void setAccessibleValue(const QString& value);
    void setPeakAccessibleValue(const QString& value);

    double numberSize_ = 132.0;
    QString numberText_;
    QFont numberFont_;
    std::vector<Cell> cells_;
    Tone tone_ = Tone::noSignal;
    QString peakCaption_;
    QString peakText_;
    QString accessibleValue_;
    QString peakAccessibleValue_;
};

} // namespace ostrel
