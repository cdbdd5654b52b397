#pragma once

// The Display page of the settings: appearance, graph span, the two colour thresholds with
// steppers whose ranges follow each other, the main screen's graph and brightness, the wording,
// and the spectrum's style and resolution.
#include <array>

#include <QPointer>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include "model/DisplaySettings.h"
#include "model/ThresholdRanges.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class DisplayPageModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::DisplaySettings* display READ display WRITE setDisplay NOTIFY displayChanged)
    Q_PROPERTY(QStringList appearanceOptions READ appearanceOptions CONSTANT)
    Q_PROPERTY(
        int appearanceIndex READ appearanceIndex WRITE setAppearanceIndex NOTIFY valuesChanged)
    Q_PROPERTY(QStringList graphDurationOptions READ graphDurationOptions CONSTANT)
    Q_PROPERTY(int graphDurationIndex READ graphDurationIndex WRITE setGraphDurationIndex NOTIFY
            valuesChanged)
    Q_PROPERTY(double elevatedThreshold READ elevatedThreshold WRITE setElevatedThreshold NOTIFY
            valuesChanged)
    Q_PROPERTY(double elevatedLower READ elevatedLower NOTIFY valuesChanged)
    Q_PROPERTY(double elevatedUpper READ elevatedUpper NOTIFY valuesChanged)
    Q_PROPERTY(double highThreshold READ highThreshold WRITE setHighThreshold NOTIFY valuesChanged)
    Q_PROPERTY(double highLower READ highLower NOTIFY valuesChanged)
    Q_PROPERTY(double highUpper READ highUpper NOTIFY valuesChanged)
    Q_PROPERTY(bool showModeShowsGraph READ showModeShowsGraph WRITE setShowModeShowsGraph NOTIFY
            valuesChanged)
    Q_PROPERTY(double screenBrightness READ screenBrightness WRITE setScreenBrightness NOTIFY
            valuesChanged)
    Q_PROPERTY(QString brightnessText READ brightnessText NOTIFY valuesChanged)
    Q_PROPERTY(bool unhingedMode READ unhingedMode WRITE setUnhingedMode NOTIFY valuesChanged)
    Q_PROPERTY(QStringList spectrumStyleOptions READ spectrumStyleOptions CONSTANT)
    Q_PROPERTY(int spectrumStyleIndex READ spectrumStyleIndex WRITE setSpectrumStyleIndex NOTIFY
            valuesChanged)
    Q_PROPERTY(QStringList resolutionOptions READ resolutionOptions CONSTANT)
    Q_PROPERTY(
        int resolutionIndex READ resolutionIndex WRITE setResolutionIndex NOTIFY valuesChanged)
    Q_PROPERTY(bool resolutionEnabled READ resolutionEnabled NOTIFY valuesChanged)
    Q_PROPERTY(QString spectrumFooter READ spectrumFooter NOTIFY valuesChanged)

public:
    // The graph spans offered, in seconds.
    static constexpr std::array<double, 3> graphDurations {30.0, 60.0, 120.0};

    explicit DisplayPageModel(QObject* parent = nullptr);

    DisplaySettings* display() const { return display_.data(); }
    void setDisplay(DisplaySettings* value)
    {
        setSource(display_, value, &DisplayPageModel::displayChanged);
    }

    static QStringList appearanceOptions();
    int appearanceIndex() const;
    // Out-of-range indices are dropped, as by every index setter here.
    void setAppearanceIndex(int index);
    static QStringList graphDurationOptions();
    // -1 for a span none of the rows offers.
    int graphDurationIndex() const;
    void setGraphDurationIndex(int index);

    double elevatedThreshold() const;
    // Kept inside the stepper's range, which the high threshold bounds.
    void setElevatedThreshold(double value);
    double elevatedLower() const { return elevatedRange_.lower; }
    double elevatedUpper() const { return elevatedRange_.upper; }
    double highThreshold() const;
    void setHighThreshold(double value);
    double highLower() const { return highRange_.lower; }
    double highUpper() const { return highRange_.upper; }

    bool showModeShowsGraph() const { return !display_ || display_->showModeShowsGraph(); }
    void setShowModeShowsGraph(bool value);
    double screenBrightness() const;
    void setScreenBrightness(double value);
    // The brightness as a rounded percentage: "45%".
    QString brightnessText() const;
    bool unhingedMode() const { return display_ && display_->unhingedMode(); }
    void setUnhingedMode(bool value);

    static QStringList spectrumStyleOptions();
    int spectrumStyleIndex() const;
    void setSpectrumStyleIndex(int index);
    // "1/3 Octave" ... "1/24 Octave".
    static QStringList resolutionOptions();
    int resolutionIndex() const;
    void setResolutionIndex(int index);
    // The spectrogram has bands of its own.
    bool resolutionEnabled() const;
    QString spectrumFooter() const;

signals:
    void displayChanged();
    void valuesChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<DisplaySettings> display_;
    ThresholdRange elevatedRange_;
    ThresholdRange highRange_;
};

} // namespace ostrel
