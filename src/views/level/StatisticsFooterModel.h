#pragma once

// Peak, Leq and Max along the bottom of the screen, blank until there is something to add up.
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "measurement/LevelStatistics.h"
#include "model/MeterModel.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class StatisticsFooterModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::MeterModel* meter READ meter WRITE setMeter NOTIFY meterChanged)
    Q_PROPERTY(double fontSize READ fontSize WRITE setFontSize NOTIFY fontSizeChanged)
    Q_PROPERTY(double captionSpacing READ captionSpacing NOTIFY fontSizeChanged)
    Q_PROPERTY(QString peakCaption READ peakCaption CONSTANT)
    Q_PROPERTY(QString leqCaption READ leqCaption CONSTANT)
    Q_PROPERTY(QString maxCaption READ maxCaption CONSTANT)
    Q_PROPERTY(QString peakText READ peakText NOTIFY valuesChanged)
    Q_PROPERTY(QString leqText READ leqText NOTIFY valuesChanged)
    Q_PROPERTY(QString maxText READ maxText NOTIFY valuesChanged)

public:
    MeterModel* meter() const { return meter_.data(); }
    void setMeter(MeterModel* value)
    {
        setSource(meter_, value, &StatisticsFooterModel::meterChanged);
    }

    struct Texts {
        QString peak;
        QString leq;
        QString max;
        bool operator==(const Texts&) const = default;
    };

    explicit StatisticsFooterModel(QObject* parent = nullptr);

    static Texts texts(const LevelStatistics& statistics, const QLocale& locale = QLocale());

    double fontSize() const { return fontSize_; }
    void setFontSize(double value);
    double captionSpacing() const { return 0.5 * fontSize_; }
    QString peakCaption() const { return QStringLiteral("Peak"); }
    QString leqCaption() const { return QStringLiteral("Leq"); }
    QString maxCaption() const { return QStringLiteral("Max"); }
    QString peakText() const { return texts_.peak; }
    QString leqText() const { return texts_.leq; }
    QString maxText() const { return texts_.max; }

signals:
    void meterChanged();
    void fontSizeChanged();
    void valuesChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<MeterModel> meter_;
    double fontSize_ = 14.0;
    Texts texts_;
};

} // namespace ostrel
