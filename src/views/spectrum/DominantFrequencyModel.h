#pragma once

// The strongest frequency the microphone hears, beside the spectrum's caption.
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "model/MeterModel.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class DominantFrequencyModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::MeterModel* meter READ meter WRITE setMeter NOTIFY meterChanged)
    Q_PROPERTY(QString caption READ caption CONSTANT)
    Q_PROPERTY(QString text READ text NOTIFY textChanged)
    Q_PROPERTY(QString accessibleName READ accessibleName CONSTANT)
    Q_PROPERTY(QString helpText READ helpText CONSTANT)

public:
    MeterModel* meter() const { return meter_.data(); }
    void setMeter(MeterModel* value)
    {
        setSource(meter_, value, &DominantFrequencyModel::meterChanged);
    }

    explicit DominantFrequencyModel(QObject* parent = nullptr);

    QString caption() const { return QStringLiteral("Dominant"); }
    // The frequency, or "None" when there is none.
    QString text() const { return text_; }
    QString accessibleName() const { return QStringLiteral("Dominant frequency"); }
    QString helpText() const
    {
        return QStringLiteral("The strongest frequency the microphone is hearing");
    }

signals:
    void meterChanged();
    void textChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<MeterModel> meter_;
    QString text_;
};

} // namespace ostrel
