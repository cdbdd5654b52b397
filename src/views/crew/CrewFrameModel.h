#pragma once

// What the crew adds to the main window: the chat column at the trailing edge and its toolbar
// button, no session button on a secondary (only the primary records), and a monitor that greys
// and fades under a banner while a secondary's readings are not live.
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include "station/AppModel.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class CrewFrameModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::AppModel* appModel READ appModel WRITE setAppModel NOTIFY appModelChanged)
    Q_PROPERTY(bool showsChat READ showsChat WRITE setShowsChat NOTIFY showsChatChanged)
    Q_PROPERTY(bool presentsChat READ presentsChat NOTIFY presentsChatChanged)
    Q_PROPERTY(bool showsChatButton READ showsChatButton NOTIFY roleChanged)
    Q_PROPERTY(bool showsSessionButton READ showsSessionButton NOTIFY roleChanged)
    Q_PROPERTY(bool isLive READ isLive NOTIFY isLiveChanged)
    Q_PROPERTY(double monitorOpacity READ monitorOpacity NOTIFY isLiveChanged)
    Q_PROPERTY(double monitorSaturation READ monitorSaturation NOTIFY isLiveChanged)
    Q_PROPERTY(int fadeDuration READ fadeDuration CONSTANT)
    Q_PROPERTY(double chatMinimumWidth READ chatMinimumWidth CONSTANT)
    Q_PROPERTY(double chatIdealWidth READ chatIdealWidth CONSTANT)
    Q_PROPERTY(double chatMaximumWidth READ chatMaximumWidth CONSTANT)
    Q_PROPERTY(QString chatShortcut READ chatShortcut CONSTANT)

public:
    explicit CrewFrameModel(QObject* parent = nullptr);

    AppModel* appModel() const { return appModel_.data(); }
    void setAppModel(AppModel* value)
    {
        setSource(appModel_, value, &CrewFrameModel::appModelChanged);
    }
    bool showsChat() const { return showsChat_; }
    void setShowsChat(bool value);

    // Only in a crew, whatever `showsChat` was left at.
    bool presentsChat() const { return showsChat_ && isInCrew_; }
    bool showsChatButton() const { return isInCrew_; }
    bool showsSessionButton() const { return !isSecondary_; }
    bool isLive() const { return isLive_; }
    double monitorOpacity() const { return isLive_ ? 1.0 : 0.3; }
    double monitorSaturation() const { return isLive_ ? 1.0 : 0.0; }
    int fadeDuration() const { return 400; }
    double chatMinimumWidth() const { return 280.0; }
    double chatIdealWidth() const { return 340.0; }
    double chatMaximumWidth() const { return 480.0; }
    QString chatShortcut() const { return QStringLiteral("Ctrl+Shift+T"); }

    // Ideal, narrowed towards the minimum so that the monitor keeps the window's minimum width.
    Q_INVOKABLE double chatWidth(double windowWidth) const;
    // The toolbar button and the shortcut; nothing outside a crew.
    Q_INVOKABLE void toggleChat();

signals:
    void appModelChanged();
    void showsChatChanged();
    void presentsChatChanged();
    void roleChanged();
    void isLiveChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<AppModel> appModel_;
    bool showsChat_ = false;
    bool isInCrew_ = false;
    bool isSecondary_ = false;
    bool isLive_ = true;
};

} // namespace ostrel
