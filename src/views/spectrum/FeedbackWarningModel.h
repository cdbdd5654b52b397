#pragma once

// The warning under the level readout while the meter hears a tone ringing: its frequency, in
// orange, or in the unhinged wording one of four outbursts, drawn once per warning.
#include <functional>
#include <optional>

#include <QPointer>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include "model/DisplaySettings.h"
#include "model/MeterModel.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class FeedbackWarningModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::MeterModel* meter READ meter WRITE setMeter NOTIFY meterChanged)
    Q_PROPERTY(ostrel::DisplaySettings* display READ display WRITE setDisplay NOTIFY displayChanged)
    Q_PROPERTY(bool isShown READ isShown NOTIFY warningChanged)
    Q_PROPERTY(QString text READ text NOTIFY warningChanged)
    Q_PROPERTY(QString accessibleText READ accessibleText NOTIFY warningChanged)
    Q_PROPERTY(QString symbol READ symbol CONSTANT)
    Q_PROPERTY(int colorRole READ colorRole CONSTANT)
    Q_PROPERTY(double backgroundOpacity READ backgroundOpacity CONSTANT)
    Q_PROPERTY(double shownOpacity READ shownOpacity CONSTANT)

public:
    MeterModel* meter() const { return meter_.data(); }
    void setMeter(MeterModel* value)
    {
        setSource(meter_, value, &FeedbackWarningModel::meterChanged);
    }
    DisplaySettings* display() const { return display_.data(); }
    void setDisplay(DisplaySettings* value)
    {
        setSource(display_, value, &FeedbackWarningModel::displayChanged);
    }

    // Gives an index below `count`; random in the station, fixed in tests.
    using Chooser = std::function<int(int count)>;

    explicit FeedbackWarningModel(QObject* parent = nullptr);

    static const QStringList& unhingedTexts();
    void setChooser(Chooser chooser) { chooser_ = std::move(chooser); }

    bool isShown() const { return !text_.isEmpty(); }
    QString text() const { return text_; }
    QString accessibleText() const { return accessibleText_; }
    QString symbol() const { return QStringLiteral("exclamationmark.triangle.fill"); }
    int colorRole() const;
    double backgroundOpacity() const { return 0.14; }
    double shownOpacity() const { return 0.95; }

signals:
    void meterChanged();
    void displayChanged();
    void warningChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<MeterModel> meter_;
    QPointer<DisplaySettings> display_;
    Chooser chooser_;
    std::optional<FeedbackWarning> drawnFor_;
    int unhingedIndex_ = 0;
    QString text_;
    QString accessibleText_;
};

} // namespace ostrel
