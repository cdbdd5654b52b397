#pragma once

// The settings page of radio mics: the two switches, the receivers with what is wrong with each,
// and removing one.
#include <QPointer>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include "mics/MicMonitoringSettings.h"
#include "mics/link/MicMonitor.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class MicSettingsModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::MicMonitor* mics READ mics WRITE setMics NOTIFY micsChanged)
    Q_PROPERTY(ostrel::MicMonitoringSettings* settings READ settings WRITE setSettings NOTIFY
            settingsChanged)
    Q_PROPERTY(QVariantList receiverRows READ receiverRows NOTIFY receiversChanged)
    Q_PROPERTY(bool hasReceivers READ hasReceivers NOTIFY receiversChanged)
    Q_PROPERTY(bool monitoringEnabled READ monitoringEnabled WRITE setMonitoringEnabled NOTIFY
            switchesChanged)
    Q_PROPERTY(bool lowBatteryWarnings READ lowBatteryWarnings WRITE setLowBatteryWarnings NOTIFY
            switchesChanged)
    Q_PROPERTY(bool lowBatteryToggleEnabled READ monitoringEnabled NOTIFY switchesChanged)
    Q_PROPERTY(int problemColorRole READ problemColorRole CONSTANT)
    Q_PROPERTY(QString sectionTitle READ sectionTitle CONSTANT)
    Q_PROPERTY(QString footer READ footer CONSTANT)
    Q_PROPERTY(QString emptyText READ emptyText CONSTANT)
    Q_PROPERTY(QString monitoringTitle READ monitoringTitle CONSTANT)
    Q_PROPERTY(QString lowBatteryTitle READ lowBatteryTitle CONSTANT)

public:
    explicit MicSettingsModel(QObject* parent = nullptr);

    MicMonitor* mics() const { return mics_.data(); }
    void setMics(MicMonitor* value) { setSource(mics_, value, &MicSettingsModel::micsChanged); }
    MicMonitoringSettings* settings() const { return settings_.data(); }
    void setSettings(MicMonitoringSettings* value)
    {
        setSource(settings_, value, &MicSettingsModel::settingsChanged);
    }

    QVariantList receiverRows() const { return rows_; }
    bool hasReceivers() const { return !rows_.isEmpty(); }
    bool monitoringEnabled() const { return settings_ && settings_->monitoringEnabled(); }
    void setMonitoringEnabled(bool value);
    bool lowBatteryWarnings() const { return settings_ && settings_->lowBatteryWarnings(); }
    void setLowBatteryWarnings(bool value);

    // A receiver's problem is told in orange.
    static int problemColorRole();
    static QString sectionTitle() { return QStringLiteral("Receivers"); }
    static QString footer();
    static QString emptyText() { return QStringLiteral("No receivers added yet."); }
    static QString monitoringTitle() { return QStringLiteral("Warn about radio mic dropouts"); }
    static QString lowBatteryTitle() { return QStringLiteral("Also warn about low batteries"); }
    // The row's first line: the label, or the host without one.
    static QString title(const MicReceiver& receiver);
    // The caption under it: the kind's title and the host.
    static QString subtitle(const MicReceiver& receiver);

    Q_INVOKABLE void removeReceiver(const QString& id);

signals:
    void micsChanged();
    void settingsChanged();
    void receiversChanged();
    void switchesChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<MicMonitor> mics_;
    QPointer<MicMonitoringSettings> settings_;
    QVariantList rows_;
};

} // namespace ostrel
