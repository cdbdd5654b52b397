#pragma once

// The red flash over the whole main screen: when a Dante device drops out (if the setting is on)
// and when an urgent crew message arrives (always). A new trigger during a flash starts it again
// from its first pulse; a device coming back never flashes.
#include <chrono>
#include <functional>
#include <set>

#include <QPointer>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include "dante/DanteSettings.h"
#include "dante/monitor/DanteMonitor.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class DropoutFlashModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::DanteMonitor* dante READ dante WRITE setDante NOTIFY danteChanged)
    Q_PROPERTY(
        ostrel::DanteSettings* settings READ settings WRITE setSettings NOTIFY settingsChanged)
    Q_PROPERTY(qint64 urgentFlashCount READ urgentFlashCount WRITE setUrgentFlashCount NOTIFY
            urgentFlashCountChanged)
    Q_PROPERTY(
        bool reducedMotion READ reducedMotion WRITE setReducedMotion NOTIFY reducedMotionChanged)
    Q_PROPERTY(double opacity READ opacity NOTIFY opacityChanged)
    Q_PROPERTY(int flashCount READ flashCount NOTIFY flashCountChanged)

public:
    // Seconds on a steady clock.
    using Clock = std::function<double()>;

    explicit DropoutFlashModel(QObject* parent = nullptr);

    DanteMonitor* dante() const { return dante_.data(); }
    void setDante(DanteMonitor* value)
    {
        setSource(dante_, value, &DropoutFlashModel::danteChanged);
    }
    DanteSettings* settings() const { return settings_.data(); }
    void setSettings(DanteSettings* value)
    {
        setSource(settings_, value, &DropoutFlashModel::settingsChanged);
    }
    // The crew's count of urgent arrivals; a rise flashes. The first value it is given is where
    // the view starts, not news.
    qint64 urgentFlashCount() const { return urgentFlashCount_.value_or(0); }
    void setUrgentFlashCount(qint64 value);
    bool reducedMotion() const { return reducedMotion_; }
    void setReducedMotion(bool value);

    double opacity() const { return opacity_; }
    // Flashes started since the view appeared.
    int flashCount() const { return flashCount_; }
    bool isFlashing() const { return ticker_.isActive(); }

    void setClock(Clock clock) { clock_ = std::move(clock); }
    // Starts the flash from its first pulse.
    void flash();
    // Takes the opacity for the present moment; the ticker calls it while a flash runs.
    void advance();

signals:
    void danteChanged();
    void settingsChanged();
    void urgentFlashCountChanged();
    void reducedMotionChanged();
    void opacityChanged();
    void flashCountChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    void offlineChanged();
    std::set<QString> offlineNames() const;
    void setOpacity(double value);

    QPointer<DanteMonitor> dante_;
    QPointer<DanteSettings> settings_;
    std::optional<qint64> urgentFlashCount_;
    bool reducedMotion_ = false;
    std::set<QString> offline_;
    double opacity_ = 0.0;
    int flashCount_ = 0;
    double startedAt_ = 0.0;
    Clock clock_;
    QTimer ticker_;
};

} // namespace ostrel
