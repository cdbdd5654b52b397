#include "views/main/settings/DataPageModel.h"

#include <QDir>
#include <QLocale>

#include "recording/RecordingLibrary.h"

namespace ostrel {

DataPageModel::DataPageModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

void DataPageModel::setSessionsFolder(const QString& value)
{
    if (sessionsFolder_ == value) return;
    sessionsFolder_ = value;
    emit sessionsFolderChanged();
}

void DataPageModel::setRecordsSessions(bool value)
{
    if (sessions_) sessions_->setRecordsSessions(value);
}

QString DataPageModel::recordingFooter()
{
    return QStringLiteral("Saves the microphone's audio with the level and spectrum ten times a "
                          "second, so you can replay a show in File \u203A Recordings. About ")
        + QLocale().formattedDataSize(RecordingLibrary::bytesPerHour, 1, QLocale::DataSizeSIFormat)
        + QStringLiteral(" per hour.");
}

void DataPageModel::setRecordsLevelHistory(bool value)
{
    if (sessions_) sessions_->setRecordsLevelHistory(value);
}

void DataPageModel::setChecksAutomatically(bool value)
{
    if (showsUpdateToggle()) updater_->setChecksAutomatically(value);
}

QString DataPageModel::storageFooter() const
{
    if (recordsSessions())
        return QStringLiteral("Sessions and their recordings stay on this Mac. Delete recordings "
                              "in the Recordings window.");
    return QStringLiteral(
        "Ostrel Live stores measurements only. Microphone audio is never recorded or saved.");
}

QUrl DataPageModel::prepareSessionsFolder() const
{
    if (sessionsFolder_.isEmpty() || !QDir().mkpath(sessionsFolder_)) return {};
    return QUrl::fromLocalFile(sessionsFolder_);
}

void DataPageModel::attach()
{
    watch(sessions_);
    watch(updater_);
    if (sessions_) {
        track(connect(
            sessions_, &SessionSettings::recordsSessionsChanged, this, &DataPageModel::refresh));
        track(connect(sessions_, &SessionSettings::recordsLevelHistoryChanged, this,
            &DataPageModel::refresh));
    }
    if (updater_)
        track(connect(
            updater_, &AppUpdater::checksAutomaticallyChanged, this, &DataPageModel::refresh));
}

void DataPageModel::refresh()
{
    emit valuesChanged();
}

} // namespace ostrel
