#pragma once

// The QLab page of the settings: the connection and its state, the timecode frame rate, and the
// advanced workspace and passcode.
#include <QPointer>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include "qlab/QLabSettings.h"
#include "qlab/client/QLabClient.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class QLabPageModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(
        ostrel::QLabSettings* settings READ settings WRITE setSettings NOTIFY settingsChanged)
    Q_PROPERTY(ostrel::QLabClient* qlab READ qlab WRITE setQlab NOTIFY qlabChanged)
    Q_PROPERTY(bool monitors READ monitors WRITE setMonitors NOTIFY valuesChanged)
    Q_PROPERTY(QString host READ host WRITE setHost NOTIFY valuesChanged)
    Q_PROPERTY(QString port READ port WRITE setPort NOTIFY valuesChanged)
    Q_PROPERTY(QString statusText READ statusText NOTIFY valuesChanged)
    Q_PROPERTY(bool showsReconnect READ showsReconnect NOTIFY valuesChanged)
    Q_PROPERTY(QStringList rateOptions READ rateOptions CONSTANT)
    Q_PROPERTY(int rateIndex READ rateIndex WRITE setRateIndex NOTIFY valuesChanged)
    Q_PROPERTY(QString workspace READ workspace WRITE setWorkspace NOTIFY valuesChanged)
    Q_PROPERTY(QString passcode READ passcode WRITE setPasscode NOTIFY valuesChanged)

public:
    explicit QLabPageModel(QObject* parent = nullptr);

    QLabSettings* settings() const { return settings_.data(); }
    void setSettings(QLabSettings* value)
    {
        setSource(settings_, value, &QLabPageModel::settingsChanged);
    }
    QLabClient* qlab() const { return qlab_.data(); }
    void setQlab(QLabClient* value) { setSource(qlab_, value, &QLabPageModel::qlabChanged); }

    bool monitors() const { return settings_ && settings_->enabled(); }
    void setMonitors(bool value);
    QString host() const { return settings_ ? settings_->host() : QString(); }
    void setHost(const QString& value);
    // Without digit grouping: "53000".
    QString port() const;
    // Text that is no whole number is dropped.
    void setPort(const QString& value);
    QString statusText() const;
    // With monitoring on and no connection.
    bool showsReconnect() const;
    Q_INVOKABLE void reconnect();
    static QStringList rateOptions();
    int rateIndex() const;
    void setRateIndex(int index);
    QString workspace() const { return settings_ ? settings_->workspace() : QString(); }
    void setWorkspace(const QString& value);
    QString passcode() const { return settings_ ? settings_->passcode() : QString(); }
    void setPasscode(const QString& value);

signals:
    void settingsChanged();
    void qlabChanged();
    void valuesChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<QLabSettings> settings_;
    QPointer<QLabClient> qlab_;
};

} // namespace ostrel
