#include "views/recordings/RecordingsModel.h"

#include <QDesktopServices>
#include <QUrl>

#include "common/IsoDate.h"
#include "views/components/Theme.h"
#include "views/sessions/SessionText.h"

namespace ostrel {

RecordingsModel::RecordingsModel(QObject* parent) : QAbstractListModel(parent) { }

void RecordingsModel::setAppModel(AppModel* value)
{
    if (value == appModel_) return;
    for (const auto& connection : connections_)
        disconnect(connection);
    connections_.clear();
    appModel_ = value;
    if (value) {
        RecordingLibrary& library = value->shows().library();
        connections_.push_back(connect(
            &library, &RecordingLibrary::recordingsChanged, this, &RecordingsModel::reload));
        connections_.push_back(connect(
            &library, &RecordingLibrary::hasLoadedChanged, this, &RecordingsModel::listChanged));
        connections_.push_back(connect(value, &AppModel::selectedRecordingNameChanged, this,
            &RecordingsModel::selectionChanged));
        connections_.push_back(
            connect(value, &AppModel::sessionChanged, this, &RecordingsModel::reload));
    }
    reload();
    emit appModelChanged();
}

void RecordingsModel::reload()
{
    beginResetModel();
    recordings_ = appModel_ ? appModel_->shows().library().recordings() : std::vector<Recording> {};
    endResetModel();
    emit listChanged();
    emit selectionChanged();
}

int RecordingsModel::recordingColorRole() const
{
    return static_cast<int>(Theme::Role::red);
}

bool RecordingsModel::showsEmptyList() const
{
    return appModel_ && appModel_->shows().library().hasLoaded() && recordings_.empty();
}

int RecordingsModel::selectedRow() const
{
    const auto name = appModel_ ? appModel_->selectedRecordingName() : std::nullopt;
    if (!name) return -1;
    for (size_t row = 0; row < recordings_.size(); ++row)
        if (recordings_[row].folderName() == *name) return static_cast<int>(row);
    return -1;
}

RecordingsModel::Detail RecordingsModel::detail() const
{
    const Recording* selected = at(selectedRow());
    if (!selected) return Detail::none;
    return isInProgress(*selected) ? Detail::inProgress : Detail::replay;
}

QString RecordingsModel::selectedFolder() const
{
    const Recording* selected = at(selectedRow());
    return selected && !isInProgress(*selected) ? selected->folder : QString();
}

bool RecordingsModel::isInProgress(const Recording& recording) const
{
    const auto& active = appModel_ ? appModel_->sessions().activeSession() : std::nullopt;
    return active && active->recordingFolderName == recording.folderName();
}

const Recording* RecordingsModel::at(int row) const
{
    if (row < 0 || row >= static_cast<int>(recordings_.size())) return nullptr;
    return &recordings_[static_cast<size_t>(row)];
}

QString RecordingsModel::dateText(Date start, const QLocale& locale)
{
    return locale.toString(
        IsoDate::toQDateTime(start).toLocalTime(), QStringLiteral("ddd d MMM, HH:mm"));
}

QString RecordingsModel::caption(const Recording& recording, bool isRecording)
{
    if (isRecording) return QStringLiteral("Recording");
    const double seconds
        = recording.session.duration(recording.session.end.value_or(recording.session.start));
    const auto minutes = static_cast<long long>(seconds / 60.0);
    const QString length = minutes >= 60
        ? QStringLiteral("%1 hr %2 min").arg(minutes / 60).arg(minutes % 60)
        : QStringLiteral("%1 min").arg(minutes);
    QString text = length + QStringLiteral(" \u00B7 ")
        + QLocale().formattedDataSize(recording.size, 1, QLocale::DataSizeSIFormat);
    if (!recording.hasAudio) text += QStringLiteral(" \u00B7 No audio");
    return text;
}

QString RecordingsModel::deletionMessage(int row) const
{
    const Recording* recording = at(row);
    if (!recording) return {};
    return QStringLiteral("This frees ")
        + QLocale().formattedDataSize(recording->size, 1, QLocale::DataSizeSIFormat)
        + QStringLiteral(". You can restore it from the Bin until you empty it.");
}

void RecordingsModel::refresh()
{
    if (appModel_) appModel_->shows().library().refresh();
}

void RecordingsModel::select(int row)
{
    const Recording* recording = at(row);
    if (appModel_ && recording) appModel_->selectRecording(recording->session);
}

void RecordingsModel::moveToBin(int row)
{
    const Recording* recording = at(row);
    if (!appModel_ || !recording) return;
    const auto failure = appModel_->shows().library().moveToTrash(*recording);
    const QString next
        = failure ? QStringLiteral("The recording couldn't be moved to the Bin.") : QString();
    if (next != problem_) {
        problem_ = next;
        emit problemChanged();
    }
}

void RecordingsModel::showInFileManager(int row) const
{
    if (const Recording* recording = at(row))
        QDesktopServices::openUrl(QUrl::fromLocalFile(recording->folder));
}

int RecordingsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(recordings_.size());
}

QVariant RecordingsModel::data(const QModelIndex& index, int role) const
{
    const Recording* recording = at(index.row());
    if (!index.isValid() || !recording) return {};
    switch (role) {
    case nameRole:
        return recording->session.name;
    case dateRole:
        return dateText(recording->session.start);
    case captionRole:
        return caption(*recording, isInProgress(*recording));
    case isRecordingRole:
        return isInProgress(*recording);
    default:
        return {};
    }
}

QHash<int, QByteArray> RecordingsModel::roleNames() const
{
    return {{nameRole, "name"}, {dateRole, "date"}, {captionRole, "caption"},
        {isRecordingRole, "isRecording"}};
}

} // namespace ostrel
