#include "views/sessions/SessionCommands.h"

#include <QDir>
#include <QStandardPaths>
#include <chrono>

namespace ostrel {

SessionCommands::SessionCommands(QObject* parent) : ViewModel(parent) { }

void SessionCommands::newSession()
{
    if (appModel_) appModel_->requestNewSession();
}

void SessionCommands::endSession()
{
    if (appModel_) appModel_->endSession();
}

bool SessionCommands::prepareExport(bool levels, bool fromSummary)
{
    if (!appModel_) return false;
    pendingExport_ = fromSummary
        ? appModel_->presentedSummary()
        : appModel_->sessions().sessionForExport(std::chrono::system_clock::now());
    exportsLevels_ = levels;
    proposedFileName_
        = pendingExport_ ? ShowSessions::proposedExportName(*pendingExport_, levels) : QString();
    emit exportChanged();
    return pendingExport_.has_value();
}

QUrl SessionCommands::proposedFile() const
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QUrl::fromLocalFile(QDir(folder).filePath(proposedFileName_));
}

bool SessionCommands::exportTo(const QUrl& file)
{
    if (!appModel_ || !pendingExport_ || !file.isLocalFile()) return false;
    return appModel_->shows().exportCSV(
        *pendingExport_, exportsLevels_, file.toLocalFile(), std::chrono::system_clock::now());
}

void SessionCommands::attach()
{
    watch(appModel_);
    if (!appModel_) return;
    track(connect(appModel_, &AppModel::sessionChanged, this, [this] { refresh(); }));
}

void SessionCommands::refresh()
{
    emit changed();
}

} // namespace ostrel
