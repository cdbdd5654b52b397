#pragma once

// The scale of the main screen: everything on it grows with the window, so that one layout serves
// a laptop panel and a wall display. `scale` is taken from the space the monitor gets; each
// distance and font size is a multiple of it, some with the scale capped.
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace ostrel {

class MonitorLayout : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY widthChanged)
    Q_PROPERTY(bool showsToolbarSymbols READ showsToolbarSymbols NOTIFY widthChanged)
    Q_PROPERTY(double height READ height WRITE setHeight NOTIFY heightChanged)
    Q_PROPERTY(double scale READ scale NOTIFY scaleChanged)
    Q_PROPERTY(double sidePadding READ sidePadding NOTIFY scaleChanged)
    Q_PROPERTY(double verticalPadding READ verticalPadding NOTIFY scaleChanged)
    Q_PROPERTY(double topRowSpacing READ topRowSpacing NOTIFY scaleChanged)
    Q_PROPERTY(double captionSize READ captionSize NOTIFY scaleChanged)
    Q_PROPERTY(double smallCaptionSize READ smallCaptionSize NOTIFY scaleChanged)
    Q_PROPERTY(double captionTracking READ captionTracking NOTIFY scaleChanged)
    Q_PROPERTY(double captionSpacing READ captionSpacing NOTIFY scaleChanged)
    Q_PROPERTY(double micAlertsSpacing READ micAlertsSpacing NOTIFY scaleChanged)
    Q_PROPERTY(double readoutSize READ readoutSize NOTIFY scaleChanged)
    Q_PROPERTY(double readoutSpacing READ readoutSpacing NOTIFY scaleChanged)
    Q_PROPERTY(double noSignalTextSize READ noSignalTextSize NOTIFY scaleChanged)
    Q_PROPERTY(double graphRowSpacing READ graphRowSpacing NOTIFY scaleChanged)
    Q_PROPERTY(double graphRowHeight READ graphRowHeight NOTIFY scaleChanged)
    Q_PROPERTY(double graphColumnSpacing READ graphColumnSpacing NOTIFY scaleChanged)
    Q_PROPERTY(double graphLineWidth READ graphLineWidth NOTIFY scaleChanged)
    Q_PROPERTY(double spectrumMenuSize READ spectrumMenuSize NOTIFY scaleChanged)
    Q_PROPERTY(double dominantFrequencySize READ dominantFrequencySize NOTIFY scaleChanged)
    Q_PROPERTY(double footerFontSize READ footerFontSize NOTIFY scaleChanged)
    Q_PROPERTY(double footerSpacing READ footerSpacing NOTIFY scaleChanged)
    Q_PROPERTY(double cornerTopPadding READ cornerTopPadding CONSTANT)
    Q_PROPERTY(double cornerSidePadding READ cornerSidePadding NOTIFY scaleChanged)
    Q_PROPERTY(double bannerScale READ bannerScale NOTIFY scaleChanged)
    Q_PROPERTY(double urgentBannerScale READ urgentBannerScale NOTIFY scaleChanged)

public:
    static constexpr double referenceWidth = 560.0;
    static constexpr double referenceHeight = 720.0;
    static constexpr double minimumScale = 0.8;
    static constexpr double maximumScale = 3.0;

    explicit MonitorLayout(QObject* parent = nullptr);

    // The smaller of width / 560 and height / 720, kept within 0.8 ... 3.0.
    static double scaleFor(double width, double height);

    double width() const { return width_; }
    // Below the reference width the toolbar drops the slider's suns, so that it fits between the
    // caption and the QLab status even while a show's running time stands in it.
    bool showsToolbarSymbols() const { return width_ >= 560.0; }
    void setWidth(double value);
    double height() const { return height_; }
    void setHeight(double value);

    double scale() const { return scale_; }
    double sidePadding() const { return 36.0 * scale_; }
    double verticalPadding() const { return 28.0 * scale_; }
    double topRowSpacing() const { return 48.0 * scale_; }
    double captionSize() const { return 12.0 * scale_; }
    double smallCaptionSize() const { return 11.0 * scale_; }
    double captionTracking() const { return 1.4 * scale_; }
    double captionSpacing() const { return 10.0 * scale_; }
    double micAlertsSpacing() const { return 16.0 * scale_; }
    double readoutSize() const { return 132.0 * scale_; }
    double readoutSpacing() const { return 10.0 * scale_; }
    double noSignalTextSize() const { return 14.0 * scale_; }
    double graphRowSpacing() const { return 36.0 * scale_; }
    double graphRowHeight() const { return 150.0 * scale_; }
    double graphColumnSpacing() const { return 8.0 * scale_; }
    // So that the line still reads from across the room on a wall display.
    double graphLineWidth() const { return 2.0 * scale_; }
    double spectrumMenuSize() const { return 11.0 * scale_; }
    double dominantFrequencySize() const { return 15.0 * scale_; }
    double footerFontSize() const { return 14.0 * cappedScale(1.6); }
    double footerSpacing() const { return 14.0 * scale_; }
    double cornerTopPadding() const { return 12.0; }
    double cornerSidePadding() const { return 20.0 * cappedScale(1.6); }
    double bannerScale() const { return cappedScale(1.6); }
    double urgentBannerScale() const { return cappedScale(1.4); }

signals:
    void widthChanged();
    void heightChanged();
    void scaleChanged();

private:
    double cappedScale(double cap) const;
    void updateScale();

    double width_ = referenceWidth;
    double height_ = referenceHeight;
    double scale_ = 1.0;
};

} // namespace ostrel
