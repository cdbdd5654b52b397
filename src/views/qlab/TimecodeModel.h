#pragma once

// The timecode readout beside the current cue, while a Timecode cue runs: where its timecode has
// got to, redrawn often, and the rate, the output and whether it is paused.
#include <functional>
#include <optional>

#include <QPointer>
#include <QString>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include "common/Date.h"
#include "qlab/QLabCue.h"
#include "qlab/QLabSettings.h"
#include "qlab/TimecodeRate.h"
#include "qlab/client/QLabClient.h"
#include "station/AppModel.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class TimecodeModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::QLabClient* qlab READ qlab WRITE setQlab NOTIFY qlabChanged)
    Q_PROPERTY(
        ostrel::QLabSettings* settings READ settings WRITE setSettings NOTIFY settingsChanged)
    // The main screen's station: a secondary assumes its primary's rate.
    Q_PROPERTY(ostrel::AppModel* station READ station WRITE setStation NOTIFY stationChanged)
    Q_PROPERTY(bool isShown READ isShown NOTIFY cueChanged)
    Q_PROPERTY(QString caption READ caption CONSTANT)
    Q_PROPERTY(QString valueText READ valueText NOTIFY valueChanged)
    Q_PROPERTY(QString detailsText READ detailsText NOTIFY cueChanged)

public:
    static constexpr int defaultRedrawMs = 40;

    QLabClient* qlab() const { return qlab_.data(); }
    void setQlab(QLabClient* value) { setSource(qlab_, value, &TimecodeModel::qlabChanged); }
    QLabSettings* settings() const { return settings_.data(); }
    void setSettings(QLabSettings* value)
    {
        setSource(settings_, value, &TimecodeModel::settingsChanged);
    }

    AppModel* station() const { return station_.data(); }
    void setStation(AppModel* value) { setSource(station_, value, &TimecodeModel::stationChanged); }

    explicit TimecodeModel(QObject* parent = nullptr);

    // The rate, "(assumed)" when QLab gave none it knows; "MTC" or "LTC"; "Paused".
    static QString details(const QLabCue& cue, TimecodeRate fallbackRate);
    static QString value(const QLabCue& cue, Date at, TimecodeRate fallbackRate);

    void setClock(std::function<Date()> clock);
    bool isRedrawing() const { return redraw_.isActive(); }
    Q_INVOKABLE void tick() { updateValue(); }

    bool isShown() const { return cue_.has_value(); }
    QString caption() const { return QStringLiteral("TIMECODE"); }
    QString valueText() const { return valueText_; }
    QString detailsText() const { return detailsText_; }

signals:
    void qlabChanged();
    void settingsChanged();
    void stationChanged();
    void cueChanged();
    void valueChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    TimecodeRate fallbackRate() const;
    void updateValue();

    QPointer<QLabClient> qlab_;
    QPointer<QLabSettings> settings_;
    QPointer<AppModel> station_;
    std::function<Date()> clock_;
    QTimer redraw_;
    std::optional<QLabCue> cue_;
    QString valueText_;
    QString detailsText_;
};

} // namespace ostrel
