#pragma once

// The frame of the main window: its title and sizes, the appearance, the "Something Went Wrong"
// alert over `errorMessage`, and the commands that reach the model from the keyboard.
#include <functional>

#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "station/AppModel.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class ContentModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::AppModel* appModel READ appModel WRITE setAppModel NOTIFY appModelChanged)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(int defaultWidth READ defaultWidth CONSTANT)
    Q_PROPERTY(int defaultHeight READ defaultHeight CONSTANT)
    Q_PROPERTY(int minimumWidth READ minimumWidth CONSTANT)
    Q_PROPERTY(int minimumHeight READ minimumHeight CONSTANT)
    Q_PROPERTY(bool isDark READ isDark NOTIFY isDarkChanged)
    Q_PROPERTY(bool showsError READ showsError NOTIFY errorChanged)
    Q_PROPERTY(QString errorTitle READ errorTitle CONSTANT)
    Q_PROPERTY(QString errorText READ errorText NOTIFY errorChanged)
    Q_PROPERTY(QString resetStatisticsShortcut READ resetStatisticsShortcut CONSTANT)

public:
    AppModel* appModel() const { return appModel_.data(); }
    void setAppModel(AppModel* value)
    {
        setSource(appModel_, value, &ContentModel::appModelChanged);
    }

    explicit ContentModel(QObject* parent = nullptr);

    // Where the desktop's own appearance is asked for; tests and other platforms set their own.
    void setSystemIsDark(std::function<bool()> systemIsDark);

    QString title() const { return QStringLiteral("Ostrel Live"); }
    int defaultWidth() const { return 480; }
    int defaultHeight() const { return 780; }
    int minimumWidth() const { return 480; }
    int minimumHeight() const { return 600; }
    bool isDark() const { return isDark_; }
    bool showsError() const { return showsError_; }
    QString errorTitle() const { return QStringLiteral("Something Went Wrong"); }
    QString errorText() const { return errorText_; }
    QString resetStatisticsShortcut() const { return QStringLiteral("Ctrl+K"); }

    // Dismissing clears the message, so that the same failure later alerts again.
    Q_INVOKABLE void dismissError();
    // The window calls this as it appears; the model's first start wins.
    Q_INVOKABLE void start();
    Q_INVOKABLE void resetStatistics();

signals:
    void appModelChanged();
    void isDarkChanged();
    void errorChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<AppModel> appModel_;
    std::function<bool()> systemIsDark_;
    bool isDark_ = false;
    bool showsError_ = false;
    QString errorText_;
};

} // namespace ostrel
