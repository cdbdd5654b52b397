#pragma once

// The show's commands in the window's menu and as shortcuts, with their enabled rules, and the
// CSV export that the save dialog finishes.
#include <optional>

#include <QKeySequence>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include "station/AppModel.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class SessionCommands : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::AppModel* appModel READ appModel WRITE setAppModel NOTIFY appModelChanged)
    Q_PROPERTY(bool canStartSession READ canStartSession NOTIFY changed)
    Q_PROPERTY(bool canEndSession READ canEndSession NOTIFY changed)
    Q_PROPERTY(bool canExport READ canExport NOTIFY changed)
    Q_PROPERTY(QString proposedFileName READ proposedFileName NOTIFY exportChanged)
    Q_PROPERTY(QUrl proposedFile READ proposedFile NOTIFY exportChanged)
    Q_PROPERTY(QKeySequence newSessionShortcut READ newSessionShortcut CONSTANT)
    Q_PROPERTY(QKeySequence endSessionShortcut READ endSessionShortcut CONSTANT)
    Q_PROPERTY(QKeySequence exportShortcut READ exportShortcut CONSTANT)
    Q_PROPERTY(QKeySequence cueHistoryShortcut READ cueHistoryShortcut CONSTANT)
    Q_PROPERTY(QKeySequence recordingsShortcut READ recordingsShortcut CONSTANT)
    Q_PROPERTY(QKeySequence recordingsWindowShortcut READ recordingsWindowShortcut CONSTANT)

public:
    explicit SessionCommands(QObject* parent = nullptr);

    AppModel* appModel() const { return appModel_.data(); }
    void setAppModel(AppModel* value)
    {
        setSource(appModel_, value, &SessionCommands::appModelChanged);
    }

    bool canStartSession() const { return appModel_ && !appModel_->hasActiveSession(); }
    bool canEndSession() const { return appModel_ && appModel_->hasActiveSession(); }
    bool canExport() const { return appModel_ && appModel_->canExport(); }
    QString proposedFileName() const { return proposedFileName_; }
    // In the user's documents folder, where the save dialog opens.
    QUrl proposedFile() const;

    QKeySequence newSessionShortcut() const { return QKeySequence(QStringLiteral("Ctrl+N")); }
    QKeySequence endSessionShortcut() const { return QKeySequence(QStringLiteral("Ctrl+Alt+N")); }
    QKeySequence exportShortcut() const { return QKeySequence(QStringLiteral("Ctrl+E")); }
    QKeySequence cueHistoryShortcut() const { return QKeySequence(QStringLiteral("Ctrl+Y")); }
    QKeySequence recordingsShortcut() const { return QKeySequence(QStringLiteral("Ctrl+O")); }
    QKeySequence recordingsWindowShortcut() const
    {
        return QKeySequence(QStringLiteral("Ctrl+Shift+R"));
    }

    Q_INVOKABLE void newSession();
    Q_INVOKABLE void endSession();
    // Takes the show to export (the running one as it stands, else the last; or the summary's)
    // and proposes its file name; false when there is none. The save dialog then calls
    // `exportTo`.
    Q_INVOKABLE bool prepareExport(bool levels, bool fromSummary = false);
    Q_INVOKABLE bool exportTo(const QUrl& file);

signals:
    void appModelChanged();
    void changed();
    void exportChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<AppModel> appModel_;
    std::optional<ShowSession> pendingExport_;
    bool exportsLevels_ = false;
    QString proposedFileName_;
};

} // namespace ostrel
