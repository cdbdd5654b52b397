#pragma once

// What stands around the spectrogram's picture: the waiting text, the frequency grid lines, the
// readout under the pointer and the spoken description.
#include <optional>

#include <QPointF>
#include <QPointer>
#include <QSizeF>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include "model/MeterModel.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class SpectrogramModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::MeterModel* meter READ meter WRITE setMeter NOTIFY meterChanged)
    Q_PROPERTY(double plotWidth READ plotWidth WRITE setPlotWidth NOTIFY plotWidthChanged)
    Q_PROPERTY(double plotHeight READ plotHeight WRITE setPlotHeight NOTIFY plotHeightChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY isEmptyChanged)
    Q_PROPERTY(QString waitingText READ waitingText CONSTANT)
    Q_PROPERTY(QVariantList gridLines READ gridLines NOTIFY gridLinesChanged)
    Q_PROPERTY(bool hasCursor READ hasCursor NOTIFY cursorChanged)
    Q_PROPERTY(QString cursorText READ cursorText NOTIFY cursorChanged)
    Q_PROPERTY(QPointF cursorPosition READ cursorPosition NOTIFY cursorChanged)
    Q_PROPERTY(QString accessibleName READ accessibleName NOTIFY accessibleNameChanged)

public:
    MeterModel* meter() const { return meter_.data(); }
    void setMeter(MeterModel* value) { setSource(meter_, value, &SpectrogramModel::meterChanged); }

    explicit SpectrogramModel(QObject* parent = nullptr);

    // Where a frequency stands on the fine grid, as a fraction of the height from the bottom.
    static double heightFraction(double frequency);

    double plotWidth() const { return plotWidth_; }
    void setPlotWidth(double value);
    double plotHeight() const { return plotHeight_; }
    void setPlotHeight(double value);
    // The pointer over the plot, and the readout's size, which stays within the view.
    Q_INVOKABLE void hover(double x, double y, double readoutWidth, double readoutHeight);
    Q_INVOKABLE void clearHover();

    bool isEmpty() const { return isEmpty_; }
    QString waitingText() const { return QStringLiteral("Waiting for audio\u2026"); }
    QVariantList gridLines() const { return gridLines_; }
    bool hasCursor() const { return hover_.has_value(); }
    QString cursorText() const { return cursorText_; }
    QPointF cursorPosition() const { return cursorPosition_; }
    QString accessibleName() const { return accessibleName_; }

signals:
    void meterChanged();
    void plotWidthChanged();
    void plotHeightChanged();
    void isEmptyChanged();
    void gridLinesChanged();
    void cursorChanged();
    void accessibleNameChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    void layoutGrid();
    void updateCursor();

    QPointer<MeterModel> meter_;
    double plotWidth_ = 0.0;
    double plotHeight_ = 0.0;
    bool isEmpty_ = true;
    QVariantList gridLines_;
    std::optional<QPointF> hover_;
    QSizeF readoutSize_;
    QString cursorText_;
    QPointF cursorPosition_;
    QString accessibleName_;
};

} // namespace ostrel
