#pragma once

// The station's commands beyond the show's: the meter's reset, the screen's brightness, the
// update check, and the shortcuts of the windows, with their enabled rules.
#include <QKeySequence>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include "station/AppModel.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class StationCommands : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::AppModel* appModel READ appModel WRITE setAppModel NOTIFY appModelChanged)
    Q_PROPERTY(bool canBrighten READ canBrighten NOTIFY changed)
    Q_PROPERTY(bool canDim READ canDim NOTIFY changed)
    Q_PROPERTY(bool canCheckForUpdates READ canCheckForUpdates NOTIFY changed)
    Q_PROPERTY(QKeySequence resetShortcut READ resetShortcut CONSTANT)
    Q_PROPERTY(QKeySequence brighterShortcut READ brighterShortcut CONSTANT)
    Q_PROPERTY(QKeySequence dimmerShortcut READ dimmerShortcut CONSTANT)
    Q_PROPERTY(QKeySequence helpShortcut READ helpShortcut CONSTANT)
    Q_PROPERTY(QKeySequence helpKey READ helpKey CONSTANT)
    Q_PROPERTY(QKeySequence settingsShortcut READ settingsShortcut CONSTANT)

public:
    // The step of Brighter and Dimmer; the settings clamp the result.
    static constexpr double brightnessStep = 0.1;

    explicit StationCommands(QObject* parent = nullptr);

    AppModel* appModel() const { return appModel_.data(); }
    void setAppModel(AppModel* value)
    {
        setSource(appModel_, value, &StationCommands::appModelChanged);
    }

    bool canBrighten() const;
    bool canDim() const;
    bool canCheckForUpdates() const
    {
        return appModel_ && appModel_->updater().canCheckForUpdates();
    }

    QKeySequence resetShortcut() const { return QKeySequence(QStringLiteral("Ctrl+K")); }
    QKeySequence brighterShortcut() const { return QKeySequence(QStringLiteral("Ctrl+Alt+Up")); }
    QKeySequence dimmerShortcut() const { return QKeySequence(QStringLiteral("Ctrl+Alt+Down")); }
    QKeySequence helpShortcut() const { return QKeySequence(QStringLiteral("Ctrl+?")); }
    QKeySequence helpKey() const { return QKeySequence(Qt::Key_F1); }
    QKeySequence settingsShortcut() const { return QKeySequence(QStringLiteral("Ctrl+,")); }

    Q_INVOKABLE void resetPeakAndLeq();
    Q_INVOKABLE void brighter();
    Q_INVOKABLE void dimmer();
    Q_INVOKABLE void checkForUpdates();

signals:
    void appModelChanged();
    void changed();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<AppModel> appModel_;
};

} // namespace ostrel
