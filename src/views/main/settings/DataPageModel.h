#pragma once

// The Data page of the settings: what a session records, with the size of an hour of recording,
// the sessions folder, the automatic update check where this build can check, and the export.
#include <QPointer>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include "sessions/SessionSettings.h"
#include "station/AppUpdater.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class DataPageModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(
        ostrel::SessionSettings* sessions READ sessions WRITE setSessions NOTIFY sessionsChanged)
    Q_PROPERTY(ostrel::AppUpdater* updater READ updater WRITE setUpdater NOTIFY updaterChanged)
    Q_PROPERTY(QString sessionsFolder READ sessionsFolder WRITE setSessionsFolder NOTIFY
            sessionsFolderChanged)
    Q_PROPERTY(
        bool recordsSessions READ recordsSessions WRITE setRecordsSessions NOTIFY valuesChanged)
    Q_PROPERTY(QString recordingFooter READ recordingFooter CONSTANT)
    Q_PROPERTY(bool recordsLevelHistory READ recordsLevelHistory WRITE setRecordsLevelHistory NOTIFY
            valuesChanged)
    Q_PROPERTY(bool showsUpdateToggle READ showsUpdateToggle NOTIFY valuesChanged)
    Q_PROPERTY(bool checksAutomatically READ checksAutomatically WRITE setChecksAutomatically NOTIFY
            valuesChanged)
    Q_PROPERTY(QString storageFooter READ storageFooter NOTIFY valuesChanged)

public:
    explicit DataPageModel(QObject* parent = nullptr);

    SessionSettings* sessions() const { return sessions_.data(); }
    void setSessions(SessionSettings* value)
    {
        setSource(sessions_, value, &DataPageModel::sessionsChanged);
    }
    AppUpdater* updater() const { return updater_.data(); }
    void setUpdater(AppUpdater* value)
    {
        setSource(updater_, value, &DataPageModel::updaterChanged);
    }
    const QString& sessionsFolder() const { return sessionsFolder_; }
    void setSessionsFolder(const QString& value);

    bool recordsSessions() const { return !sessions_ || sessions_->recordsSessions(); }
    void setRecordsSessions(bool value);
    // With the size of an hour of recording in the byte-count style: "About 57.6 MB per hour."
    static QString recordingFooter();
    bool recordsLevelHistory() const { return !sessions_ || sessions_->recordsLevelHistory(); }
    void setRecordsLevelHistory(bool value);
    // Only a build that can check for updates offers the automatic check.
    bool showsUpdateToggle() const { return updater_ && updater_->isAvailable(); }
    bool checksAutomatically() const { return updater_ && updater_->checksAutomatically(); }
    void setChecksAutomatically(bool value);
    QString storageFooter() const;

    // Creates the sessions folder if needed and gives its address for the file manager; an empty
    // address when it can't be made.
    Q_INVOKABLE QUrl prepareSessionsFolder() const;

signals:
    void sessionsChanged();
    void updaterChanged();
    void sessionsFolderChanged();
    void valuesChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<SessionSettings> sessions_;
    QPointer<AppUpdater> updater_;
    QString sessionsFolder_;
};

} // namespace ostrel
