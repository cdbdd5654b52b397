#pragma once

// Brightness of the station's window. The screen's backlight is never touched: a black layer of
// opacity 1 - brightness dims this window only, and at the lowest setting of 0.2 the window still
// shows at a fifth, so an operator can't lose the screen. Also the slider's and the shortcuts'
// side of it.
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "model/DisplaySettings.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class BrightnessOverlay : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::DisplaySettings* display READ display WRITE setDisplay NOTIFY displayChanged)
    Q_PROPERTY(double brightness READ brightness WRITE setBrightness NOTIFY brightnessChanged)
    Q_PROPERTY(double overlayOpacity READ overlayOpacity NOTIFY brightnessChanged)
    Q_PROPERTY(bool canBrighten READ canBrighten NOTIFY brightnessChanged)
    Q_PROPERTY(bool canDim READ canDim NOTIFY brightnessChanged)
    Q_PROPERTY(double minimum READ minimum CONSTANT)
    Q_PROPERTY(double maximum READ maximum CONSTANT)
    Q_PROPERTY(int percent READ percent NOTIFY brightnessChanged)
    Q_PROPERTY(int minimumPercent READ minimumPercent CONSTANT)
    Q_PROPERTY(int maximumPercent READ maximumPercent CONSTANT)
    Q_PROPERTY(QString accessibleName READ accessibleName CONSTANT)
    Q_PROPERTY(QString accessibleValue READ accessibleValue NOTIFY brightnessChanged)
    Q_PROPERTY(QString helpText READ helpText CONSTANT)
    Q_PROPERTY(QString brighterShortcut READ brighterShortcut CONSTANT)
    Q_PROPERTY(QString dimmerShortcut READ dimmerShortcut CONSTANT)
    Q_PROPERTY(QString brighterSequence READ brighterSequence CONSTANT)
    Q_PROPERTY(QString dimmerSequence READ dimmerSequence CONSTANT)
    Q_PROPERTY(QString dimmerSymbol READ dimmerSymbol CONSTANT)
    Q_PROPERTY(QString brighterSymbol READ brighterSymbol CONSTANT)

public:
    DisplaySettings* display() const { return display_.data(); }
    void setDisplay(DisplaySettings* value)
    {
        setSource(display_, value, &BrightnessOverlay::displayChanged);
    }

    static constexpr double step = 0.1;

    explicit BrightnessOverlay(QObject* parent = nullptr);

    static double overlayOpacity(double brightness) { return 1.0 - brightness; }
    // "%lld percent" of the brightness, rounded.
    static QString accessibleValue(double brightness);

    double brightness() const { return brightness_; }
    // Writes the setting, which keeps it within its bounds.
    void setBrightness(double value);
    double overlayOpacity() const { return overlayOpacity(brightness_); }
    bool canBrighten() const { return brightness_ < maximum(); }
    bool canDim() const { return brightness_ > minimum(); }
    double minimum() const;
    double maximum() const;
    // The slider works in whole percent: Qt 6.4 gives a slider no value text of its own, so a
    // screen reader reads its number, and that number must be the percentage it announces.
    int percent() const { return percentOf(brightness_); }
    int minimumPercent() const { return percentOf(minimum()); }
    int maximumPercent() const { return percentOf(maximum()); }
    Q_INVOKABLE void setPercent(double value) { setBrightness(value / 100.0); }
    static int percentOf(double brightness);
    QString accessibleName() const { return QStringLiteral("Screen brightness"); }
    QString accessibleValue() const { return accessibleValue(brightness_); }
    QString helpText() const;
    QString brighterShortcut() const;
    QString dimmerShortcut() const;
    // The same keys in the form a Shortcut reads, whatever the language of the desktop.
    QString brighterSequence() const;
    QString dimmerSequence() const;
    QString dimmerSymbol() const { return QStringLiteral("sun.min"); }
    QString brighterSymbol() const { return QStringLiteral("sun.max"); }

    // The shortcuts add to the stored value and leave the bounds to the setting's clamp.
    Q_INVOKABLE void brighter();
    Q_INVOKABLE void dimmer();

signals:
    void displayChanged();
    void brightnessChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<DisplaySettings> display_;
    double brightness_ = 1.0;
};

} // namespace ostrel
