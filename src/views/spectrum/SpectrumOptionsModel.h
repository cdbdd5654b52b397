#pragma once

// The small menu beside the spectrum's caption: the style (bars, line, spectrogram) and the
// resolution of the chart, written straight to the display settings.
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include "model/DisplaySettings.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class SpectrumOptionsModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::DisplaySettings* display READ display WRITE setDisplay NOTIFY displayChanged)
    Q_PROPERTY(QString accessibleName READ accessibleName CONSTANT)
    Q_PROPERTY(QString styleTitle READ styleTitle CONSTANT)
    Q_PROPERTY(QString resolutionTitle READ resolutionTitle CONSTANT)
    Q_PROPERTY(QStringList styleTitles READ styleTitles CONSTANT)
    Q_PROPERTY(QStringList styleSymbols READ styleSymbols CONSTANT)
    Q_PROPERTY(QStringList resolutionTitles READ resolutionTitles CONSTANT)
    Q_PROPERTY(int styleIndex READ styleIndex WRITE setStyleIndex NOTIFY choiceChanged)
    Q_PROPERTY(
        int resolutionIndex READ resolutionIndex WRITE setResolutionIndex NOTIFY choiceChanged)
    Q_PROPERTY(QString symbol READ symbol NOTIFY choiceChanged)
    Q_PROPERTY(QString note READ note NOTIFY choiceChanged)

public:
    DisplaySettings* display() const { return display_.data(); }
    void setDisplay(DisplaySettings* value)
    {
        setSource(display_, value, &SpectrumOptionsModel::displayChanged);
    }

    explicit SpectrumOptionsModel(QObject* parent = nullptr);

    QString accessibleName() const { return QStringLiteral("Spectrum style and resolution"); }
    QString styleTitle() const { return QStringLiteral("Style"); }
    QString resolutionTitle() const { return QStringLiteral("Resolution"); }
    QStringList styleTitles() const;
    QStringList styleSymbols() const;
    QStringList resolutionTitles() const;
    int styleIndex() const;
    void setStyleIndex(int index);
    int resolutionIndex() const;
    void setResolutionIndex(int index);
    // The present style's symbol, on the menu's button.
    QString symbol() const;
    QString note() const;

signals:
    void displayChanged();
    void choiceChanged();

protected:
    void attach() override;
    void refresh() override { emit choiceChanged(); }

private:
    QPointer<DisplaySettings> display_;
};

} // namespace ostrel
